#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <HBXMessage/internal/ByteBuffer.h>
#include <HBXMessage/internal/NodeArray.h>
#include <HBXMessage/internal/NumberText.h>

namespace HBX::internal {

struct Attribute {
    Ref id;
    Span text;
    std::uint32_t next; ///< row + 1 of the element's next attribute, 0 = last
};

/// What few elements have: a complex type and attributes.
struct Extra {
    Ref typeNs;
    Ref type;
    std::uint32_t firstAttribute; ///< row + 1; also links free rows
    std::uint32_t lastAttribute;
    std::uint32_t attributeCount;
};

/// Names that the fixed table does not know, numbered in the order of their first use in one message.
class NameList {
public:
    /// The dynamic reference of the name, added when new; 0 when the list cannot hold more.
    Ref intern(std::string_view name);
    [[nodiscard]] Ref find(std::string_view name) const;
    [[nodiscard]] std::string_view name(Ref ref) const { return names_[ref - kDynamicRef]; }
    [[nodiscard]] bool knows(Ref ref) const { return ref - kDynamicRef < names_.size(); }
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(names_.size()); }
    void clear();

private:
    struct Slot {
        std::uint32_t index = 0; ///< of the name + 1; 0 for a free slot
        std::uint32_t hash = 0;
    };
    /// The slot of a name, or the free one that it would get; there is one.
    [[nodiscard]] std::size_t slotOf(std::string_view name, std::uint32_t hash) const;
    void growSlots();

    std::vector<std::string> names_;
    std::vector<Slot> slots_; ///< by hash; a power of two, at most half of them in use
};

/// The elements of one message: nodes in one array, values in one byte buffer, no allocation per element.
/// Slots and bytes of removed elements are used again. Every walk is a loop: depth is data.
/// Neither a reference to a node nor a view of a value survives a change of the tree.
class Tree {
public:
    Tree();

    [[nodiscard]] const Node& operator[](NodeIndex index) const { return nodes_[index]; }
    [[nodiscard]] bool alive(NodeIndex index, std::uint32_t generation) const {
        return index < used_ && nodes_[index].generation == generation;
    }
    [[nodiscard]] std::uint32_t epoch() const { return epoch_; }
    [[nodiscard]] std::uint32_t count() const { return count_; } ///< elements without the root

    /// Bytes that the binary form of the whole tree hardly exceeds.
    [[nodiscard]] std::size_t encodedSizeGuess() const { return live_ + 8 * std::size_t{count_} + 64; }

    /// Back to a lone root; all cursors become stale, the memory stays for the next use.
    void clear();
    /// The same, with generations from this epoch on at least.
    void restart(std::uint32_t epoch);
    /// Bytes that nodes and values occupy.
    [[nodiscard]] std::size_t footprint() const { return nodes_.size() * sizeof(Node) + bytes_.capacity(); }
    void reserve(std::size_t nodes, std::size_t bytes);
    /// Appends a child with a text value, as `append` and `setValue` do.
    template <class Number>
    bool appendNumber(NodeIndex parent, Ref id, Ref ns, Number number) {
        if (!bytes_.hasRoom(kNumberRoom)) [[unlikely]] {
            return appendText(parent, id, ns, NumberText(number).view());
        }
        const char* start = bytes_.data() + bytes_.size();
        const char* end = printNumber(bytes_.data() + bytes_.size(), number);
        const auto length = static_cast<std::size_t>(end - start);
        if (bytes_.size() + length > std::numeric_limits<std::uint32_t>::max()) [[unlikely]] {
            return false;
        }
        Node& node = nodes_[append(parent, id, ns)];
        node.kind = ValueKind::Text;
        node.text = {static_cast<std::uint32_t>(bytes_.size()), static_cast<std::uint32_t>(length)};
        bytes_.advance(length);
        live_ += length;
        return true;
    }
    bool appendText(NodeIndex parent, Ref id, Ref ns, std::string_view text) {
        Span span{};
        if (!store(text, span)) {
            return false;
        }
        Node& node = nodes_[append(parent, id, ns)];
        node.kind = ValueKind::Text;
        node.text = span;
        return true;
    }

    NodeIndex append(NodeIndex parent, Ref id, Ref ns) {
        const NodeIndex index = allocate();
        Node* nodes = nodes_.data();
        Node& up = nodes[parent];
        const NodeIndex last = up.last;
        up.last = index;
        (last != kNoNode ? nodes[last].next : up.first) = index;
        Node& made = nodes[index];
        made.id = id;
        made.parent = parent;
        made.first = made.last = made.next = kNoNode;
        made.prev = last;
        made.generation = epoch_;
        made.kind = ValueKind::None;
        made.ns = ns;
        made.extra = 0;
        made.text = {0, 0};
        return index;
    }
    /// Removes the element with all below it; the root is only emptied by `clear`.
    void remove(NodeIndex index);

    [[nodiscard]] std::string_view bytes(Span span) const {
        return {bytes_.data() + span.offset, span.length};
    }
    [[nodiscard]] std::string_view text(NodeIndex index) const { return bytes(nodes_[index].text); }
    /// Replaces the value. `text` may lie inside this tree. False when the buffer would exceed 4 GiB.
    bool setValue(NodeIndex index, std::string_view text, ValueKind kind);
    void setNamespace(NodeIndex index, Ref ns) { nodes_[index].ns = ns; }

