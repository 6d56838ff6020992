#pragma once

#include <HBXMessage/HBXBinary.h>

namespace HBX {

namespace internal {
class TreeSource;
class TreeSink;
} // namespace internal

/// The cursor over a message's tree. It keeps the message alive. When its element is removed through another
/// cursor, or the whole tree replaced, it is stale: everything fails and nothing changes until `seekRoot` or
/// an absolute `seek` revives it.
class HBX_EXPORT HBXBinaryIterator : public HBXMessageIterator {
public:
    /// On the root.
    explicit HBXBinaryIterator(HBXBinary& message);
    HBXBinaryIterator(const HBXBinaryIterator&) = default;
    HBXBinaryIterator& operator=(const HBXBinaryIterator&) = default;
    ~HBXBinaryIterator() override = default;

    int seekRoot() const override;
    int seekUp() const override;
    using HBXMessageIterator::seek;
    int seek(int id) const override;
    using HBXMessageIterator::seekPresence;
    int seekPresence(int id) const override;
    using HBXMessageIterator::firstChild;
    int firstChild() const override;
    using HBXMessageIterator::nextSibling;
    int nextSibling() const override;
    int nextSibling(int id) const override;
    int seekTo(const HBXMessageIterator& other) const override;

    int curID() const override;
    int curNamespaceID() const override;
    std::string curName() const override;
    std::string curType() const override;

    using HBXMessageIterator::newChild;
    int newChild(int id) override;
    int deleteChild(int id) override;
    int deleteFromChild() override;
    int copyToChild(const HBXMessageIterator* from) override;
    using HBXMessageIterator::setNamespace;
    int setNamespace(int nsid) override;
    using HBXMessageIterator::saveNamespace;
    int saveNamespace(int nsid) override;
    int setNamespaceChild(int nsid) override;
    using HBXMessageIterator::setComplexType;
    int setComplexType(int nsid, int typeId) override;

    int serialize(char** out, int* length, int flags) const override;
    int serializeFromChild(char** out, int* length) const override;
    int deserializeToChild(const char* data, int length) override;
    char* toText() const override;
    char* toTextFromChild() const override;
    int fromTextToChild(const char* text) override;
    HBXMessage* getMessage() const override { return message_.get(); }
    HBXMessageIterator* newIterator(bool same) const override;
    HBXMessage* copyMessage() const override;
    int getOrigin(std::string& origin) const override;

    int readTable(void* record, const HBXRecordTable& table) const override;
    int writeTable(const void* record, const HBXRecordTable& table) override;

    int rawValue(int id, std::string_view& text, bool& xml) const override;
    int putRawValue(int id, std::string_view text, bool xml) override;
    int rawAttr(int id, std::string_view& text) const override;
    int putRawAttr(int id, std::string_view text) override;
    int idOfName(std::string_view name) const override;

    /// Whether the element is still there.
    [[nodiscard]] bool alive() const;
    /// The message of the tree.
    [[nodiscard]] HBXBinary& binary() const { return *message_; }
    /// The element's index in the tree; good only while alive.
    [[nodiscard]] std::uint32_t node() const { return node_; }

protected:
    int seekPath(std::string_view path) const override;
    int internName(std::string_view name) override;
    int setNamespaceName(const std::string& name) override;
    int saveNamespaceName(const std::string& name) override;
    int setComplexTypeNames(const std::string& nsName, const std::string& typeName) override;

private:
    friend class internal::TreeSource;
    friend class internal::TreeSink;

    int moveTo(std::uint32_t node) const;
    [[nodiscard]] bool isRefOfNames(int ref) const;

    boost::intrusive_ptr<HBXBinary> message_;
    internal::Tree* tree_;
    mutable std::uint32_t node_;
    mutable std::uint32_t generation_;
    std::uint32_t savedNamespace_ = 0;
    mutable std::uint32_t recordDepth_ = 0;
};

} // namespace HBX
