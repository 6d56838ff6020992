#include <HBXMessage/internal/Xml.h>

#include <algorithm>
#include <iterator>

#include <HBXCommon/HBXBase64.h>
#include <HBXMessage/HBXMessageForms.h>
#include <HBXMessage/internal/ElementPath.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/XmlChars.h>
#include <HBXMessage/internal/XmlNames.h>
#include <HBXMessage/internal/XmlParser.h>

namespace HBX::internal {
namespace {

constexpr std::size_t kBytesPerElement = 64; // of text; a guess that spares most messages most reallocations
constexpr std::size_t kShownName = 64;

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

/// Empty when the text is not hexadecimal.
std::string fromHex(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        const int high = hexDigit(text[i]);
        const int low = hexDigit(text[i + 1]);
        if (high < 0 || low < 0) {
            return {};
        }
        bytes += static_cast<char>(high << 4 | low);
    }
    return text.size() % 2 == 0 ? bytes : std::string();
}

/// The row of a reserved attribute that has a fixed name, null for any other.
const XmlMarkRow* findMark(std::string_view name) {
    if (!name.starts_with(kXmlPrefix)) {
        return nullptr;
    }
    name.remove_prefix(kXmlPrefix.size());
    const auto* row = std::find_if(std::begin(kXmlMarks), std::end(kXmlMarks),
                                   [&](const XmlMarkRow& known) { return name == known.word; });
    return row == std::end(kXmlMarks) ? nullptr : row;
}

/// A name as a message to people shows it.
std::string shown(std::string_view name) { return std::string(name.substr(0, kShownName)); }

/// What the tags and texts mean: everything that is found goes straight into the tree.
class XmlReader : private XmlParser<XmlReader> {
public:
    XmlReader(std::string_view text, Tree& tree, Envelope& envelope)
        : XmlParser(text), size_(text.size()), tree_(tree), envelope_(envelope) {}

    using XmlParser::parse;
    [[nodiscard]] bool isWholeMessage() const { return wholeMessage_; }

private:
    friend XmlParser<XmlReader>;
    enum class Place { Document, Tree, Envelope, Target };
    using MakeRef = Ref (*)(NameList&, std::string_view);

    void onStart(std::string_view name, Attributes attributes);
    void onEnd();
    void onText(std::string_view text);
    [[nodiscard]] std::string path() const { return elementPath(tree_, current_); }

    void openDocument(std::string_view name, Attributes attributes);
    void openElement(std::string_view name, Attributes attributes);
    void closeElement();
    void finishValue();
    Ref codedElement(std::string_view name, Attributes attributes);

    void openEnvelope(Attributes attributes);
    void readEnvelopeField(std::string_view name, std::string_view value);
    void openTarget(std::string_view name, Attributes attributes);
    void closeTarget();

    void readAttributes(Attributes attributes, bool isCoded);
    void readMark(const XmlMarkRow& row, std::string_view value, bool isCoded);
    void readKind(std::string_view value);
    void readEncoding(std::string_view value);
    void readVersion(std::string_view value);
    void readCodedAttribute(std::string_view word, std::string_view value);
    void addAttribute(Ref id, std::string_view value);
    void setNamespace(Ref ns);
    void setType(Ref typeNs, Ref type);

    Ref nameRef(MakeRef make, std::string_view name);
    Ref numberRef(std::string_view text);
    std::string_view decoded(std::string_view base64);

    const std::size_t size_;
    Tree& tree_;
    Envelope& envelope_;
    bool wholeMessage_ = false;
    bool hasEnvelope_ = false;
    Place place_ = Place::Document;
    NodeIndex current_ = kRoot;
    std::uint32_t depth_ = 0; ///< of the current element below the root

