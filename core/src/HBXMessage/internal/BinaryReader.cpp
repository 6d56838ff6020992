#include <HBXMessage/internal/Binary.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXMessage/internal/ElementPath.h>
#include <HBXMessage/internal/Limits.h>

namespace HBX::internal {
namespace {

constexpr std::size_t kBytesPerElement = 12; // a guess that spares most messages most growing

/// The names of the input, mapped to references when they are first used as element, namespace or type. They
/// must be used in the order in which they are listed, all of them: equal trees then have equal bytes.
class InputNames {
public:
    void add(std::string_view name) { names_.push_back({name, 0, 0, 0}); }
    [[nodiscard]] std::string_view name(std::uint32_t index) const { return names_[index].text; }
    [[nodiscard]] bool allUsed() const { return used_ == names_.size(); }

    /// False for an index that is out of range or ahead of its turn.
    bool use(std::uint64_t index, bool& firstTime) {
        firstTime = index == used_;
        if (index > used_ || index >= names_.size()) {
            return false;
        }
        used_ += firstTime ? 1U : 0U;
        return true;
    }

    Ref element(NameList& names, std::uint32_t index) {
        return mapped(names_[index].element, names_[index].text, names, elementRef);
    }
    Ref nameSpace(NameList& names, std::uint32_t index) {
        return mapped(names_[index].nameSpace, names_[index].text, names, namespaceRef);
    }
    Ref type(NameList& names, std::uint32_t index) {
        return mapped(names_[index].type, names_[index].text, names, typeRef);
    }

private:
    struct Name {
        std::string_view text;
        Ref element, nameSpace, type;
    };

    static Ref mapped(Ref& known, std::string_view text, NameList& names,
                      Ref (*map)(NameList&, std::string_view)) {
        if (known == 0) {
            known = map(names, text);
        }
        return known;
    }

    std::vector<Name> names_;
    std::size_t used_ = 0;
};

/// Builds the tree from what the decoder finds.
class TreeBuilder {
public:
    TreeBuilder(Tree& tree, std::string_view input) : tree_(tree), input_(input) {}

    /// The header was good: from here on the input is worth its memory.
    void begin() {
        tree_.reserve(std::min<std::size_t>(input_.size() / kBytesPerElement, kMaxElements + 1),
                      input_.size());
        tree_.adoptInput(input_);
    }

    /// The top node is the root itself, or its only child.
    void top(Ref id) { made_ = id == 0 ? kRoot : tree_.append(kRoot, id, 0); }
    void element(Ref id) { made_ = tree_.append(parent_, id, 0); }
    void value(const char* data, std::uint32_t length, ValueKind kind) {
        tree_.setParsedValue(made_, span(data, length), kind);
    }
    void text(Ref id, const char* data, std::uint32_t length) {
        tree_.setParsedValue(tree_.append(parent_, id, 0), span(data, length), ValueKind::Text);
    }
    void nameSpace(Ref ns) { tree_.setNamespace(made_, ns); }
    void type(Ref ns, Ref type) { tree_.setType(made_, ns, type); }
    void attribute(Ref id, const char* data, std::uint32_t length) {
        tree_.addParsedAttribute(made_, id, span(data, length));
    }
    void open() { parent_ = made_; }
    void close() { parent_ = tree_[parent_].parent; }
    NameList& names() { return tree_.names(); }

private:
    [[nodiscard]] Span span(const char* data, std::uint32_t length) const {
        return {static_cast<std::uint32_t>(data - input_.data()), length};
    }

    Tree& tree_;
    std::string_view input_;
    NodeIndex parent_ = kNoNode;
    NodeIndex made_ = kNoNode;
};

/// Takes the same and keeps nothing.
class NoBuilder {
public:
    void begin() {}
    void top(Ref) {}
    void element(Ref) {}
    void value(const char*, std::uint32_t, ValueKind) {}
    void text(Ref, const char*, std::uint32_t) {}
    void nameSpace(Ref) {}
    void type(Ref, Ref) {}
    void attribute(Ref, const char*, std::uint32_t) {}
    void open() {}
    void close() {}
    NameList& names() { return names_; }

private:
    NameList names_;
};

template <class Builder>
class Decoder {
public:
    Decoder(std::string_view input, Builder& builder, Envelope& envelope)
        : start_(reinterpret_cast<const std::uint8_t*>(input.data())),
          at_(start_),
          end_(start_ + input.size()),
          builder_(builder),
          envelope_(envelope) {}

