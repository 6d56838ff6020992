#include <HBXMessage/internal/Binary.h>

#include <algorithm>
#include <array>
#include <vector>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXMessage/internal/Limits.h>

namespace HBX::internal {
namespace {

const Envelope kNoEnvelope;

class Encoder {
public:
    Encoder(const Tree& tree, ByteBuffer& out) : tree_(tree), out_(out), lengths_(BlockLengths::ofThread()) {}

    bool run(const Envelope& envelope, NodeIndex from, Top top) {
        from_ = from;
        top_ = top;
        const std::size_t start = out_.size();
        out_.ensure(tree_.encodedSizeGuess());
        putHeader(out_, top == Top::Element ? Wrapping::Element : Wrapping::Message);
        if (tree_.names().size() != 0) {
            collectNames();
        }
        if (reason_ != nullptr || !nameList()) {
            return false;
        }
        if (top != Top::Element) {
            putEnvelope(top == Top::Message ? envelope : kNoEnvelope);
        }
        if (!nodes()) {
            return false;
        }
        if (out_.size() - start > kMaxInput) {
            return fail("the message is larger than a message may be");
        }
        storeU32(out_.data() + start + 8, static_cast<std::uint32_t>(out_.size() - start - kHeaderSize));
        return true;
    }

    [[nodiscard]] const char* reason() const { return reason_; }

private:
    bool fail(const char* reason) {
        reason_ = reason;
        return false;
    }

    [[nodiscard]] bool keepsMarks(NodeIndex index) const { return index != from_ || top_ != Top::Content; }

    // --- names: only those in use, in the order of their first use ---

    void collectNames() {
        written_.assign(tree_.names().size(), 0);
        std::vector<const Attribute*> attributes;
        for (NodeIndex index = from_; index != kNoNode; index = tree_.following(index, from_)) {
            const Node& node = tree_[index];
            useName(index == from_ && top_ == Top::Content ? 0 : node.id);
            useName(keepsMarks(index) ? node.ns : 0);
            const Extra* extra = tree_.extra(index);
            if (extra == nullptr) {
                continue;
            }
            if (keepsMarks(index)) {
                useName(extra->typeNs);
                useName(extra->type);
            }
            tree_.listAttributes(index, attributes);
            for (const Attribute* attribute : attributes) {
                useName(attribute->id);
            }
        }
    }

    void useName(Ref ref) {
        if (ref >= kDynamicRef && written_[ref - kDynamicRef] == 0) {
            used_.push_back(ref);
            written_[ref - kDynamicRef] = static_cast<std::uint32_t>(used_.size());
        }
    }

    bool nameList() {
        if (used_.size() > kMaxNames) {
            return fail("the message has more names than a message may have");
        }
        number(used_.size());
        for (const Ref ref : used_) {
            bytes(tree_.names().name(ref));
        }
        return true;
    }

    [[nodiscard]] std::uint64_t index(Ref ref) const { return written_[ref - kDynamicRef] - 1; }

    /// As written for namespaces, types and attributes.
    [[nodiscard]] std::uint64_t reference(Ref ref) const {
        return ref >= kDynamicRef ? index(ref) * 2 + 1 : std::uint64_t{ref} * 2;
    }

    // --- pieces ---

    void number(std::uint64_t value) {
        char* to = out_.ensure(kMaxVarint);
        out_.advance(static_cast<std::size_t>(putVarint(to, value) - to));
    }

    void bytes(std::string_view text) {
        char* start = out_.ensure(kMaxVarint + text.size());
        char* to = copyBytes(putVarint(start, text.size()), text);
        out_.advance(static_cast<std::size_t>(to - start));
    }

    void putEnvelope(const Envelope& envelope) {
        number(envelope.fields.size());
        for (const Envelope::Field& field : envelope.fields) {
            out_.append(static_cast<char>(field.field));
            bytes(field.text);
        }
    }

    // --- nodes ---

    bool nodes() {
        std::uint32_t depth = 0;
        std::uint32_t count = 0;
        NodeIndex index = from_;
        // An element written alone is a child of the root when it is read again.
        const std::uint32_t deepest = top_ == Top::Element ? kMaxDepth - 1 : kMaxDepth;
        const std::uint32_t most = top_ == Top::Element ? kMaxElements : kMaxElements + 1;
        while (true) {
            if (++count > most) {
                return fail("the message has more elements than a message may have");
            }
            const Node& node = tree_[index];
            if (!element(index, node)) {
                return false;
            }
            if (node.first != kNoNode) {
                if (depth == deepest) {
                    return fail("the message is deeper than a message may be");
                }
                open_[depth] = lengths_.open(out_, index == from_ ? 0 : node.id, depth);
                ++depth;
                index = node.first;
                continue;
            }
            while (index != from_ && tree_[index].next == kNoNode) {
                index = tree_[index].parent;
                lengths_.close(out_, open_[--depth]);
            }
            if (index == from_) {
                return true;
            }
            index = tree_[index].next;
            if (out_.size() > kMaxInput) {
                return fail("the message is larger than a message may be");
            }
        }
    }

