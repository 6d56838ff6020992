#include <HBXMessage/internal/Tree.h>

#include <algorithm>
#include <functional>
#include <limits>

#include <sys/random.h>

#include <HBXMessage/HBXDefaultMap.h>
#include <HBXMessage/internal/NameHash.h>

namespace HBX::internal {
namespace {

constexpr std::size_t kFirstNodes = 16;
constexpr std::size_t kSmallBuffer = 4096; // not worth compacting below

std::uint32_t saltedHash(std::string_view name) {
    static const std::uint64_t salt = [] {
        std::uint64_t random = 0;
        return getrandom(&random, sizeof random, 0) == sizeof random ? random : 0x9E3779B97F4A7C15;
    }();
    return static_cast<std::uint32_t>(hashName(name, salt));
}

} // namespace

std::size_t NameList::slotOf(std::string_view name, std::uint32_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot].index != 0 && (slots_[slot].hash != hash || names_[slots_[slot].index - 1] != name)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void NameList::growSlots() {
    std::vector<Slot> slots(std::max<std::size_t>(slots_.size() * 2, 16));
    const std::size_t mask = slots.size() - 1;
    for (const Slot& used : slots_) {
        if (used.index == 0) {
            continue;
        }
        std::size_t slot = used.hash & mask;
        while (slots[slot].index != 0) {
            slot = (slot + 1) & mask;
        }
        slots[slot] = used;
    }
    slots_ = std::move(slots);
}

Ref NameList::intern(std::string_view name) {
    if (names_.size() * 2 >= slots_.size()) {
        growSlots();
    }
    const std::uint32_t hash = saltedHash(name);
    Slot& slot = slots_[slotOf(name, hash)];
    if (slot.index == 0) {
        if (names_.size() >= kDynamicRef - 1) {
            return 0;
        }
        names_.emplace_back(name);
        slot = {static_cast<std::uint32_t>(names_.size()), hash};
    }
    return kDynamicRef + slot.index - 1;
}

Ref NameList::find(std::string_view name) const {
    const std::uint32_t index = slots_.empty() ? 0 : slots_[slotOf(name, saltedHash(name))].index;
    return index == 0 ? 0 : kDynamicRef + index - 1;
}

void NameList::clear() {
    names_.clear();
    slots_.clear();
}

Tree::Tree() : nodes_(kFirstNodes) { clear(); }

void Tree::clear() {
    ++epoch_;
    used_ = kRoot + 1;
    free_ = kNoNode;
    count_ = 0;
    nodes_[kNoNode] = Node{};
    nodes_[kRoot] = Node{};
    nodes_[kRoot].generation = epoch_;
    bytes_.clear();
    live_ = 0;
    extras_.clear();
    freeExtra_ = 0;
    attributes_.clear();
    freeAttribute_ = 0;
    if (names_.size() != 0) {
        names_.clear();
    }
}

void Tree::restart(std::uint32_t epoch) {
    epoch_ = std::max(epoch_, epoch);
    clear();
}

void Tree::reserve(std::size_t nodes, std::size_t bytes) {
    if (nodes + kRoot + 1 > nodes_.size()) {
        nodes_.grow(nodes + kRoot + 1);
    }
    bytes_.ensure(bytes);
}

void Tree::unlink(NodeIndex index) {
    const Node& node = nodes_[index];
    Node& up = nodes_[node.parent];
    (node.prev != kNoNode ? nodes_[node.prev].next : up.first) = node.next;
    (node.next != kNoNode ? nodes_[node.next].prev : up.last) = node.prev;
}

void Tree::release(NodeIndex index) {
    Node& node = nodes_[index];
    live_ -= node.text.length;
    if (node.extra != 0) {
        Extra& extra = extras_[node.extra - 1];
        while (extra.firstAttribute != 0) {
            Attribute& attribute = attributes_[extra.firstAttribute - 1];
            live_ -= attribute.text.length;
            const std::uint32_t next = attribute.next;
            attribute.next = freeAttribute_;
            freeAttribute_ = extra.firstAttribute;
            extra.firstAttribute = next;
        }
        extra.firstAttribute = freeExtra_;
        freeExtra_ = node.extra;
    }
    node.generation = ++epoch_;
    node.next = free_;
    free_ = index;
    --count_;
}

void Tree::remove(NodeIndex index) {
    unlink(index);
    NodeIndex current = index;
    while (true) { // leaves first, each freed when its last child is gone
        while (nodes_[current].first != kNoNode) {
            current = nodes_[current].first;
        }
        const NodeIndex next = nodes_[current].next;
        const NodeIndex parent = nodes_[current].parent;
        const bool done = current == index;
        release(current);
        if (done) {
            break;
        }
        nodes_[parent].first = kNoNode;
        current = next != kNoNode ? next : parent;
    }
    compactIfWasteful();
}

/// The buffer moves, and the text with it when it lies there.
void Tree::storeMoving(std::string_view text) {
    const char* begin = bytes_.data();
    const bool isOwn =
        std::less_equal<>()(begin, text.data()) && std::less<>()(text.data(), begin + bytes_.size());
    const std::size_t offset = isOwn ? static_cast<std::size_t>(text.data() - begin) : 0;
    bytes_.ensure(text.size());
    bytes_.append(isOwn ? std::string_view(bytes_.data() + offset, text.size()) : text);
}

bool Tree::setValue(NodeIndex index, std::string_view text, ValueKind kind) {
    Node& node = nodes_[index];
    Span span{};
    if (!store(text, span)) {
        return false;
    }
    live_ -= node.text.length;
    const bool replaced = node.text.length != 0;
    node.text = span;
    node.kind = kind;
    if (replaced) {
        compactIfWasteful();
    }
    return true;
}

void Tree::adoptInput(std::string_view input) {
    bytes_.clear();
    bytes_.append(input);
}

void Tree::compactIfWasteful() {
    // What is copied and walked here was wasted before: the cost of an edit does not depend on the tree's
    // size.
    if (bytes_.size() - live_ < std::max<std::size_t>({kSmallBuffer, live_, count_})) {
        return;
    }
    ByteBuffer kept;
    kept.ensure(live_ + kSmallBuffer / 2);
    const auto move = [&](Span& span) {
        const auto offset = static_cast<std::uint32_t>(kept.size());
        kept.append(bytes(span));
        span.offset = offset;
    };
    for (NodeIndex index = kRoot; index != kNoNode; index = following(index, kRoot)) {
        move(nodes_[index].text);
        if (nodes_[index].extra != 0) {
            for (std::uint32_t row = extras_[nodes_[index].extra - 1].firstAttribute; row != 0;
                 row = attributes_[row - 1].next) {
                move(attributes_[row - 1].text);
            }
        }
    }
    bytes_.swap(kept);
}

NodeIndex Tree::following(NodeIndex index, NodeIndex top) const {
    if (nodes_[index].first != kNoNode) {
        return nodes_[index].first;
    }
    while (index != top) {
        if (nodes_[index].next != kNoNode) {
            return nodes_[index].next;
        }
        index = nodes_[index].parent;
    }
    return kNoNode;
}

Extra& Tree::needExtra(NodeIndex index) {
    Node& node = nodes_[index];
    if (node.extra == 0) {
        if (freeExtra_ != 0) {
            node.extra = freeExtra_;
            freeExtra_ = extras_[node.extra - 1].firstAttribute;
        } else {
            extras_.emplace_back();
            node.extra = static_cast<std::uint32_t>(extras_.size());
        }
        extras_[node.extra - 1] = Extra{};
    }
    return extras_[node.extra - 1];
}

void Tree::setType(NodeIndex index, Ref typeNs, Ref type) {
    if (nodes_[index].extra == 0 && typeNs == 0 && type == 0) {
        return;
    }
    Extra& extra = needExtra(index);
    extra.typeNs = typeNs;
    extra.type = type;
}

const Attribute* Tree::firstAttribute(NodeIndex index) const {
    const Extra* own = extra(index);
    return own == nullptr || own->firstAttribute == 0 ? nullptr : &attributes_[own->firstAttribute - 1];
}

const Attribute* Tree::findAttribute(NodeIndex index, Ref id) const {
    const Attribute* attribute = firstAttribute(index);
    while (attribute != nullptr && attribute->id != id) {
        attribute = nextAttribute(*attribute);
    }
    return attribute;
}

void Tree::listAttributes(NodeIndex index, std::vector<const Attribute*>& list) const {
    list.clear();
    for (const Attribute* attribute = firstAttribute(index); attribute != nullptr;
         attribute = nextAttribute(*attribute)) {
        list.push_back(attribute);
    }
    const auto isBefore = [this](const Attribute* a, const Attribute* b) {
        return a->id >= kDynamicRef && b->id >= kDynamicRef ? names_.name(a->id) < names_.name(b->id)
                                                            : a->id < b->id;
    };
    if (!std::is_sorted(list.begin(), list.end(), isBefore)) {
        std::sort(list.begin(), list.end(), isBefore);
    }
}

void Tree::addParsedAttribute(NodeIndex index, Ref id, Span text) {
    std::uint32_t row = freeAttribute_;
    if (row != 0) {
        freeAttribute_ = attributes_[row - 1].next;
    } else {
        attributes_.emplace_back();
        row = static_cast<std::uint32_t>(attributes_.size());
    }
    Extra& extra = needExtra(index);
    attributes_[row - 1] = Attribute{id, text, 0};
    (extra.firstAttribute == 0 ? extra.firstAttribute : attributes_[extra.lastAttribute - 1].next) = row;
    extra.lastAttribute = row;
    ++extra.attributeCount;
    live_ += text.length;
}

bool Tree::setAttribute(NodeIndex index, Ref id, std::string_view text) {
    Span span{};
    if (!store(text, span)) {
        return false;
    }
    if (const Attribute* found = findAttribute(index, id); found != nullptr) {
        Attribute& attribute = attributes_[static_cast<std::size_t>(found - attributes_.data())];
        live_ -= attribute.text.length;
        attribute.text = span;
        compactIfWasteful();
        return true;
    }
    live_ -= span.length; // counted by the call below
    addParsedAttribute(index, id, span);
    return true;
}

Ref Tree::mapName(const Tree& source, Ref ref) {
    return ref < kDynamicRef ? ref : names_.intern(source.names_.name(ref));
}

void Tree::copyValue(const Tree& source, NodeIndex from, NodeIndex to) {
    const Node& node = source.nodes_[from];
    if (node.kind != ValueKind::None) {
        setValue(to, source.text(from), node.kind);
    }
    for (const Attribute* attribute = source.firstAttribute(from); attribute != nullptr;
         attribute = source.nextAttribute(*attribute)) {
        setAttribute(to, mapName(source, attribute->id), source.bytes(attribute->text));
    }
}

void Tree::copyMarks(const Tree& source, NodeIndex from, NodeIndex to) {
    nodes_[to].ns = mapName(source, source.nodes_[from].ns);
    if (const Extra* extra = source.extra(from); extra != nullptr) {
        setType(to, mapName(source, extra->typeNs), mapName(source, extra->type));
    }
}

void Tree::copyElement(const Tree& source, NodeIndex from, NodeIndex parent) {
    if (&source == this) {
        Tree snapshot;
        snapshot.copyElement(source, from, kRoot);
        copyElement(snapshot, snapshot[kRoot].first, parent);
        return;
    }
    const auto copyOne = [&](NodeIndex index, NodeIndex under) {
        const NodeIndex made = append(under, mapName(source, source.nodes_[index].id), 0);
        copyMarks(source, index, made);
        copyValue(source, index, made);
        return made;
    };
    NodeIndex at = from;
    NodeIndex to = copyOne(from, parent);
    while (true) {
        if (source.nodes_[at].first != kNoNode) {
            at = source.nodes_[at].first;
            to = copyOne(at, to);
            continue;
        }
        while (at != from && source.nodes_[at].next == kNoNode) {
            at = source.nodes_[at].parent;
            to = nodes_[to].parent;
        }
        if (at == from) {
            return;
        }
        at = source.nodes_[at].next;
        to = copyOne(at, nodes_[to].parent);
    }
}

void Tree::copyChildren(const Tree& source, NodeIndex from, NodeIndex to) {
    if (&source == this) {
        Tree snapshot;
        snapshot.copyChildren(source, from, kRoot);
        copyChildren(snapshot, kRoot, to);
        return;
    }
    for (NodeIndex child = source.nodes_[from].first; child != kNoNode; child = source.nodes_[child].next) {
        copyElement(source, child, to);
    }
}

void Tree::copyContent(const Tree& source, NodeIndex from, NodeIndex to) {
    copyValue(source, from, to);
    copyChildren(source, from, to);
}

namespace {

Ref refOf(int known, NameList& names, std::string_view name) {
    if (known != 0) {
        return static_cast<Ref>(known);
    }
    return name.empty() ? 0 : names.intern(name);
}

std::string_view nameOf(const NameList& names, Ref ref, std::string_view (*find)(int)) {
    return ref >= kDynamicRef ? names.name(ref) : find(static_cast<int>(ref));
}

} // namespace

Ref elementRef(NameList& names, std::string_view name) {
    return refOf(HBXDefaultMap::findElemName(name), names, name);
}

Ref namespaceRef(NameList& names, std::string_view name) {
    return refOf(HBXDefaultMap::findNSName(name), names, name);
}

Ref typeRef(NameList& names, std::string_view name) {
    return refOf(HBXDefaultMap::findTypeName(name), names, name);
}

Ref findElementRef(const NameList& names, std::string_view name) {
    const int known = HBXDefaultMap::findElemName(name);
    return known != 0 ? static_cast<Ref>(known) : names.find(name);
}

std::string_view elementName(const NameList& names, Ref ref) {
    return nameOf(names, ref, &HBXDefaultMap::elementName);
}

std::string_view namespaceName(const NameList& names, Ref ref) {
    return nameOf(names, ref, &HBXDefaultMap::namespaceName);
}

std::string_view typeName(const NameList& names, Ref ref) {
    return nameOf(names, ref, &HBXDefaultMap::typeName);
}

std::string qualifiedName(std::string_view nsName, std::string_view typeName) {
    std::string text(nsName);
    if (!text.empty()) {
        text += ':';
    }
    return text += typeName;
}

} // namespace HBX::internal