    int run(bool& wholeMessage) {
        if (header(wholeMessage) && nameList() && (!wholeMessage || envelope()) && nodes(wholeMessage)) {
            return 0;
        }
        setErrorMessage("offset " + std::to_string(at_ - start_) + ", " + path() + ": " + reason_);
        return -1;
    }

private:
    /// An element whose children are being read.
    struct Open {
        const std::uint8_t* end;
        Ref id;
    };

    bool fail(const char* reason) {
        reason_ = reason;
        return false;
    }

    [[nodiscard]] std::string path() {
        std::string path;
        for (std::uint32_t i = 1; i <= depth_; ++i) {
            if (open_[i].id != 0) {
                path += '/' + shownName(builder_.names(), open_[i].id);
            }
        }
        return path.empty() ? "/" : path;
    }

    bool number(std::uint64_t& value) {
        const std::uint8_t* next = readVarint(at_, end_, value);
        if (next == nullptr) {
            return fail("a number is cut off, too large or not in its shortest form");
        }
        at_ = next;
        return true;
    }

    bool bytes(const char*& data, std::uint32_t& length, const std::uint8_t* limit) {
        const std::uint8_t* next = readLength(at_, limit, length);
        if (next == nullptr) {
            return fail("a length is malformed or goes beyond the enclosing element");
        }
        data = reinterpret_cast<const char*>(next);
        at_ = next + length;
        return true;
    }

    bool header(bool& wholeMessage) {
        const auto size = static_cast<std::size_t>(end_ - start_);
        const char* head = reinterpret_cast<const char*>(start_);
        if (size > kMaxInput) {
            return fail("larger than a message may be");
        }
        if (size < kHeaderSize || std::memcmp(head, kMagic, sizeof kMagic) != 0) {
            return fail("no binary message");
        }
        if (start_[4] != kMessageBinaryVersion || start_[5] > 1 || start_[6] != 0 || start_[7] != 0) {
            return fail("a binary message of an unknown version or form");
        }
        if (loadU32(head + 8) != size - kHeaderSize) {
            return fail("the length in the header is not that of the message");
        }
        wholeMessage = start_[5] == static_cast<std::uint8_t>(Wrapping::Message);
        at_ = start_ + kHeaderSize;
        builder_.begin();
        return true;
    }

    bool nameList() {
        std::uint64_t count = 0;
        if (!number(count)) {
            return false;
        }
        if (count > kMaxNames) {
            return fail("more names than a message may have");
        }
        std::set<std::string_view> seen; // ordered: names can be chosen to have one hash
        for (std::uint64_t i = 0; i < count; ++i) {
            const char* data = nullptr;
            std::uint32_t length = 0;
            if (!bytes(data, length, end_)) {
                return false;
            }
            const std::string_view name(data, length);
            if (length == 0 || length > kMaxNameLength || name.find('\0') != std::string_view::npos) {
                return fail("a name is empty, too long or holds a zero byte");
            }
            if (!seen.insert(name).second) {
                return fail("a name is listed twice");
            }
            names_.add(name);
        }
        return true;
    }

    bool envelope() {
        std::uint64_t count = 0;
        if (!number(count)) {
            return false;
        }
        std::uint8_t last = 0;
        for (std::uint64_t i = 0; i < count; ++i) {
            if (at_ == end_) {
                return fail("the envelope is cut off");
            }
            const std::uint8_t field = *at_++;
            const char* data = nullptr;
            std::uint32_t length = 0;
            if (field == 0 || field > std::size(kEnvelopeRows)) {
                return fail("an unknown envelope field");
            }
            const EnvelopeRow& row = envelopeRow(static_cast<EnvelopeField>(field));
            if (field < last || (field == last && row.kind != EnvelopeKind::Texts)) {
                return fail("envelope fields out of order");
            }
            last = field;
            if (!bytes(data, length, end_)) {
                return false;
            }
            if (!acceptField(envelope_, row, {data, length})) {
                return fail("an envelope field is no number in its shortest form");
            }
        }
        return true;
    }

