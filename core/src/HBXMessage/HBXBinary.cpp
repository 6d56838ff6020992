#include <HBXMessage/HBXBinary.h>

#include <charconv>
#include <cstdlib>
#include <cstring>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>
#include <HBXMessage/HBXBinaryIterator.h>
#include <HBXMessage/internal/Binary.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/ValueText.h>
#include <HBXMessage/internal/Xml.h>

namespace HBX {

using internal::Envelope;
using internal::EnvelopeField;
using internal::kRoot;
using internal::NodeIndex;
using internal::Top;
using internal::Tree;

namespace {

/// What a parser has made, before it takes the place of something.
struct Parsed {
    Tree& tree;
    Envelope envelope;
    bool wholeMessage = false;
};

int parseBinary(const char* data, int length, Parsed& parsed) {
    if (data == nullptr || length < 0) {
        return -1;
    }
    return readBinary({data, static_cast<std::size_t>(length)}, parsed.tree, parsed.envelope,
                      parsed.wholeMessage);
}

int parseText(std::string_view text, Parsed& parsed) {
    return readXml(text, parsed.tree, parsed.envelope, parsed.wholeMessage);
}

void replace(HBXBinary& message, Parsed& parsed) {
    std::swap(message.tree(), parsed.tree); // by content: cursors refer to the object
    message.envelope() = std::move(parsed.envelope);
}

/// Lends a blank tree to a parser. A message that is parsed into again and again needs no new memory for it;
/// what one large message has needed is not kept.
class SpareTree {
public:
    SpareTree(const Tree& current, std::unique_ptr<Tree>& spare) : spare_(spare) {
        if (!spare_) {
            spare_ = std::make_unique<Tree>();
        }
        spare_->restart(current.epoch() + 1);
    }
    ~SpareTree() {
        if (spare_->footprint() > kLargestSpare) {
            spare_.reset();
        }
    }
    SpareTree(const SpareTree&) = delete;
    SpareTree& operator=(const SpareTree&) = delete;

private:
    static constexpr std::size_t kLargestSpare = std::size_t{1} << 20;