    /// Everything of an element up to its block of children.
    bool element(NodeIndex index, const Node& node) {
        const Ref id = index == from_ && top_ != Top::Element ? 0 : node.id;
        if (node.ns == 0 && node.extra == 0 && (node.kind == ValueKind::None || node.first == kNoNode) &&
            node.kind != ValueKind::Xml) [[likely]] {
            if (node.kind == ValueKind::Text) {
                plainText(id, tree_.bytes(node.text));
            } else {
                head(id, node.first != kNoNode ? kFormChildren : kFormEmpty);
            }
            return true;
        }
        return flagged(index, node, id);
    }

    void plainText(Ref id, std::string_view text) {
        if (id >= kDynamicRef) [[unlikely]] {
            head(id, kFormText);
            bytes(text);
            return;
        }
        char* start = out_.ensure(2 * kMaxVarint + text.size());
        char* to = putVarint(start, std::uint64_t{id} << 3 | std::uint64_t{kFormText} << 1);
        to = copyBytes(putVarint(to, text.size()), text);
        out_.advance(static_cast<std::size_t>(to - start));
    }

    void head(Ref id, Form form) {
        const std::uint64_t named = id >= kDynamicRef ? 1 : 0;
        number((named != 0 ? index(id) : id) * 8 + std::uint64_t{form} * 2 + named);
    }

    bool flagged(NodeIndex index, const Node& node, Ref id) {
        const Extra* extra = tree_.extra(index);
        const bool marks = keepsMarks(index);
        const bool typed = marks && extra != nullptr && (extra->typeNs != 0 || extra->type != 0);
        const std::uint32_t attributes = extra == nullptr ? 0 : extra->attributeCount;
        const unsigned flags =
            (marks && node.ns != 0 ? kHasNamespace : 0U) | (typed ? kHasType : 0U) |
            (node.kind != ValueKind::None ? kHasValue : 0U) | (node.kind == ValueKind::Xml ? kIsXml : 0U) |
            (attributes != 0 ? kHasAttributes : 0U) | (node.first != kNoNode ? kHasChildren : 0U);
        if (attributes > kMaxAttributes) {
            return fail("an element has more attributes than it may have");
        }
        if (hasShorterForm(flags)) {
            head(id, flags == kHasValue ? kFormText : flags == kHasChildren ? kFormChildren : kFormEmpty);
        } else {
            head(id, kFormFlags);
            out_.append(static_cast<char>(flags));
        }
        if ((flags & kHasNamespace) != 0) {
            number(reference(node.ns));
        }
        if (typed) {
            number(reference(extra->typeNs));
            number(reference(extra->type));
        }
        if ((flags & kHasValue) != 0) {
            bytes(tree_.bytes(node.text));
        }
        if (attributes != 0) {
            putAttributes(index);
        }
        return true;
    }

    void putAttributes(NodeIndex index) {
        tree_.listAttributes(index, attributes_);
        const auto isBefore = [this](const Attribute* a, const Attribute* b) {
            return reference(a->id) < reference(b->id);
        };
        if (!used_.empty()) { // without names the order is already that of the numbers
            std::sort(attributes_.begin(), attributes_.end(), isBefore);
        }
        number(attributes_.size());
        for (const Attribute* attribute : attributes_) {
            number(reference(attribute->id));
            bytes(tree_.bytes(attribute->text));
        }
    }

    const Tree& tree_;
    ByteBuffer& out_;
    BlockLengths& lengths_;
    NodeIndex from_ = kRoot;
    Top top_ = Top::Message;
    std::vector<std::uint32_t> written_; // by dynamic name: index in the written list + 1
    std::vector<Ref> used_;
    std::vector<const Attribute*> attributes_;
    std::array<OpenBlock, kMaxDepth> open_;
    const char* reason_ = nullptr;
};

} // namespace

int writeBinary(const Tree& tree, const Envelope& envelope, NodeIndex from, Top top, ByteBuffer& out) {
    Encoder encoder(tree, out);
    if (encoder.run(envelope, from, top)) {
        return 0;
    }
    setErrorMessage(encoder.reason());
    return -1;
}

} // namespace HBX::internal
