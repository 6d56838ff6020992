#pragma once

#include <array>
#include <vector>

#include <HBXMessage/HBXBinary.h>
#include <HBXMessage/HBXRecordTable.h>
#include <HBXMessage/internal/ElementView.h>
#include <HBXMessage/internal/Limits.h>

namespace HBX::internal {

/// A read-only cursor over the binary form of a whole message where it lies: in a received buffer, in the
/// mapped cache. Bounds are checked while it walks; what does not parse looks absent. Building gives -1.
class InPlaceCursor final : public HBXMessageIterator {
public:
    /// On the root; the bytes must stay as long as the cursor. `good` tells whether there is one.
    explicit InPlaceCursor(std::string_view bytes);
    [[nodiscard]] bool good() const { return good_; }

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

    int curID() const override { return static_cast<int>(id(depth_)); }
    int curNamespaceID() const override;
    std::string curName() const override;
    std::string curType() const override;

    using HBXMessageIterator::newChild;
    int newChild(int) override { return -1; }
    int deleteChild(int) override { return -1; }
    int deleteFromChild() override { return -1; }
    int copyToChild(const HBXMessageIterator*) override { return -1; }
    using HBXMessageIterator::setNamespace;
    int setNamespace(int) override { return -1; }
    using HBXMessageIterator::saveNamespace;
    int saveNamespace(int) override { return -1; }
    int setNamespaceChild(int) override { return -1; }
    using HBXMessageIterator::setComplexType;
    int setComplexType(int, int) override { return -1; }

    // Everything below is done by a tree of the same bytes, which is parsed when it is first asked for.
    int serialize(char** out, int* length, int flags) const override;
    int serializeFromChild(char** out, int* length) const override;
    int deserializeToChild(const char*, int) override { return -1; }
    char* toText() const override;
    char* toTextFromChild() const override;
    int fromTextToChild(const char*) override { return -1; }
    HBXMessage* getMessage() const override { return message(); }
    HBXMessageIterator* newIterator(bool same) const override;
    HBXMessage* copyMessage() const override;
    int getOrigin(std::string& origin) const override;

    int readTable(void* record, const HBXRecordTable& table) const override;
    int writeTable(const void*, const HBXRecordTable&) override { return -1; }

    int rawValue(int id, std::string_view& text, bool& xml) const override;
    int putRawValue(int, std::string_view, bool) override { return -1; }
    int rawAttr(int id, std::string_view& text) const override;
    int putRawAttr(int, std::string_view) override { return -1; }
    int idOfName(std::string_view name) const override;

    // What reading a record by its table needs: a place is a depth, the element open there. 0 is none.
    using Place = std::uint32_t;
    /// The children of a place that are still to come.
    struct Walk {
        const std::uint8_t* at;
        const std::uint8_t* end;
        Place below; ///< where each is opened
    };
    [[nodiscard]] Walk walk(Place at) const {
        const ElementView& view = slots_[at].view;
        return view.hasChildren() && at <= kMaxDepth ? Walk{view.children, view.end, at + 1}
                                                     : Walk{nullptr, nullptr, 0};
    }
    Place next(Walk& walk) const {
        if (walk.at == walk.end) {
            return 0;
        }
        const Place child = load(walk.below, walk.at);
        walk.at = child == 0 ? walk.end : slots_[child].view.end;
        return child;
    }
    bool takeText(Walk& walk, const HBXRow& row, std::string_view& text) const {
        const std::uint8_t* at = walk.at;
        if (walk.end - at < 8) { // so close to the end the long way will do
            return false;
        }
        if ((loadU32(reinterpret_cast<const char*>(at)) & row.head.mask) != row.head.bytes) {
            return false;
        }
        at += row.head.size;
        const std::uint32_t length = *at++;
        if (length > 0x7F || static_cast<std::size_t>(walk.end - at) < length) {
            return false;
        }
        text = {reinterpret_cast<const char*>(at), length};
        walk.at = at + length;
        return true;
    }
    [[nodiscard]] std::size_t count(Place at, Ref id) const;
    Place next(Place at) const { return load(at, slots_[at].view.end); }
    [[nodiscard]] Ref id(Place at) const { return elementOf(slots_[at].view.id); }
    bool text(Place at, std::string_view& text, bool& xml) const {
        const ElementView& view = slots_[at].view;
        if (!view.hasValue()) {
            return false;
        }
        text = view.text();
        xml = view.isXml();
        return true;
    }
    template <class Function>
    int callAt(Place at, const Function& function) const {
        const Place back = depth_;
        depth_ = at;
        const int result = function(*this);
        depth_ = back;
        return result;
    }
    static constexpr bool lost() { return false; }
    [[nodiscard]] std::uint32_t& recordDepth() const { return recordDepth_; }

protected:
    int seekPath(std::string_view path) const override;
    int internName(std::string_view) override { return 0; }
    int setNamespaceName(const std::string&) override { return -1; }
    int saveNamespaceName(const std::string&) override { return -1; }
    int setComplexTypeNames(const std::string&, const std::string&) override { return -1; }

private:
    /// An open element, and where looking for a child by id goes on: behind the last one found, with the ids
    /// (mod 64) of all children passed on the way there.
    struct alignas(64) Slot {
        ElementView view;
        const std::uint8_t* resume;
        std::uint64_t passed;
    };

    struct Name {
        std::string_view text;
        Ref element;
    };

    /// The element of an id as written; 0 for an index beyond the names.
    [[nodiscard]] Ref elementOf(Ref written) const {
        if (written < kDynamicRef) [[likely]] {
            return written;
        }
        return written - kDynamicRef < names_.size() ? names_[written - kDynamicRef].element : 0;
    }
    bool readNames(const std::uint8_t*& at, const std::uint8_t* end);
    bool skipEnvelope(const std::uint8_t*& at, const std::uint8_t* end) const;
    Place load(Place at, const std::uint8_t* from) const {
        Slot& slot = slots_[at];
        const std::uint8_t* limit = slots_[at - 1].view.end;
        if (from >= limit || !slot.view.parse(from, limit) ||
            (slot.view.id >= kDynamicRef && elementOf(slot.view.id) == 0)) {
            return 0;
        }
        slot.resume = slot.view.children;
        slot.passed = 0;
        return at;
    }
    [[nodiscard]] Place find(int id) const;
    int moveOn(int wanted) const;
    [[nodiscard]] std::string_view refName(std::uint64_t written, std::string_view (*lookUp)(int)) const;
    HBXMessage* message() const;
    [[nodiscard]] HBXMessageIterator* treeCursor() const;
    [[nodiscard]] static std::string_view content(const ElementView& view);

    std::string_view bytes_;
    bool good_ = false;
    std::vector<Name> names_;
    mutable Place depth_ = 1;
    mutable std::uint32_t recordDepth_ = 0;
    mutable boost::intrusive_ptr<HBXMessage> message_;
    mutable bool damaged_ = false;
    mutable std::array<Slot, kMaxDepth + 3> slots_; // [0] encloses the root, [1] is the root
};

} // namespace HBX::internal
