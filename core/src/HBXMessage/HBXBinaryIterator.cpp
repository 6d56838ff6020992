#include <HBXMessage/HBXBinaryIterator.h>

#include <HBXMessage/internal/Binary.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/TableReader.h>
#include <HBXMessage/internal/TableWriter.h>
#include <HBXMessage/internal/Tree.h>
#include <HBXMessage/internal/Xml.h>

namespace HBX {

using internal::kDynamicRef;
using internal::kNoNode;
using internal::kRoot;
using internal::Node;
using internal::NodeIndex;
using internal::Ref;
using internal::ValueKind;

namespace {

/// What can be written as a name, or as none.
bool isName(std::string_view name) {
    return name.size() <= internal::kMaxNameLength && name.find('\0') == std::string_view::npos;
}

} // namespace

namespace internal {

/// What reading a record by its table needs of a tree.
class TreeSource {
public:
    using Place = NodeIndex;

    explicit TreeSource(const HBXBinaryIterator& cursor) : cursor_(cursor), tree_(*cursor.tree_) {}

    /// The child that comes next.
    using Walk = NodeIndex;
    [[nodiscard]] Walk walk(Place at) const { return tree_[at].first; }
    Place next(Walk& walk) const {
        const Place child = walk;
        walk = tree_[child].next; // the node that stands for "none" has none either
        return child;
    }
    bool takeText(Walk& walk, const HBXRow& row, std::string_view& text) const {
        const Node& node = tree_[walk];
        if (node.id != static_cast<Ref>(row.key) || node.kind != ValueKind::Text) {
            return false;
        }
        text = tree_.bytes(node.text);
        walk = node.next;
        return true;
    }
    [[nodiscard]] std::size_t count(Place at, Ref id) const {
        std::size_t count = 0;
        for (NodeIndex child = tree_[at].first; child != kNoNode; child = tree_[child].next) {
            count += tree_[child].id == id ? 1 : 0;
        }
        return count;
    }
    [[nodiscard]] Ref id(Place at) const { return tree_[at].id; }
    bool text(Place at, std::string_view& text, bool& xml) const {
        const Node& node = tree_[at];
        text = tree_.bytes(node.text);
        xml = node.kind == ValueKind::Xml;
        return node.kind != ValueKind::None;
    }
    template <class Function>
    int callAt(Place at, const Function& function) {
        const NodeIndex back = cursor_.node_;
        cursor_.moveTo(at);
        const std::uint32_t generation = tree_[at].generation;
        const int result = function(cursor_);
        if (!tree_.alive(at, generation)) {
            lost_ = true; // a reader has changed the message below itself
            return -1;
        }
        cursor_.moveTo(back);
        return result;
    }
    [[nodiscard]] bool lost() const { return lost_; }
    [[nodiscard]] std::uint32_t& recordDepth() const { return cursor_.recordDepth_; }

private:
    const HBXBinaryIterator& cursor_;
    const Tree& tree_;
    bool lost_ = false;
};

/// What writing a record by its table needs of a tree.
class TreeSink {
public:
    explicit TreeSink(HBXBinaryIterator& cursor)
        : cursor_(cursor), tree_(*cursor.tree_), at_(cursor.node_), top_(cursor.node_) {}
    ~TreeSink() {
        if (!lost_) {
            cursor_.moveTo(top_);
        }
    }
    TreeSink(const TreeSink&) = delete;
    TreeSink& operator=(const TreeSink&) = delete;