    std::unique_ptr<Tree>& spare_;
};

/// Where an operation that is told a cursor begins; null is the root of the message itself.
struct From {
    const Tree* tree;
    NodeIndex node;
};

bool resolve(const HBXBinary& message, const HBXMessageIterator* from, From& place) {
    if (from == nullptr) {
        place = {&message.tree(), kRoot};
        return true;
    }
    const auto* cursor = dynamic_cast<const HBXBinaryIterator*>(from);
    if (cursor == nullptr || !cursor->alive()) {
        return false;
    }
    place = {&cursor->binary().tree(), cursor->node()};
    return true;
}

/// Appends what was parsed below the cursor's element.
int attach(Parsed& parsed, HBXMessageIterator& into) {
    auto* cursor = dynamic_cast<HBXBinaryIterator*>(&into);
    if (cursor == nullptr || !cursor->alive()) {
        return -1;
    }
    cursor->binary().tree().copyChildren(parsed.tree, kRoot, cursor->node());
    return 0;
}

int encode(const HBXBinary& message, const HBXMessageIterator* from, internal::ByteBuffer& bytes) {
    From place{};
    if (!resolve(message, from, place)) {
        return -1;
    }
    const Top top = place.node == kRoot ? Top::Message : Top::Content;
    return writeBinary(*place.tree, message.envelope(), place.node, top, bytes);
}

// --- envelope fields, all kept as texts ---

int getField(const Envelope& envelope, EnvelopeField field, std::string& value) {
    const std::string* text = envelope.find(field);
    if (text == nullptr) {
        return 1;
    }
    value = *text;
    return 0;
}

template <class Number>
int getField(const Envelope& envelope, EnvelopeField field, Number& value) {
    const std::string* text = envelope.find(field);
    if (text == nullptr) {
        return 1;
    }
    std::from_chars(text->data(), text->data() + text->size(), value);
    return 0;
}

int setField(Envelope& envelope, EnvelopeField field, const std::string& value) {
    envelope.set(field, value);
    return 0;
}

int setField(Envelope& envelope, EnvelopeField field, std::int64_t value) {
    envelope.set(field, std::to_string(value));
    return 0;
}

} // namespace

HBXBinary::HBXBinary() : tree_(std::make_unique<Tree>()), envelope_(std::make_unique<Envelope>()) {}

HBXBinary::~HBXBinary() = default;

HBXMessage* HBXBinary::copy(bool deep) {
    if (!deep) {
        intrusive_ptr_add_ref(this);
        return this;
    }
    auto* copy = new HBXBinary();
    copy->tree().copyMarks(*tree_, kRoot, kRoot);
    copy->tree().copyContent(*tree_, kRoot, kRoot);
    *copy->envelope_ = *envelope_;
    return copy;
}

HBXMessageIterator* HBXBinary::newIterator() { return new HBXBinaryIterator(*this); }

const HBXMessageIterator* HBXBinary::newIterator() const {
    return new HBXBinaryIterator(const_cast<HBXBinary&>(*this)); // handed out for reading only
}

int HBXBinary::create(int type) {
    tree_->clear();
    *envelope_ = {};
    return setType(type);
}

int HBXBinary::create(const char* name) {
    tree_->clear();
    *envelope_ = {};
    if (name == nullptr || *name == '\0') {
        return 0;
    }
    const int result = HBXBinaryIterator(*this).newChild(std::string(name));
    return result;
}

int HBXBinary::init(const char* data, int length) { return deserialize(data, length, nullptr); }

int HBXBinary::serialize(char** out, int* length, const HBXMessageIterator* from, int) const {
    internal::ByteBuffer bytes;
    if (out == nullptr || length == nullptr || encode(*this, from, bytes) != 0) {
        return -1;
    }
    *length = static_cast<int>(bytes.size());
    *out = bytes.release();
    return 0;
}

int HBXBinary::serialize(char* buffer, std::size_t* length, const HBXMessageIterator* from) const {
    internal::ByteBuffer bytes;
    if (length == nullptr || encode(*this, from, bytes) != 0) {
        return -1;
    }
    const bool fits = buffer != nullptr && *length >= bytes.size();
    *length = bytes.size();
    if (!fits) {
        return -2;
    }
    std::memcpy(buffer, bytes.data(), bytes.size());
    return 0;
}

int HBXBinary::deserialize(const char* data, int length, HBXMessageIterator* into) {
    const SpareTree spare(*tree_, spare_);
    Parsed parsed{.tree = *spare_, .envelope = {}};
    if (parseBinary(data, length, parsed) != 0) {
        return -1;
    }
    if (into != nullptr) {
        return attach(parsed, *into);
    }
    replace(*this, parsed);
    return 0;
}

int HBXBinary::deserialize(const HBXMessageIterator* from, HBXMessageIterator* into) {
    if (into != nullptr) {
        return into->copyToChild(from);
    }
    From place{};
    if (from == nullptr || !resolve(*this, from, place)) {
        return -1;
    }
    const SpareTree spare(*tree_, spare_);
    Parsed parsed{.tree = *spare_, .envelope = {}};
    parsed.tree.copyContent(*place.tree, place.node, kRoot);
    replace(*this, parsed);
    return 0;
}

int HBXBinary::fromText(const char* text, HBXMessageIterator* into) {
    if (text == nullptr) {
        return -1;
    }
    const SpareTree spare(*tree_, spare_);
    Parsed parsed{.tree = *spare_, .envelope = {}};
    if (parseText(text, parsed) != 0) {
        return -1;
    }
    if (into != nullptr) {
        return attach(parsed, *into);
    }
    replace(*this, parsed);
    return 0;
}

char* HBXBinary::toText(const HBXMessageIterator* from, const std::string& indent, int) const {
    From place{};
    internal::ByteBuffer text;
    if (!resolve(*this, from, place) || writeXml(*place.tree, *envelope_, place.node, indent, text) != 0) {
        return nullptr;
    }
    text.append('\0');
    return text.release();
}

int HBXBinary::fromTextFile(const std::string& path) {
    std::string text;
    const SpareTree spare(*tree_, spare_);
    Parsed parsed{.tree = *spare_, .envelope = {}};
    if (readFile(path, internal::kMaxInput, text) != 0) {
        return -1;
    }
    if (parseText(text, parsed) != 0) {
        setErrorMessage(path + ": " + getErrorMessage());
        return -1;
    }
    replace(*this, parsed);
    return 0;
}

int HBXBinary::toTextFile(const std::string& path) const {
    internal::ByteBuffer text;
    return writeXml(*tree_, *envelope_, kRoot, "  ", text) == 0 ? writeFileAtomic(path, text.view()) : -1;
}

int HBXBinary::getTarget(std::vector<std::string>& value) const {
    std::vector<std::string> targets;
    for (const Envelope::Field& field : envelope_->fields) {
        if (field.field == EnvelopeField::Target) {
            targets.push_back(field.text);
        }
    }
    if (targets.empty()) {
        return 1;
    }
    value = std::move(targets);
    return 0;
}

int HBXBinary::setTarget(const std::vector<std::string>& value) {
    envelope_->remove(EnvelopeField::Target);
    for (const std::string& target : value) {
        envelope_->add(EnvelopeField::Target, target);
    }
    return 0;
}

int HBXBinary::addTarget(const std::string& value) {
    envelope_->add(EnvelopeField::Target, value);
    return 0;
}

int HBXBinary::setID(const std::string& value, bool overwrite) {
    return !overwrite && envelope_->find(EnvelopeField::Id) != nullptr
               ? 0
               : setField(*envelope_, EnvelopeField::Id, value);
}

int HBXBinary::getOrigin(std::string& value) const {
    return getField(*envelope_, EnvelopeField::Origin, value);
}
int HBXBinary::setOrigin(const std::string& value) {
    return setField(*envelope_, EnvelopeField::Origin, value);
}
int HBXBinary::getID(std::string& value) const { return getField(*envelope_, EnvelopeField::Id, value); }
int HBXBinary::getLog(int& value) const { return getField(*envelope_, EnvelopeField::Log, value); }
int HBXBinary::setLog(int value) { return setField(*envelope_, EnvelopeField::Log, value); }
int HBXBinary::getPriority(int& value) const { return getField(*envelope_, EnvelopeField::Priority, value); }
int HBXBinary::setPriority(int value) { return setField(*envelope_, EnvelopeField::Priority, value); }
int HBXBinary::getProgress(int& value) const { return getField(*envelope_, EnvelopeField::Progress, value); }
int HBXBinary::setProgress(int value) { return setField(*envelope_, EnvelopeField::Progress, value); }
int HBXBinary::getSession(std::string& value) const {
    return getField(*envelope_, EnvelopeField::Session, value);
}
int HBXBinary::setSession(const std::string& value) {
    return setField(*envelope_, EnvelopeField::Session, value);
}
int HBXBinary::getSessionID(std::string& value) const {
    return getField(*envelope_, EnvelopeField::SessionId, value);
}
int HBXBinary::setSessionID(const std::string& value) {
    return setField(*envelope_, EnvelopeField::SessionId, value);
}
int HBXBinary::getTime(std::int64_t& value) const { return getField(*envelope_, EnvelopeField::Time, value); }
int HBXBinary::setTime(std::int64_t value) { return setField(*envelope_, EnvelopeField::Time, value); }
int HBXBinary::getTimeout(int& value) const { return getField(*envelope_, EnvelopeField::Timeout, value); }
int HBXBinary::setTimeout(int value) { return setField(*envelope_, EnvelopeField::Timeout, value); }
int HBXBinary::getTimeoutLimit(int& value) const {
    return getField(*envelope_, EnvelopeField::TimeoutLimit, value);
}
int HBXBinary::setTimeoutLimit(int value) { return setField(*envelope_, EnvelopeField::TimeoutLimit, value); }
int HBXBinary::getType(int& value) const { return getField(*envelope_, EnvelopeField::Type, value); }
int HBXBinary::setType(int value) { return setField(*envelope_, EnvelopeField::Type, value); }
int HBXBinary::getUid(std::string& value) const { return getField(*envelope_, EnvelopeField::Uid, value); }
int HBXBinary::setUid(const std::string& value) { return setField(*envelope_, EnvelopeField::Uid, value); }
int HBXBinary::getVersion(int& value) const { return getField(*envelope_, EnvelopeField::Version, value); }
int HBXBinary::setVersion(int value) { return setField(*envelope_, EnvelopeField::Version, value); }

} // namespace HBX