    bool nodes(bool wholeMessage) {
        open_[0] = {end_, 0};
        // A root counts neither as an element nor as a level; an element alone is read as the child of one.
        mostOpen_ = wholeMessage ? kMaxDepth : kMaxDepth - 1;
        mostElements_ = wholeMessage ? kMaxElements + 1 : kMaxElements;
        if (!element(wholeMessage ? Place::Root : Place::Top)) {
            return false;
        }
        while (depth_ > 0) {
            takePlainElements();
            if (at_ == open_[depth_].end) {
                --depth_;
                builder_.close();
            } else if (!element(Place::Inner)) {
                return false;
            }
        }
        if (at_ != end_) {
            return fail("bytes behind the last element");
        }
        return names_.allUsed() || fail("a listed name is not used");
    }

    enum class Place { Root, Top, Inner };

    /// The short way over elements that are a number and a short text, as most are; stops at any other.
    void takePlainElements() {
        const std::uint8_t* at = at_;
        const std::uint8_t* const limit = open_[depth_].end;
        while (limit - at >= 3 && elements_ < mostElements_) {
            std::uint32_t head = *at;
            std::uint32_t size = 1;
            if (head >= 0x80) {
                head = (head & 0x7F) | std::uint32_t{at[1]} << 7;
                size = 2;
            }
            const std::uint32_t length = at[size];
            // A number that is not 0, form 0, no name; a second byte that ends the number and is not 0.
            if ((head & 7) != 0 || head == 0 || (size == 2 && static_cast<std::uint8_t>(at[1] - 1) > 0x7E) ||
                length > 0x7F || static_cast<std::uint32_t>(limit - at) < size + 1 + length) {
                break;
            }
            ++elements_;
            builder_.text(head >> 3, reinterpret_cast<const char*>(at) + size + 1, length);
            at += size + 1 + length;
        }
        at_ = at;
    }

    bool element(Place place) {
        std::uint64_t head = 0;
        const std::uint8_t* limit = open_[depth_].end;
        const std::uint8_t* next = readVarint(at_, limit, head);
        if (next == nullptr) {
            return fail("an element is cut off or malformed");
        }
        at_ = next;
        Ref id = static_cast<Ref>(head >> 3);
        if ((head & 1) != 0) [[unlikely]] {
            bool ignored = false;
            if (place == Place::Root || !names_.use(head >> 3, ignored)) {
                return fail("a name index is out of range or out of turn");
            }
            id = names_.element(builder_.names(), id);
        } else if (head >> 3 >= kDynamicRef || (id == 0) != (place == Place::Root)) {
            return fail("an element number that is not allowed here");
        }
        if (elements_++ == mostElements_) {
            return fail("more elements than a message may have");
        }
        if (place == Place::Inner) [[likely]] {
            builder_.element(id);
        } else {
            builder_.top(id);
        }
        switch (static_cast<Form>(head >> 1 & 3)) {
        case kFormText:
            return value(ValueKind::Text, limit);
        case kFormEmpty:
            return true;
        case kFormChildren:
            return children(id, limit);
        case kFormFlags:
            return flagged(id, limit);
        }
        return false;
    }

    bool value(ValueKind kind, const std::uint8_t* limit) {
        const char* data = nullptr;
        std::uint32_t length = 0;
        if (!bytes(data, length, limit)) {
            return false;
        }
        builder_.value(data, length, kind);
        return true;
    }

    bool children(Ref id, const std::uint8_t* limit) {
        std::uint32_t length = 0;
        const std::uint8_t* next = readLength(at_, limit, length);
        if (next == nullptr || length == 0) {
            return fail("a block of children is empty or goes beyond the enclosing element");
        }
        if (depth_ == mostOpen_) {
            return fail("deeper than a message may be");
        }
        at_ = next;
        open_[++depth_] = {next + length, id};
        builder_.open();
        return true;
    }

    bool flagged(Ref id, const std::uint8_t* limit) {
        if (at_ == limit) {
            return fail("an element is cut off");
        }
        const unsigned flags = *at_++;
        if (flags >= 2 * kHasChildren || hasShorterForm(flags) || (flags & (kIsXml | kHasValue)) == kIsXml) {
            return fail("flags that are unknown, contradict each other or have a shorter form");
        }
        if ((flags & kHasNamespace) != 0 && !nameSpace()) {
            return false;
        }
        if ((flags & kHasType) != 0 && !type()) {
            return false;
        }
        if ((flags & kHasValue) != 0 &&
            !value((flags & kIsXml) != 0 ? ValueKind::Xml : ValueKind::Text, limit)) {
            return false;
        }
        if ((flags & kHasAttributes) != 0 && !attributes(limit)) {
            return false;
        }
        return (flags & kHasChildren) == 0 || children(id, limit);
    }

