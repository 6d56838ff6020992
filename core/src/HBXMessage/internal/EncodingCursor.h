#pragma once

#include <array>

#include <HBXMessage/HBXBinary.h>
#include <HBXMessage/internal/BinaryFormat.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/ValueText.h>

namespace HBX::internal {

/// A cursor that encodes while it is written through, without a tree. An element's head is written at its
/// first content, when everything that the head must say is known. It can only append: whatever else is asked
/// of it makes it give up (`gaveUp`), the bytes are then worthless and the writer has to run again over a
/// tree. It answers -1 from then on.
class EncodingCursor final : public HBXMessageIterator {
public:
    explicit EncodingCursor(ByteBuffer& out);

    [[nodiscard]] bool gaveUp() const { return gaveUp_; }
    /// Closes the root and the header. False when it gave up, also by exceeding a limit.
    bool finish();

    int seekRoot() const override { return giveUp(); }
    int seekUp() const override { return const_cast<EncodingCursor*>(this)->leave(); }
    using HBXMessageIterator::seek;
    int seek(int id) const override;
    using HBXMessageIterator::seekPresence;
    int seekPresence(int id) const override { return seek(id); }
    using HBXMessageIterator::firstChild;
    int firstChild() const override { return giveUp(); }
    using HBXMessageIterator::nextSibling;
    int nextSibling() const override { return giveUp(); }
    int nextSibling(int) const override { return giveUp(); }

    int curID() const override { return static_cast<int>(top().id); }
    int curNamespaceID() const override { return static_cast<int>(top().ns); }
    std::string curName() const override;
    std::string curType() const override;

    using HBXMessageIterator::newChild;
    int newChild(int id) override;
    int deleteChild(int) override { return giveUp(); }
    int deleteFromChild() override { return giveUp(); }
    int copyToChild(const HBXMessageIterator* from) override;
    using HBXMessageIterator::setNamespace;
    int setNamespace(int nsid) override;
    using HBXMessageIterator::saveNamespace;
    int saveNamespace(int nsid) override;
    int setNamespaceChild(int) override { return giveUp(); }
    using HBXMessageIterator::setComplexType;
    int setComplexType(int nsid, int typeId) override;

    int serialize(char**, int*, int) const override { return giveUp(); }
    int serializeFromChild(char**, int*) const override { return giveUp(); }
    int deserializeToChild(const char*, int) override { return giveUp(); }
    char* toText() const override { return giveUpNull<char>(); }
    char* toTextFromChild() const override { return giveUpNull<char>(); }
    int fromTextToChild(const char*) override { return giveUp(); }
    /// An empty message: the real one comes with the second run.
    HBXMessage* getMessage() const override;
    HBXMessageIterator* newIterator(bool) const override { return getMessage()->newIterator(); }
    HBXMessage* copyMessage() const override { return getMessage()->copy(true); }
    int getOrigin(std::string&) const override { return giveUp(); }

    int readTable(void*, const HBXRecordTable&) const override { return giveUp(); }
    int writeTable(const void* record, const HBXRecordTable& table) override;

    int rawValue(int, std::string_view&, bool&) const override { return giveUp(); }
    int putRawValue(int id, std::string_view text, bool xml) override;
    int rawAttr(int, std::string_view&) const override { return giveUp(); }
    int putRawAttr(int, std::string_view) override { return giveUp(); }
    int idOfName(std::string_view name) const override;

