#include <HBXMessage/internal/Xml.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_set>
#include <vector>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXMessage/internal/ByteBuffer.h>
#include <HBXMessage/internal/ElementPath.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/NumberText.h>
#include <HBXMessage/internal/XmlChars.h>
#include <HBXMessage/internal/XmlEscape.h>
#include <HBXMessage/internal/XmlNames.h>

namespace HBX::internal {
namespace {

constexpr std::string_view kDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
constexpr std::string_view kMarkText = R"( hbx:kind="text")";
constexpr std::string_view kMarkXml = R"( hbx:kind="xml")";
constexpr std::string_view kMarkBase64 = R"( hbx:enc="base64")";

/// One pass over a tree in document order. How a value is marked depends on what it turns out to hold, so it
/// is written in the common form first and taken back where that cannot carry it.
class XmlWriter {
public:
    XmlWriter(const Tree& tree, const Envelope& envelope, NodeIndex top, std::string_view indent,
              ByteBuffer& out)
        : tree_(tree),
          envelope_(envelope),
          top_(top),
          deepest_(top == kRoot ? kMaxDepth : kMaxDepth - 1),
          indent_(indent),
          out_(out) {}

    bool write();

private:
    void writeElements();
    NodeIndex closeFinished(NodeIndex node);
    void openElement(NodeIndex node);
    void closeElement();

    void writeTag(NodeIndex node);
    void writeCodedTag(Ref id, std::string_view name);
    void writeMarks(NodeIndex node);
    void writeContent(NodeIndex node);
    bool tryContent(NodeIndex node);
    void endStartTag(NodeIndex node);
    void writeEnvelope();
    void writeTarget(std::string_view target);

    void writeAttribute(Ref id, std::string_view value);
    void writeCodedKey(Ref id, char byNumber, char byName);
    void writeName(std::string_view key, std::string_view name);
    void writeRef(Ref ref, std::string_view name, std::string_view word);
    void writeNumber(Ref number);
    bool tryQuoted(std::string_view value);
    void writeQuotedBase64(std::string_view bytes);
    void breakLine(std::uint32_t level);

    [[nodiscard]] bool hasInner(NodeIndex node) const {
        return tree_[node].first != kNoNode || (node == kRoot && !envelope_.fields.empty());
    }
    void checkName(Ref ref);
    bool fits(std::size_t more);
    void fail(std::string_view reason);

    const Tree& tree_;
    const Envelope& envelope_;
    const NodeIndex top_;
    const std::uint32_t deepest_;
    const std::string_view indent_;
    ByteBuffer& out_;