    /// A reference as written; `isNew` when it is a name that was not used before.
    bool reference(std::uint64_t& written, bool& isNew) {
        isNew = false;
        if (!number(written)) {
            return false;
        }
        if ((written & 1) != 0) {
            return names_.use(written >> 1, isNew) || fail("a name index is out of range or out of turn");
        }
        return written >> 1 < kDynamicRef || fail("a number that is out of range");
    }

    bool nameSpace() {
        std::uint64_t written = 0;
        bool isNew = false;
        if (!reference(written, isNew)) {
            return false;
        }
        if (written == 0) {
            return fail("a namespace that is none");
        }
        builder_.nameSpace(namespaceOf(written));
        return true;
    }

    Ref namespaceOf(std::uint64_t written) {
        const auto index = static_cast<std::uint32_t>(written >> 1);
        return (written & 1) != 0 ? names_.nameSpace(builder_.names(), index) : index;
    }

    bool type() {
        std::uint64_t ns = 0;
        std::uint64_t type = 0;
        bool isNew = false;
        if (!reference(ns, isNew) || !reference(type, isNew)) {
            return false;
        }
        if (ns == 0 && type == 0) {
            return fail("a complex type that is none");
        }
        const auto index = static_cast<std::uint32_t>(type >> 1);
        builder_.type(namespaceOf(ns), (type & 1) != 0 ? names_.type(builder_.names(), index) : index);
        return true;
    }

    bool attributes(const std::uint8_t* limit) {
        std::uint64_t count = 0;
        if (!number(count)) {
            return false;
        }
        if (count == 0 || count > kMaxAttributes) {
            return fail("no attributes, or more than an element may have");
        }
        std::uint64_t last = 0;
        std::string_view lastNew;
        bool folded = false;
        attributeIds_.clear();
        for (std::uint64_t i = 0; i < count; ++i) {
            std::uint64_t written = 0;
            bool isNew = false;
            const char* data = nullptr;
            std::uint32_t length = 0;
            if (!reference(written, isNew)) {
                return false;
            }
            const auto index = static_cast<std::uint32_t>(written >> 1);
            if (written <= last || (isNew && names_.name(index) < lastNew)) {
                return fail("attributes out of order");
            }
            last = written;
            if (isNew) {
                lastNew = names_.name(index);
            }
            if (!bytes(data, length, limit)) {
                return false;
            }
            const Ref id = (written & 1) != 0 ? names_.element(builder_.names(), index) : index;
            folded = folded || ((written & 1) != 0 && id < kDynamicRef);
            attributeIds_.push_back(id);
            builder_.attribute(id, data, length);
        }
        return !folded || areUnique(attributeIds_) || fail("an attribute by its number and by its name");
    }

    static bool areUnique(std::vector<Ref>& ids) {
        std::sort(ids.begin(), ids.end());
        return std::adjacent_find(ids.begin(), ids.end()) == ids.end();
    }

    const std::uint8_t* start_;
    const std::uint8_t* at_;
    const std::uint8_t* end_;
    Builder& builder_;
    Envelope& envelope_;
    InputNames names_;
    std::vector<Ref> attributeIds_; // of the element being read
    std::array<Open, kMaxDepth + 1> open_;
    std::uint32_t depth_ = 0;
    std::uint32_t mostOpen_ = 0;
    std::uint32_t elements_ = 0;
    std::uint32_t mostElements_ = 0;
    const char* reason_ = "";
};

} // namespace

int readBinary(std::string_view bytes, Tree& tree, Envelope& envelope, bool& wholeMessage) {
    TreeBuilder builder(tree, bytes);
    return Decoder(bytes, builder, envelope).run(wholeMessage);
}

int checkBinary(std::string_view bytes) {
    NoBuilder builder;
    Envelope envelope;
    bool wholeMessage = false;
    return Decoder(bytes, builder, envelope).run(wholeMessage);
}

} // namespace HBX::internal