    /// The bytes of a whole parsed input, so that values can be set as parts of it; an empty tree only.
    void adoptInput(std::string_view input);
    void setParsedValue(NodeIndex index, Span text, ValueKind kind) {
        live_ += text.length;
        nodes_[index].text = text;
        nodes_[index].kind = kind;
    }

    [[nodiscard]] const Extra* extra(NodeIndex index) const {
        return nodes_[index].extra == 0 ? nullptr : &extras_[nodes_[index].extra - 1];
    }
    void setType(NodeIndex index, Ref typeNs, Ref type);
    [[nodiscard]] const Attribute* firstAttribute(NodeIndex index) const;
    [[nodiscard]] const Attribute* nextAttribute(const Attribute& attribute) const {
        return attribute.next == 0 ? nullptr : &attributes_[attribute.next - 1];
    }
    [[nodiscard]] const Attribute* findAttribute(NodeIndex index, Ref id) const;
    /// Numbers ascending, then names in byte order: equal elements list equal attributes in the same order.
    void listAttributes(NodeIndex index, std::vector<const Attribute*>& list) const;
    /// Sets or replaces. `text` may lie inside this tree. False when the buffer would exceed 4 GiB.
    bool setAttribute(NodeIndex index, Ref id, std::string_view text);
    /// Appends without looking for one of the same id, the value being part of the adopted input.
    void addParsedAttribute(NodeIndex index, Ref id, Span text);

    /// The first child (or first following sibling) of this id, kNoNode when there is none.
    [[nodiscard]] NodeIndex findChild(NodeIndex parent, Ref id) const {
        return findFrom(nodes_[parent].first, id);
    }
    [[nodiscard]] NodeIndex findFrom(NodeIndex index, Ref id) const {
        while (index != kNoNode && nodes_[index].id != id) {
            index = nodes_[index].next;
        }
        return index;
    }

    /// Appends a deep copy of `from` (element with all below it) under `parent`; names are mapped by text.
    /// The source may lie in this tree and may be an ancestor of the target.
    void copyElement(const Tree& source, NodeIndex from, NodeIndex parent);
    /// Gives `to` the value and attributes of `from`, and appends copies of its children.
    void copyContent(const Tree& source, NodeIndex from, NodeIndex to);
    /// Appends copies of the children of `from`.
    void copyChildren(const Tree& source, NodeIndex from, NodeIndex to);
    /// Gives `to` the namespace and type mark of `from`.
    void copyMarks(const Tree& source, NodeIndex from, NodeIndex to);

    [[nodiscard]] const NameList& names() const { return names_; }
    NameList& names() { return names_; }

    /// The next element of a walk over everything below `top` in document order, kNoNode at its end.
    [[nodiscard]] NodeIndex following(NodeIndex index, NodeIndex top) const;

private:
    NodeIndex allocate() {
        ++count_;
        if (free_ != kNoNode) {
            const NodeIndex index = free_;
            free_ = nodes_[index].next;
            return index;
        }
        if (used_ == nodes_.size()) [[unlikely]] {
            nodes_.grow(nodes_.size() * 2);
        }
        return used_++;
    }
    void unlink(NodeIndex index);
    void release(NodeIndex index);
    void compactIfWasteful();
    /// Adds to the buffer; `text` may lie in it. False beyond 4 GiB.
    bool store(std::string_view text, Span& span) {
        const std::size_t at = bytes_.size();
        if (at + text.size() > std::numeric_limits<std::uint32_t>::max()) [[unlikely]] {
            return false;
        }
        span = {static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(text.size())};
        live_ += text.size();
        if (!bytes_.hasRoom(text.size())) [[unlikely]] {
            storeMoving(text);
            return true;
        }
        copyBytes(bytes_.data() + at, text);
        bytes_.advance(text.size());
        return true;
    }
    void storeMoving(std::string_view text);
    Extra& needExtra(NodeIndex index);
    Ref mapName(const Tree& source, Ref ref);
    void copyValue(const Tree& source, NodeIndex from, NodeIndex to);

    NodeArray nodes_;
    std::uint32_t used_ = 0;  ///< slots ever used since the last clear; index 0 stands for "none"
    std::uint32_t epoch_ = 1; ///< generation of the nodes made next; rises with every removal
    NodeIndex free_ = kNoNode;
    std::uint32_t count_ = 0;
    ByteBuffer bytes_;
    std::size_t live_ = 0; ///< bytes of the buffer that some value or attribute uses
    std::vector<Extra> extras_;
    std::uint32_t freeExtra_ = 0;
    std::vector<Attribute> attributes_;
    std::uint32_t freeAttribute_ = 0;
    NameList names_;
};

/// The reference of a name: of the fixed table where it knows the name, else the message's own.
Ref elementRef(NameList& names, std::string_view name);
Ref namespaceRef(NameList& names, std::string_view name);
Ref typeRef(NameList& names, std::string_view name);
/// As above without adding: 0 when the message does not know the name.
Ref findElementRef(const NameList& names, std::string_view name);

/// The text of a reference, "" for numbers without a name.
std::string_view elementName(const NameList& names, Ref ref);
std::string_view namespaceName(const NameList& names, Ref ref);
std::string_view typeName(const NameList& names, Ref ref);

/// Namespace name, ":" when that is not empty, type name: how a complex type reads as text.
std::string qualifiedName(std::string_view nsName, std::string_view typeName);

} // namespace HBX::internal