    // What writing a record by its table needs besides. The table says beforehand which ids it writes.
    template <class Function>
    int call(const Function& function) {
        return function(*this);
    }
    [[nodiscard]] bool hasChildren() const { return top().state == State::Block; }
    void removeFirst(int id) { seek(id); } // gives up if there is one
    void expect(const HBXRecordTable& table) { top().written |= table.writtenIds; }
    int open(int id, std::uint64_t ids) {
        if (ids == 0 || savedNamespace_ != 0 || top().state != State::Block || depth_ == kMaxDepth) {
            return EncodingCursor::newChild(id);
        }
        const auto ref = static_cast<Ref>(id);
        char* to = out_.ensure(2 * kMaxVarint);
        put(putVarint(to, std::uint64_t{ref} << 3 | std::uint64_t{kFormChildren} << 1));
        ++depth_;
        ++elements_;
        begin(ref, 0);
        top().block = lengths_.open(out_, ref, depth_);
        top().state = State::Block;
        top().written = ids;
        return 0;
    }
    void close() { leave(); }
    int value(int id, const HBXElementHead& head, std::string_view text) {
        if (!isPlain(head) || text.size() > kShortText) [[unlikely]] {
            return EncodingCursor::putRawValue(id, text, false);
        }
        char* to = putPlainHead(head, text.size());
        *to = static_cast<char>(text.size());
        put(copyBytes(to + 1, text));
        return 0;
    }
    template <class Number>
    int number(int id, const HBXElementHead& head, Number number) {
        if (!isPlain(head)) [[unlikely]] {
            return EncodingCursor::putRawValue(id, NumberText(number).view(), false);
        }
        char* to = putPlainHead(head, kNumberRoom);
        char* end = printNumber(to + 1, number);
        *to = static_cast<char>(end - to - 1);
        put(end);
        return 0;
    }
    int xml(int id, std::string_view text) { return EncodingCursor::putRawValue(id, text, true); }
    void mark(int nsid, int typeId);
    void unmark() { savedNamespace_ = 0; }

protected:
    int seekPath(std::string_view) const override { return giveUp(); }
    int internName(std::string_view name) override;
    int setNamespaceName(const std::string& name) override;
    int saveNamespaceName(const std::string& name) override;
    int setComplexTypeNames(const std::string& nsName, const std::string& typeName) override;

private:
    enum class State : std::uint8_t { Fresh, Leaf, Block };

    /// An element that is still open.
    struct Open {
        Ref id, ns, typeNs, type;
        State state;
        OpenBlock block;
        std::uint64_t written; ///< bit (id mod 64) for every child
    };

    [[nodiscard]] const Open& top() const { return open_[depth_]; }
    [[nodiscard]] Open& top() { return open_[depth_]; }
    int giveUp() const {
        gaveUp_ = true;
        return -1;
    }
    template <class T>
    T* giveUpNull() const {
        giveUp();
        return nullptr;
    }
    /// The longest text whose length is one byte.
    static constexpr std::size_t kShortText = 127;
    /// Whether an element with this head is just appended: among children, without a namespace.
    [[nodiscard]] bool isPlain(const HBXElementHead& head) const {
        return savedNamespace_ == 0 && head.size != 0 && top().state == State::Block;
    }
    char* putPlainHead(const HBXElementHead& head, std::size_t length) {
        char* to = out_.ensure(sizeof head.bytes + 1 + length);
        storeU32(to, head.bytes);
        ++elements_;
        return to + head.size;
    }
    static bool isNumber(int ref) { return ref >= 0 && static_cast<Ref>(ref) < kDynamicRef; }
    int leave();
    void finishElement();
    void begin(Ref id, Ref ns) {
        Open& element = top();
        element.id = id;
        element.ns = ns;
        element.typeNs = element.type = 0;
        element.state = State::Fresh;
        element.written = 0;
    }
    void openBlock(Open& element);
    char* putHead(char* to, const Open& element, unsigned content);
    void put(char* end) { out_.advance(static_cast<std::size_t>(end - out_.data()) - out_.size()); }
    [[nodiscard]] bool holdsChild(int id) const;
    int copyBelow(const Tree& tree, NodeIndex top);
    bool openCopy(const Tree& tree, NodeIndex index);

    ByteBuffer& out_;
    BlockLengths& lengths_;
    std::uint32_t depth_ = 0;
    std::uint32_t elements_ = 0;
    Ref savedNamespace_ = 0;
    mutable bool gaveUp_ = false;
    mutable boost::intrusive_ptr<HBXMessage> standIn_;
    std::array<Open, kMaxDepth + 1> open_;
};

} // namespace HBX::internal
