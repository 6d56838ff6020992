#include <HBXMessage/internal/EncodingCursor.h>

#include <utility>

#include <HBXMessage/HBXBinaryIterator.h>
#include <HBXMessage/HBXDefaultMap.h>
#include <HBXMessage/internal/ElementView.h>
#include <HBXMessage/internal/TableWriter.h>

namespace HBX::internal {
namespace {

/// Most bytes of an element before its value or block: head, flags, three references.
constexpr std::size_t kHeadRoom = 4 * kMaxVarint + 1;

} // namespace

EncodingCursor::EncodingCursor(ByteBuffer& out) : out_(out), lengths_(BlockLengths::ofThread()) {
    out_.clear();
    putHeader(out_, Wrapping::Message);
    out_.append('\0'); // no names
    out_.append('\0'); // no envelope fields
    begin(0, 0);
}

bool EncodingCursor::finish() {
    while (depth_ > 0) {
        leave();
    }
    finishElement();
    finishHeader(out_);
    return !gaveUp_ && elements_ <= kMaxElements && out_.size() <= kMaxInput;
}

/// Writes head and marks; `content` is 0, kHasChildren, or kHasValue with or without kIsXml.
char* EncodingCursor::putHead(char* to, const Open& element, unsigned content) {
    const bool typed = element.typeNs != 0 || element.type != 0;
    const unsigned flags = content | (element.ns != 0 ? kHasNamespace : 0) | (typed ? kHasType : 0);
    const std::uint64_t head = std::uint64_t{element.id} << 3;
    if (hasShorterForm(flags)) {
        const Form form = flags == kHasValue ? kFormText : flags == kHasChildren ? kFormChildren : kFormEmpty;
        return putVarint(to, head | static_cast<std::uint64_t>(form) << 1);
    }
    to = putVarint(to, head | static_cast<std::uint64_t>(kFormFlags) << 1);
    *to++ = static_cast<char>(flags);
    if (element.ns != 0) {
        to = putVarint(to, std::uint64_t{element.ns} * 2);
    }
    if (typed) {
        to = putVarint(to, std::uint64_t{element.typeNs} * 2);
        to = putVarint(to, std::uint64_t{element.type} * 2);
    }
    return to;
}

void EncodingCursor::openBlock(Open& element) {
    out_.ensure(kHeadRoom);
    put(putHead(out_.data() + out_.size(), element, kHasChildren));
    element.block = lengths_.open(out_, element.id, depth_);
    element.state = State::Block;
}

int EncodingCursor::newChild(int id) {
    Open& parent = top();
    if (id <= 0 || !isNumber(id) || parent.state == State::Leaf || depth_ == kMaxDepth || gaveUp_) {
        return giveUp();
    }
    if (parent.state == State::Fresh) {
        openBlock(parent);
    }
    parent.written |= bitOf(static_cast<Ref>(id));
    ++depth_;
    ++elements_;
    begin(static_cast<Ref>(id), savedNamespace_);
    return 0;
}

/// Ends the current element: its block, or the head of one that has got nothing.
void EncodingCursor::finishElement() {
    const Open& element = top();
    if (element.state == State::Block) {
        lengths_.close(out_, element.block);
    } else if (element.state == State::Fresh) {
        out_.ensure(kHeadRoom);
        put(putHead(out_.data() + out_.size(), element, 0));
    }
}

int EncodingCursor::leave() {
    if (depth_ == 0) {
        return -1;
    }
    finishElement();
    --depth_;
    if (out_.size() > kMaxInput) {
        giveUp();
    }
    return 0;
}

int EncodingCursor::putRawValue(int id, std::string_view text, bool xml) {
    if (!isNumber(id) || gaveUp_ || text.size() > kMaxInput) {
        return giveUp();
    }
    const unsigned content = xml ? kHasValue | kIsXml : kHasValue;
    Open& current = top();
    if (id == 0 && current.state != State::Fresh) {
        return giveUp();
    }
    if (id != 0 && current.state != State::Block) {
        if (current.state == State::Leaf || depth_ == kMaxDepth) {
            return giveUp();
        }
        openBlock(current);
    }
    char* to = out_.ensure(kHeadRoom + kMaxVarint + text.size());
    if (id == 0) {
        to = putHead(to, current, content);
        current.state = State::Leaf;
    } else {
        const auto ref = static_cast<Ref>(id);
        current.written |= bitOf(ref);
        ++elements_;
        if (savedNamespace_ == 0 && !xml) [[likely]] {
            to = putVarint(to, std::uint64_t{ref} << 3 | kFormText << 1);
        } else {
            to = putHead(to, {ref, savedNamespace_, 0, 0, State::Leaf, {}, 0}, content);
        }
    }
    to = putVarint(to, text.size());
    if (!text.empty()) {
        std::memcpy(to, text.data(), text.size());
    }
    put(to + text.size());
    return 0;
}

bool EncodingCursor::holdsChild(int id) const {
    const Open& element = top();
    if (id <= 0 || element.state != State::Block || (element.written & bitOf(static_cast<Ref>(id))) == 0) {
        return false;
    }
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(out_.data());
    const std::uint8_t* at = bytes + element.block.at + element.block.width;
    ElementView child;
    while (at < bytes + out_.size()) {
        if (!child.parse(at, bytes + out_.size())) {
            break;
        }
        if (child.id == static_cast<Ref>(id)) {
            return true;
        }
        at = child.end;
    }
    return false;
}

int EncodingCursor::seek(int id) const {
    if (holdsChild(id)) {
        giveUp();
    }
    return -1;
}

int EncodingCursor::setNamespace(int nsid) {
    if (!isNumber(nsid) || top().state != State::Fresh) {
        return giveUp();
    }
    top().ns = static_cast<Ref>(nsid);
    return 0;
}

int EncodingCursor::saveNamespace(int nsid) {
    if (!isNumber(nsid)) {
        return giveUp();
    }
    savedNamespace_ = static_cast<Ref>(nsid);
    return 0;
}

int EncodingCursor::setComplexType(int nsid, int typeId) {
    if (!isNumber(nsid) || !isNumber(typeId) || top().state != State::Fresh) {
        return giveUp();
    }
    top().typeNs = static_cast<Ref>(nsid);
    top().type = static_cast<Ref>(typeId);
    return 0;
}

void EncodingCursor::mark(int nsid, int typeId) {
    if (nsid != 0) {
        savedNamespace_ = static_cast<Ref>(nsid);
    }
    if (typeId > 100) {
        top().typeNs = static_cast<Ref>(nsid);
        top().type = static_cast<Ref>(typeId);
    }
}

int EncodingCursor::writeTable(const void* record, const HBXRecordTable& table) {
    return gaveUp_ ? -1 : TableWriter(*this).write(record, table);
}

/// Elements with names of their own or with attributes are left to the tree.
int EncodingCursor::copyToChild(const HBXMessageIterator* from) {
    const auto* source = dynamic_cast<const HBXBinaryIterator*>(from);
    if (source == nullptr || !source->alive()) {
        return giveUp();
    }
    const Ref saved = std::exchange(savedNamespace_, 0); // copies keep their own
    const int result = copyBelow(source->binary().tree(), source->node());
    savedNamespace_ = saved;
    return result;
}

/// The element `top`, or all children of a root.
int EncodingCursor::copyBelow(const Tree& tree, NodeIndex top) {
    NodeIndex index = top == kRoot ? tree[kRoot].first : top;
    while (index != kNoNode) {
        if (!openCopy(tree, index)) {
            return giveUp();
        }
        if (tree[index].first != kNoNode) {
            index = tree[index].first;
            continue;
        }
        leave();
        while (index != top && tree[index].next == kNoNode) {
            index = tree[index].parent;
            if (index == kRoot) {
                return 0;
            }
            leave();
        }
        index = index == top ? kNoNode : tree[index].next;
    }
    return 0;
}

bool EncodingCursor::openCopy(const Tree& tree, NodeIndex index) {
    const Node& node = tree[index];
    if (node.id >= kDynamicRef || node.ns >= kDynamicRef || newChild(static_cast<int>(node.id)) != 0) {
        return false;
    }
    top().ns = node.ns;
    if (const Extra* extra = tree.extra(index); extra != nullptr) {
        if (extra->attributeCount != 0 || extra->typeNs >= kDynamicRef || extra->type >= kDynamicRef) {
            return false;
        }
        top().typeNs = extra->typeNs;
        top().type = extra->type;
    }
    return node.kind == ValueKind::None || putRawValue(0, tree.text(index), node.kind == ValueKind::Xml) == 0;
}

std::string EncodingCursor::curName() const { return HBXDefaultMap::findElemID(curID()); }

std::string EncodingCursor::curType() const {
    return qualifiedName(HBXDefaultMap::findNSID(static_cast<int>(top().typeNs)),
                         HBXDefaultMap::findTypeID(static_cast<int>(top().type)));
}

HBXMessage* EncodingCursor::getMessage() const {
    giveUp();
    if (!standIn_) {
        standIn_ = adoptMessage(new HBXBinary());
    }
    return standIn_.get();
}

// Names outside the fixed table need the list of names in front of everything: a tree's work.

int EncodingCursor::idOfName(std::string_view name) const {
    const int id = HBXDefaultMap::findElemName(name);
    return id != 0 ? id : (giveUp(), 0);
}

int EncodingCursor::internName(std::string_view name) { return EncodingCursor::idOfName(name); }

int EncodingCursor::setNamespaceName(const std::string& name) {
    const int id = HBXDefaultMap::findNSName(name);
    return id != 0 || name.empty() ? setNamespace(id) : giveUp();
}

int EncodingCursor::saveNamespaceName(const std::string& name) {
    const int id = HBXDefaultMap::findNSName(name);
    return id != 0 || name.empty() ? saveNamespace(id) : giveUp();
}

int EncodingCursor::setComplexTypeNames(const std::string& nsName, const std::string& typeName) {
    const int ns = HBXDefaultMap::findNSName(nsName);
    const int type = HBXDefaultMap::findTypeName(typeName);
    return (ns != 0 || nsName.empty()) && (type != 0 || typeName.empty()) ? setComplexType(ns, type)
                                                                          : giveUp();
}

} // namespace HBX::internal