    bool takesText_ = false;           ///< no child yet: character data belong to the value
    std::string value_;                ///< they come in pieces and are joined here
    ValueKind kind_ = ValueKind::None; ///< as marked
    bool isBase64_ = false;
    bool isBase64Target_ = false;
    std::string scratch_;
};

void XmlReader::onStart(std::string_view name, Attributes attributes) {
    switch (place_) {
    case Place::Tree:
        if (name == kXmlEnvelope) {
            openEnvelope(attributes);
        } else {
            openElement(name, attributes);
        }
        break;
    case Place::Document:
        openDocument(name, attributes);
        break;
    case Place::Envelope:
        openTarget(name, attributes);
        break;
    case Place::Target:
        fail("an element inside " + std::string(kXmlTarget));
        break;
    }
}

void XmlReader::onEnd() {
    switch (place_) {
    case Place::Tree:
        closeElement();
        break;
    case Place::Target:
        closeTarget();
        break;
    case Place::Envelope:
        place_ = Place::Tree;
        takesText_ = true;
        break;
    case Place::Document:
        break;
    }
}

void XmlReader::onText(std::string_view text) {
    if (takesText_) {
        value_.append(text);
        return;
    }
    if (const std::size_t at = findNonBlank(text); at != std::string_view::npos) {
        failAtText(text.substr(at),
                   place_ == Place::Envelope ? "text inside the envelope" : "text after a child element");
    }
}

void XmlReader::openDocument(std::string_view name, Attributes attributes) {
    place_ = Place::Tree;
    tree_.reserve(std::min<std::size_t>(size_ / kBytesPerElement, kMaxElements), size_ / 4);
    if (name != kXmlMessage) {
        openElement(name, attributes);
        return;
    }
    wholeMessage_ = true;
    takesText_ = true;
    readAttributes(attributes, false);
}

void XmlReader::openElement(std::string_view name, Attributes attributes) {
    if (takesText_) {
        finishValue();
    }
    if (depth_ == kMaxDepth) {
        fail("more than " + std::to_string(kMaxDepth) + " levels of elements");
    } else if (tree_.count() == kMaxElements) {
        fail("more than " + std::to_string(kMaxElements) + " elements");
    }
    if (failed()) {
        return;
    }
    const bool isCoded = name.starts_with(kXmlPrefix);
    const Ref id = isCoded ? codedElement(name, attributes) : nameRef(&elementRef, name);
    if (id == 0) {
        return;
    }
    current_ = tree_.append(current_, id, 0);
    ++depth_;
    takesText_ = true;
    readAttributes(attributes, isCoded);
}

void XmlReader::closeElement() {
    if (takesText_) {
        finishValue();
        takesText_ = false;
    }
    if (!failed()) {
        current_ = tree_[current_].parent;
        --depth_;
    }
}

/// The number or name of an element that does not go by its name; 0 after a failure.
Ref XmlReader::codedElement(std::string_view name, Attributes attributes) {
    if (name != kXmlElement) {
        fail("unknown element " + shown(name));
        return 0;
    }
    Ref id = 0;
    for (const auto& [key, text] : attributes) {
        const XmlMarkRow* row = findMark(key);
        if (row == nullptr || (row->mark != XmlMark::Id && row->mark != XmlMark::Name)) {
            continue;
        }
        if (id != 0) {
            fail("the element is named twice");
        }
        const std::string_view value = row->base64 ? decoded(text) : text;
        id = row->mark == XmlMark::Id ? numberRef(value) : nameRef(&elementRef, value);
    }
    if (id == 0) {
        fail(std::string(kXmlElement) + " needs hbx:id or hbx:name");
    }
    return failed() ? 0 : id;
}

void XmlReader::readAttributes(Attributes attributes, bool isCoded) {
    for (const auto& [name, value] : attributes) {
        if (failed()) {
            return;
        }
        if (const XmlMarkRow* row = findMark(name); row != nullptr) {
            readMark(*row, row->base64 ? decoded(value) : value, isCoded);
        } else if (name.starts_with(kXmlPrefix)) {
            readCodedAttribute(name.substr(kXmlPrefix.size()), value);
        } else if (name != kXmlBinding) {
            addAttribute(nameRef(&elementRef, name), value);
        } else if (value != kXmlUri) {
            fail(std::string(kXmlBinding) + " must be " + std::string(kXmlUri));
        }
    }
}

void XmlReader::readMark(const XmlMarkRow& row, std::string_view value, bool isCoded) {
    if (failed()) {
        return;
    }
    switch (row.mark) {
    case XmlMark::Ns:
        setNamespace(nameRef(&namespaceRef, value));
        break;
    case XmlMark::NsId:
        setNamespace(numberRef(value));
        break;
    case XmlMark::TypeNs:
        setType(nameRef(&namespaceRef, value), 0);
        break;
    case XmlMark::TypeNsId:
        setType(numberRef(value), 0);
        break;
    case XmlMark::Type:
        setType(0, nameRef(&typeRef, value));
        break;
    case XmlMark::TypeId:
        setType(0, numberRef(value));
        break;
    case XmlMark::Kind:
        readKind(value);
        break;
    case XmlMark::Encoding:
        readEncoding(value);
        break;
    case XmlMark::Version:
        readVersion(value);
        break;
    case XmlMark::Id:
    case XmlMark::Name:
        if (!isCoded) {
            fail("hbx:" + std::string(row.word) + " belongs to " + std::string(kXmlElement));
        }
        break;
    }
}

void XmlReader::readKind(std::string_view value) {
    if (value == kXmlKindText) {
        kind_ = ValueKind::Text;
    } else if (value == kXmlKindXml) {
        kind_ = ValueKind::Xml;
    } else {
        fail("hbx:kind must be text or xml");
    }
}

void XmlReader::readEncoding(std::string_view value) {
    isBase64_ = true;
    if (value != kXmlBase64) {
        fail("hbx:enc must be " + std::string(kXmlBase64));
    }
}

void XmlReader::readVersion(std::string_view value) {
    const std::uint32_t documentDepth = wholeMessage_ ? 0 : 1;
    if (value != kMessageTextVersion || depth_ != documentDepth) {
        fail("hbx:v must be 1 and stand on the document element");
    }
}

void XmlReader::readCodedAttribute(std::string_view word, std::string_view value) {
    const char form = word.empty() ? '\0' : word[0];
    const bool isNumber = form == kXmlNumberText || form == kXmlNumberBytes;
    if (!isNumber && form != kXmlNameText && form != kXmlNameBytes) {
        fail("unknown attribute hbx:" + shown(word));
        return;
    }
    const std::string_view coded = word.substr(1);
    const Ref id = isNumber ? numberRef(coded) : nameRef(&elementRef, fromHex(coded));
    const bool isBytes = form == kXmlNumberBytes || form == kXmlNameBytes;
    addAttribute(id, isBytes ? decoded(value) : value);
}

void XmlReader::addAttribute(Ref id, std::string_view value) {
    if (failed()) {
        return;
    }
    const Extra* extra = tree_.extra(current_);
    const std::uint32_t count = extra == nullptr ? 0 : extra->attributeCount;
    if (count == kMaxAttributes) {
        fail("more than " + std::to_string(kMaxAttributes) + " attributes");
        return;
    }
    tree_.setAttribute(current_, id, value);
    if (tree_.extra(current_)->attributeCount == count) {
        fail("attribute given twice");
    }
}

void XmlReader::setNamespace(Ref ns) {
    if (tree_[current_].ns != 0) {
        fail("namespace given twice");
    }
    tree_.setNamespace(current_, ns);
}

void XmlReader::setType(Ref typeNs, Ref type) {
    const Extra* extra = tree_.extra(current_);
    const Extra known = extra == nullptr ? Extra{} : *extra;
    if ((typeNs != 0 && known.typeNs != 0) || (type != 0 && known.type != 0)) {
        fail("type given twice");
    }
    tree_.setType(current_, typeNs != 0 ? typeNs : known.typeNs, type != 0 ? type : known.type);
}

/// The value of the current element is complete: its first child or its end has come.
void XmlReader::finishValue() {
    const bool isMarked = isBase64_ || kind_ != ValueKind::None;
    if (isMarked || findNonBlank(value_) != std::string::npos) {
        tree_.setValue(current_, isBase64_ ? decoded(value_) : value_,
                       kind_ == ValueKind::Xml ? ValueKind::Xml : ValueKind::Text);
    }
    value_.clear();
    kind_ = ValueKind::None;
    isBase64_ = false;
}

void XmlReader::openEnvelope(Attributes attributes) {
    if (!wholeMessage_ || depth_ != 0 || hasEnvelope_ || tree_[kRoot].first != kNoNode ||
        findNonBlank(value_) != std::string::npos) {
        fail(std::string(kXmlEnvelope) + " must come first in the message");
        return;
    }
    hasEnvelope_ = true;
    place_ = Place::Envelope;
    takesText_ = false;
    value_.clear();
    for (const auto& [name, value] : attributes) {
        readEnvelopeField(name, value);
    }
}

void XmlReader::readEnvelopeField(std::string_view name, std::string_view value) {
    const bool isCoded = name.ends_with("64");
    const std::string_view plain = isCoded ? name.substr(0, name.size() - 2) : name;
    const auto* row = std::find_if(std::begin(kEnvelopeRows), std::end(kEnvelopeRows),
                                   [&](const EnvelopeRow& known) { return plain == known.name; });
    if (row == std::end(kEnvelopeRows) || row->kind == EnvelopeKind::Texts ||
        (isCoded && row->kind != EnvelopeKind::Text)) {
        fail("unknown envelope attribute " + shown(name));
    } else if (envelope_.find(row->field) != nullptr) {
        fail("envelope field given twice");
    } else if (!acceptField(envelope_, *row, isCoded ? decoded(value) : value)) {
        fail("envelope field " + std::string(name) + " is no number in range");
    }
}

void XmlReader::openTarget(std::string_view name, Attributes attributes) {
    if (name != kXmlTarget) {
        fail("unknown element " + shown(name) + " in the envelope");
        return;
    }
    if (envelope_.fields.size() == kMaxElements) {
        fail("more than " + std::to_string(kMaxElements) + " targets");
        return;
    }
    place_ = Place::Target;
    takesText_ = true;
    isBase64Target_ = !attributes.empty();
    for (const auto& [key, value] : attributes) {
        const XmlMarkRow* row = findMark(key);
        if (row == nullptr || row->mark != XmlMark::Encoding || value != kXmlBase64) {
            fail("a target takes hbx:enc=\"base64\" and nothing else");
        }
    }
}

void XmlReader::closeTarget() {
    envelope_.add(EnvelopeField::Target, std::string(isBase64Target_ ? decoded(value_) : value_));
    value_.clear();
    place_ = Place::Envelope;
    takesText_ = false;
}

Ref XmlReader::nameRef(MakeRef make, std::string_view name) {
    if (failed()) {
        return 0;
    }
    if (name.empty() || name.size() > kMaxNameLength || name.find('\0') != std::string_view::npos) {
        fail("a name has 1 to " + std::to_string(kMaxNameLength) + " bytes, none of them zero");
        return 0;
    }
    const Ref ref = make(tree_.names(), name);
    if (tree_.names().size() > kMaxNames) {
        fail("more than " + std::to_string(kMaxNames) + " unknown names");
        return 0;
    }
    return ref;
}

Ref XmlReader::numberRef(std::string_view text) {
    const Ref ref = parseXmlNumber(text);
    if (ref == 0) {
        fail("a number must be 1 to " + std::to_string(kDynamicRef - 1));
    }
    return ref;
}

/// Lives until the next call.
std::string_view XmlReader::decoded(std::string_view base64) {
    if (!base64Decode(base64, scratch_)) {
        fail("no base64");
        return {};
    }
    return scratch_;
}

} // namespace

int readXml(std::string_view text, Tree& tree, Envelope& envelope, bool& wholeMessage) {
    XmlReader reader(text, tree, envelope);
    const int result = reader.parse();
    wholeMessage = reader.isWholeMessage();
    return result;
}

} // namespace HBX::internal