    bool failed_ = false;
    std::string line_ = "\n"; ///< with the deepest indentation so far
    NodeIndex current_ = kRoot;
    std::uint32_t level_ = 0; ///< of the current element, the document element being 0
    std::uint32_t elements_ = 0;
    std::array<Span, kMaxDepth + 1> tags_{}; ///< where in the text the tags of the open elements stand
    std::vector<const Attribute*> attributes_;
    std::vector<bool> usedNames_;
    std::uint32_t nameCount_ = 0;
    std::unordered_set<Ref> numbers_; ///< of attributes without a name
};

bool XmlWriter::write() {
    if (findNonBlank(indent_) != std::string_view::npos) {
        fail("the indentation must be blank");
        return false;
    }
    out_.append(kDeclaration);
    breakLine(0);
    writeElements();
    breakLine(0);
    return fits(0) && !failed_;
}

void XmlWriter::writeElements() {
    NodeIndex node = top_;
    while (node != kNoNode) {
        openElement(node);
        if (failed_) {
            return;
        }
        if (tree_[node].first == kNoNode) {
            node = closeFinished(node);
        } else if (level_ == deepest_) {
            fail("more than " + std::to_string(kMaxDepth) + " levels of elements");
            return;
        } else {
            ++level_;
            node = tree_[node].first;
        }
    }
}

/// Closes what ends with this leaf; the element that comes next, kNoNode at the end.
NodeIndex XmlWriter::closeFinished(NodeIndex node) {
    while (node != top_) {
        if (tree_[node].next != kNoNode) {
            return tree_[node].next;
        }
        node = tree_[node].parent;
        --level_;
        if (tree_[node].kind == ValueKind::None) {
            breakLine(level_);
        }
        closeElement();
    }
    return kNoNode;
}

void XmlWriter::openElement(NodeIndex node) {
    current_ = node;
    const Node& element = tree_[node];
    if (!indent_.empty() && node != top_ && tree_[element.parent].kind == ValueKind::None) {
        breakLine(level_);
    }
    if (node != kRoot && ++elements_ > kMaxElements) {
        fail("more than " + std::to_string(kMaxElements) + " elements");
        return;
    }
    writeTag(node);
    if (element.ns != 0 || element.extra != 0) {
        writeMarks(node);
    }
    if (hasInner(node) || element.text.length != 0) {
        writeContent(node);
        return;
    }
    if (element.kind != ValueKind::None) {
        out_.append(element.kind == ValueKind::Xml ? kMarkXml : kMarkText);
    }
    out_.append("/>");
}

void XmlWriter::closeElement() {
    const Span tag = tags_[level_];
    char* to = out_.ensure(tag.length + 3);
    const char* from = out_.data() + tag.offset;
    *to++ = '<';
    *to++ = '/';
    to = copyBytes(to, {from, tag.length});
    *to = '>';
    out_.advance(tag.length + 3);
}

void XmlWriter::writeTag(NodeIndex node) {
    const Ref id = tree_[node].id;
    const std::string_view name = node == kRoot ? kXmlMessage : elementName(tree_.names(), id);
    const bool isMistakable = node == top_ && node != kRoot && name == kXmlMessage;
    const bool isPlain = id < kDynamicRef ? !name.empty() : isPlainXmlName(name);
    const std::string_view tag = isPlain && !isMistakable ? name : kXmlElement;
    checkName(id);
    tags_[level_] = {static_cast<std::uint32_t>(out_.size() + 1), static_cast<std::uint32_t>(tag.size())};
    char* to = out_.ensure(tag.size() + 1);
    *to = '<';
    copyBytes(to + 1, tag);
    out_.advance(tag.size() + 1);
    if (node == top_) {
        out_.append(node == kRoot ? R"( xmlns:hbx="urn:hbx:message" hbx:v="1")"
                                  : R"( xmlns:hbx="urn:hbx:message")");
    }
    if (tag.data() != name.data()) {
        writeCodedTag(id, name);
    }
}

void XmlWriter::writeCodedTag(Ref id, std::string_view name) {
    if (id < kDynamicRef) {
        out_.append(" hbx:id=\"");
        writeNumber(id);
        out_.append('"');
    } else {
        writeName(" hbx:name", name);
    }
}

/// Namespace, type and attributes.
void XmlWriter::writeMarks(NodeIndex node) {
    const NameList& names = tree_.names();
    const Ref ns = tree_[node].ns;
    writeRef(ns, namespaceName(names, ns), " hbx:ns");
    const Extra* extra = tree_.extra(node);
    if (extra == nullptr) {
        return;
    }
    writeRef(extra->typeNs, namespaceName(names, extra->typeNs), " hbx:tns");
    writeRef(extra->type, typeName(names, extra->type), " hbx:type");
    if (extra->attributeCount > kMaxAttributes) {
        fail("more than " + std::to_string(kMaxAttributes) + " attributes");
        return;
    }
    tree_.listAttributes(node, attributes_);
    for (const Attribute* attribute : attributes_) {
        writeAttribute(attribute->id, tree_.bytes(attribute->text));
    }
}

/// What stands behind the marks: envelope and value, and the end tag when no child comes between.
void XmlWriter::writeContent(NodeIndex node) {
    if (!fits(tree_[node].text.length)) {
        return;
    }
    const std::size_t start = out_.size();
    if (!tryContent(node)) {
        out_.truncate(start);
        out_.append(tree_[node].kind == ValueKind::Xml ? kMarkXml : "");
        out_.append(kMarkBase64);
        endStartTag(node);
        appendBase64(out_, tree_.text(node));
    }
    if (tree_[node].first == kNoNode) {
        if (node == kRoot && tree_[node].kind == ValueKind::None) {
            breakLine(0); // behind the envelope
        }
        closeElement();
    }
}

/// False when the value needs base64.
bool XmlWriter::tryContent(NodeIndex node) {
    const std::string_view text = tree_.text(node);
    switch (tree_[node].kind) {
    case ValueKind::None:
        endStartTag(node);
        return true;
    case ValueKind::Text:
        if (tree_[node].first != kNoNode || findNonBlank(text) == std::string_view::npos) {
            out_.append(kMarkText);
        }
        endStartTag(node);
        return appendEscaped(out_, text, kXmlStopsInText);
    case ValueKind::Xml:
        out_.append(kMarkXml);
        endStartTag(node);
        return appendCdata(out_, text);
    }
    return false;
}

void XmlWriter::endStartTag(NodeIndex node) {
    out_.append('>');
    if (node == kRoot && !envelope_.fields.empty()) {
        writeEnvelope();
    }
}

void XmlWriter::writeEnvelope() {
    const bool isIndented = tree_[kRoot].kind == ValueKind::None;
    const auto startLine = [&](std::uint32_t level) {
        if (isIndented) {
            breakLine(level);
        }
    };
    startLine(1);
    out_.append("<hbx:envelope");
    for (const Envelope::Field& field : envelope_.fields) {
        if (field.field != EnvelopeField::Target) {
            writeName(std::string(" ") + envelopeRow(field.field).name, field.text);
        }
    }
    if (envelope_.find(EnvelopeField::Target) == nullptr) {
        out_.append("/>");
        return;
    }
    if (envelope_.fields.size() > kMaxElements) {
        fail("more than " + std::to_string(kMaxElements) + " targets");
        return;
    }
    out_.append('>');
    for (const Envelope::Field& field : envelope_.fields) {
        if (field.field == EnvelopeField::Target) {
            startLine(2);
            writeTarget(field.text);
        }
    }
    startLine(1);
    out_.append("</hbx:envelope>");
}

void XmlWriter::writeTarget(std::string_view target) {
    if (!fits(target.size())) {
        return;
    }
    const std::size_t start = out_.size();
    out_.append("<hbx:target>");
    if (!appendEscaped(out_, target, kXmlStopsInText)) {
        out_.truncate(start);
        out_.append(R"(<hbx:target hbx:enc="base64">)");
        appendBase64(out_, target);
    }
    out_.append("</hbx:target>");
}

void XmlWriter::writeAttribute(Ref id, std::string_view value) {
    const std::string_view name = elementName(tree_.names(), id);
    checkName(id);
    if (!fits(value.size())) {
        return;
    }
    const std::size_t start = out_.size();
    if (id < kDynamicRef ? !name.empty() : isPlainXmlName(name)) {
        out_.append(' ');
        out_.append(name);
    } else {
        writeCodedKey(id, kXmlNumberText, kXmlNameText);
    }
    if (!tryQuoted(value)) {
        out_.truncate(start);
        writeCodedKey(id, kXmlNumberBytes, kXmlNameBytes);
        writeQuotedBase64(value);
    }
}

void XmlWriter::writeCodedKey(Ref id, char byNumber, char byName) {
    out_.append(" hbx:");
    if (id < kDynamicRef) {
        out_.append(byNumber);
        writeNumber(id);
        if (numbers_.insert(id).second && numbers_.size() > kMaxXmlNumbers) {
            fail("more than " + std::to_string(kMaxXmlNumbers) + " attributes known by number alone");
        }
        return;
    }
    out_.append(byName);
    for (const char c : tree_.names().name(id)) {
        const auto byte = static_cast<unsigned char>(c);
        out_.append("0123456789abcdef"[byte >> 4]);
        out_.append("0123456789abcdef"[byte & 15]);
    }
}

/// key="name", or key64="base64 of it" where text cannot carry it.
void XmlWriter::writeName(std::string_view key, std::string_view name) {
    if (!fits(name.size())) {
        return;
    }
    out_.append(key);
    const std::size_t start = out_.size();
    if (!tryQuoted(name)) {
        out_.truncate(start);
        out_.append("64");
        writeQuotedBase64(name);
    }
}

/// By name where there is one; the word for the number has "id" at its end.
void XmlWriter::writeRef(Ref ref, std::string_view name, std::string_view word) {
    if (ref == 0) {
        return;
    }
    checkName(ref);
    if (!name.empty()) {
        writeName(word, name);
        return;
    }
    out_.append(word);
    out_.append("id=\"");
    writeNumber(ref);
    out_.append('"');
}

void XmlWriter::writeNumber(Ref number) { out_.append(NumberText(std::int64_t{number}).view()); }

bool XmlWriter::tryQuoted(std::string_view value) {
    out_.append("=\"");
    const bool done = appendEscaped(out_, value, kXmlStopsInAttribute);
    out_.append('"');
    return done;
}

void XmlWriter::writeQuotedBase64(std::string_view bytes) {
    out_.append("=\"");
    appendBase64(out_, bytes);
    out_.append('"');
}

void XmlWriter::breakLine(std::uint32_t level) {
    const std::size_t size = level * indent_.size();
    if (indent_.empty() || !fits(size)) {
        return;
    }
    while (line_.size() <= size) {
        line_ += indent_;
    }
    char* to = out_.ensure(1 + size);
    copyBytes(to, {line_.data(), 1 + size});
    out_.advance(1 + size);
}

/// Names that the reader would refuse, or one more than it takes.
void XmlWriter::checkName(Ref ref) {
    if (ref < kDynamicRef) {
        return;
    }
    const NameList& names = tree_.names();
    if (names.name(ref).size() > kMaxNameLength) {
        fail("a name longer than " + std::to_string(kMaxNameLength) + " bytes");
    }
    if (names.size() <= kMaxNames) {
        return;
    }
    usedNames_.resize(names.size());
    if (!usedNames_[ref - kDynamicRef] && ++nameCount_ > kMaxNames) {
        fail("more than " + std::to_string(kMaxNames) + " unknown names");
    }
    usedNames_[ref - kDynamicRef] = true;
}

/// Whether the text stays within what the reader takes when `more` bytes are added.
bool XmlWriter::fits(std::size_t more) {
    if (out_.size() + more > kMaxInput) {
        fail("the text would be longer than " + std::to_string(kMaxInput) + " bytes");
        return false;
    }
    return true;
}

void XmlWriter::fail(std::string_view reason) {
    if (!failed_) {
        failed_ = true;
        setErrorMessage(elementPath(tree_, current_) + ": " + std::string(reason));
    }
}

} // namespace

int writeXml(const Tree& tree, const Envelope& envelope, NodeIndex from, std::string_view indent,
             ByteBuffer& out) {
    return XmlWriter(tree, envelope, from, indent, out).write() ? 0 : -1;
}

} // namespace HBX::internal