    template <class Function>
    int call(const Function& function) {
        cursor_.moveTo(at_);
        const std::uint32_t generation = tree_[at_].generation;
        const int result = function(cursor_);
        if (!tree_.alive(at_, generation)) {
            lost_ = true; // a writer has removed the element that it was to fill
            return -1;
        }
        return result;
    }
    [[nodiscard]] bool hasChildren() const { return tree_[at_].first != kNoNode; }
    void removeFirst(int id) {
        const NodeIndex old = tree_.findChild(at_, static_cast<Ref>(id));
        if (old != kNoNode) {
            tree_.remove(old);
        }
    }
    int open(int id, std::uint64_t) {
        at_ = append(id);
        return 0;
    }
    void close() {
        if (!lost_) {
            at_ = tree_[at_].parent;
        }
    }
    void expect(const HBXRecordTable&) {}
    int value(int id, const HBXElementHead&, std::string_view text) {
        const bool good = id == 0
                              ? tree_.setValue(at_, text, ValueKind::Text)
                              : tree_.appendText(at_, static_cast<Ref>(id), cursor_.savedNamespace_, text);
        return good ? 0 : -1;
    }
    template <class Number>
    int number(int id, const HBXElementHead&, Number number) {
        return tree_.appendNumber(at_, static_cast<Ref>(id), cursor_.savedNamespace_, number) ? 0 : -1;
    }
    int xml(int id, std::string_view text) {
        return tree_.setValue(append(id), text, ValueKind::Xml) ? 0 : -1;
    }
    void mark(int nsid, int typeId) {
        if (nsid != 0) {
            cursor_.savedNamespace_ = static_cast<Ref>(nsid);
        }
        if (typeId > 100) {
            tree_.setType(at_, static_cast<Ref>(nsid), static_cast<Ref>(typeId));
        }
    }
    void unmark() { cursor_.savedNamespace_ = 0; }

private:
    NodeIndex append(int id) { return tree_.append(at_, static_cast<Ref>(id), cursor_.savedNamespace_); }

    HBXBinaryIterator& cursor_;
    Tree& tree_;
    NodeIndex at_;        ///< the current element; the cursor is taken there only when somebody needs it
    const NodeIndex top_; ///< where the record began
    bool lost_ = false;
};

} // namespace internal

HBXBinaryIterator::HBXBinaryIterator(HBXBinary& message) : message_(&message), tree_(&message.tree()) {
    moveTo(kRoot);
}

bool HBXBinaryIterator::alive() const { return tree_->alive(node_, generation_); }

int HBXBinaryIterator::moveTo(NodeIndex node) const {
    if (node == kNoNode) {
        return -1;
    }
    node_ = node;
    generation_ = (*tree_)[node].generation;
    return 0;
}

/// A number of the fixed kind, or one that this message has given to a name.
bool HBXBinaryIterator::isRefOfNames(int ref) const {
    return ref >= 0 && (static_cast<Ref>(ref) < kDynamicRef || tree_->names().knows(static_cast<Ref>(ref)));
}

// --- moving ---

int HBXBinaryIterator::seekRoot() const { return moveTo(kRoot); }

int HBXBinaryIterator::seekUp() const { return alive() ? moveTo((*tree_)[node_].parent) : -1; }

int HBXBinaryIterator::seek(int id) const {
    return alive() && id > 0 ? moveTo(tree_->findChild(node_, static_cast<Ref>(id))) : -1;
}

int HBXBinaryIterator::seekPresence(int id) const {
    return alive() && id > 0 && tree_->findChild(node_, static_cast<Ref>(id)) != kNoNode ? 0 : -1;
}

int HBXBinaryIterator::firstChild() const { return alive() ? moveTo((*tree_)[node_].first) : -1; }

int HBXBinaryIterator::nextSibling() const { return alive() ? moveTo((*tree_)[node_].next) : -1; }

int HBXBinaryIterator::nextSibling(int id) const {
    return alive() && id > 0 ? moveTo(tree_->findFrom((*tree_)[node_].next, static_cast<Ref>(id))) : -1;
}

int HBXBinaryIterator::seekTo(const HBXMessageIterator& other) const {
    if (typeid(other) != typeid(*this)) {
        return -1;
    }
    const auto& there = static_cast<const HBXBinaryIterator&>(other);
    if (there.tree_ != tree_) {
        return -1;
    }
    node_ = there.node_;
    generation_ = there.generation_;
    return 0;
}

int HBXBinaryIterator::seekPath(std::string_view path) const {
    NodeIndex at = kRoot;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const Ref id = internal::findElementRef(tree_->names(), path.substr(0, end));
        at = id == 0 ? kNoNode : tree_->findChild(at, id);
        if (at == kNoNode) {
            return -1;
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return moveTo(at);
}

// --- the current element ---

int HBXBinaryIterator::curID() const { return alive() ? static_cast<int>((*tree_)[node_].id) : 0; }

int HBXBinaryIterator::curNamespaceID() const { return alive() ? static_cast<int>((*tree_)[node_].ns) : 0; }

std::string HBXBinaryIterator::curName() const {
    return alive() ? std::string(internal::elementName(tree_->names(), (*tree_)[node_].id)) : std::string();
}

std::string HBXBinaryIterator::curType() const {
    const internal::Extra* extra = alive() ? tree_->extra(node_) : nullptr;
    return extra == nullptr ? std::string()
                            : internal::qualifiedName(internal::namespaceName(tree_->names(), extra->typeNs),
                                                      internal::typeName(tree_->names(), extra->type));
}

// --- building ---

int HBXBinaryIterator::newChild(int id) {
    if (!alive() || id <= 0 || !isRefOfNames(id)) {
        return -1;
    }
    return moveTo(tree_->append(node_, static_cast<Ref>(id), savedNamespace_));
}

int HBXBinaryIterator::deleteChild(int id) {
    if (seekPresence(id) != 0) {
        return -1;
    }
    NodeIndex child = tree_->findChild(node_, static_cast<Ref>(id));
    while (child != kNoNode) {
        const NodeIndex next = tree_->findFrom((*tree_)[child].next, static_cast<Ref>(id));
        tree_->remove(child);
        child = next;
    }
    return 0;
}

int HBXBinaryIterator::deleteFromChild() {
    if (!alive() || node_ == kRoot) {
        return -1;
    }
    const NodeIndex parent = (*tree_)[node_].parent;
    tree_->remove(node_);
    return moveTo(parent);
}

int HBXBinaryIterator::copyToChild(const HBXMessageIterator* from) {
    if (from == nullptr || !alive()) {
        return -1;
    }
    const auto* source = dynamic_cast<const HBXBinaryIterator*>(from);
    if (source == nullptr) { // a cursor without a tree: by its bytes
        char* data = nullptr;
        int length = 0;
        const int result = from->serializeFromChild(&data, &length);
        const int copied = result == 0 ? deserializeToChild(data, length) : -1;
        std::free(data);
        return copied;
    }
    if (!source->alive()) {
        return -1;
    }
    if (source->node_ == kRoot) {
        tree_->copyChildren(*source->tree_, kRoot, node_);
    } else {
        tree_->copyElement(*source->tree_, source->node_, node_);
    }
    return 0;
}

int HBXBinaryIterator::setNamespace(int nsid) {
    if (!alive() || !isRefOfNames(nsid)) {
        return -1;
    }
    tree_->setNamespace(node_, static_cast<Ref>(nsid));
    return 0;
}

int HBXBinaryIterator::setNamespaceName(const std::string& name) {
    return alive() && isName(name)
               ? setNamespace(static_cast<int>(internal::namespaceRef(tree_->names(), name)))
               : -1;
}

int HBXBinaryIterator::saveNamespace(int nsid) {
    if (!alive() || !isRefOfNames(nsid)) {
        return -1;
    }
    savedNamespace_ = static_cast<Ref>(nsid);
    return 0;
}

int HBXBinaryIterator::saveNamespaceName(const std::string& name) {
    return alive() && isName(name)
               ? saveNamespace(static_cast<int>(internal::namespaceRef(tree_->names(), name)))
               : -1;
}

int HBXBinaryIterator::setNamespaceChild(int nsid) {
    if (!alive() || !isRefOfNames(nsid)) {
        return -1;
    }
    for (NodeIndex child = (*tree_)[node_].first; child != kNoNode; child = (*tree_)[child].next) {
        tree_->setNamespace(child, static_cast<Ref>(nsid));
    }
    return 0;
}

int HBXBinaryIterator::setComplexType(int nsid, int typeId) {
    if (!alive() || !isRefOfNames(nsid) || !isRefOfNames(typeId)) {
        return -1;
    }
    tree_->setType(node_, static_cast<Ref>(nsid), static_cast<Ref>(typeId));
    return 0;
}

int HBXBinaryIterator::setComplexTypeNames(const std::string& nsName, const std::string& typeName) {
    return alive() && isName(nsName) && isName(typeName)
               ? setComplexType(static_cast<int>(internal::namespaceRef(tree_->names(), nsName)),
                                static_cast<int>(internal::typeRef(tree_->names(), typeName)))
               : -1;
}

int HBXBinaryIterator::internName(std::string_view name) {
    return alive() && isName(name) ? static_cast<int>(internal::elementRef(tree_->names(), name)) : 0;
}

int HBXBinaryIterator::idOfName(std::string_view name) const {
    return static_cast<int>(internal::findElementRef(tree_->names(), name));
}

// --- values and attributes ---

int HBXBinaryIterator::rawValue(int id, std::string_view& text, bool& xml) const {
    if (!alive()) {
        return -1;
    }
    const NodeIndex at = id == 0 ? node_ : id > 0 ? tree_->findChild(node_, static_cast<Ref>(id)) : kNoNode;
    if (at == kNoNode) {
        return 1;
    }
    const Node& node = (*tree_)[at];
    text = tree_->bytes(node.text);
    xml = node.kind == ValueKind::Xml;
    return node.kind != ValueKind::None ? 0 : -1;
}

int HBXBinaryIterator::putRawValue(int id, std::string_view text, bool xml) {
    if (!alive() || id < 0 || !isRefOfNames(id)) {
        return -1;
    }
    const NodeIndex at = id == 0 ? node_ : tree_->append(node_, static_cast<Ref>(id), savedNamespace_);
    if (tree_->setValue(at, text, xml ? ValueKind::Xml : ValueKind::Text)) {
        return 0;
    }
    if (id != 0) {
        tree_->remove(at);
    }
    return -1;
}

int HBXBinaryIterator::rawAttr(int id, std::string_view& text) const {
    if (!alive()) {
        return -1;
    }
    const internal::Attribute* attribute =
        id > 0 ? tree_->findAttribute(node_, static_cast<Ref>(id)) : nullptr;
    if (attribute == nullptr) {
        return 1;
    }
    text = tree_->bytes(attribute->text);
    return 0;
}

int HBXBinaryIterator::putRawAttr(int id, std::string_view text) {
    return alive() && id > 0 && isRefOfNames(id) && tree_->setAttribute(node_, static_cast<Ref>(id), text)
               ? 0
               : -1;
}

// --- records ---

int HBXBinaryIterator::readTable(void* record, const HBXRecordTable& table) const {
    if (!alive()) {
        return -1;
    }
    internal::TreeSource source(*this);
    return internal::TableReader(source).read(node_, record, table);
}

int HBXBinaryIterator::writeTable(const void* record, const HBXRecordTable& table) {
    if (!alive()) {
        return -1;
    }
    internal::TreeSink sink(*this);
    return internal::TableWriter(sink).write(record, table);
}

// --- whole trees ---

int HBXBinaryIterator::serialize(char** out, int* length, int flags) const {
    return message_->serialize(out, length, nullptr, flags);
}

int HBXBinaryIterator::serializeFromChild(char** out, int* length) const {
    if (!alive() || out == nullptr || length == nullptr) {
        return -1;
    }
    internal::ByteBuffer bytes;
    const internal::Top top = node_ == kRoot ? internal::Top::Message : internal::Top::Element;
    if (internal::writeBinary(*tree_, internal::Envelope(), node_, top, bytes) != 0) {
        return -1;
    }
    *length = static_cast<int>(bytes.size());
    *out = bytes.release();
    return 0;
}

int HBXBinaryIterator::deserializeToChild(const char* data, int length) {
    return message_->deserialize(data, length, this);
}

char* HBXBinaryIterator::toText() const { return message_->toText(nullptr, ""); }

char* HBXBinaryIterator::toTextFromChild() const { return message_->toText(this, ""); }

int HBXBinaryIterator::fromTextToChild(const char* text) { return message_->fromText(text, this); }

HBXMessageIterator* HBXBinaryIterator::newIterator(bool same) const {
    auto* cursor = new HBXBinaryIterator(*message_);
    if (same) {
        cursor->seekTo(*this);
    }
    return cursor;
}

HBXMessage* HBXBinaryIterator::copyMessage() const {
    if (!alive()) {
        return nullptr;
    }
    auto* copy = new HBXBinary();
    copy->tree().copyContent(*tree_, node_, kRoot);
    return copy;
}

int HBXBinaryIterator::getOrigin(std::string& origin) const { return message_->getOrigin(origin); }

} // namespace HBX
