#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <HBXCommon/HBXExport.h>
#include <HBXCore/HBXCacheFile.h>
#include <HBXCore/HBXMappedMemoryManager.h>

namespace HBX {

class HBXCacheLogicBase;

namespace internal {
struct SidecarPin;
}

/// A reference-counted list of the values of one snapshot. While it lives the snapshot stays as it is, and
/// the values may be read where they lie, from any thread, without a lock. Keeps its cache alive.
class HBX_EXPORT HBXCacheList {
public:
    /// @param cache  lives as long as any of its lists.
    explicit HBXCacheList(HBXCacheLogicBase& cache);
    virtual ~HBXCacheList();
    HBXCacheList(const HBXCacheList&) = delete;
    HBXCacheList& operator=(const HBXCacheList&) = delete;

    /// false: the cache was not accessible, too many lists were open, or the snapshot was unreadable. The
    /// list is then empty.
    bool holdsSnapshot() const { return snapshot_ != 0; }

    /// Sorted by key; entries without value were removed and are to be stepped over.
    const HBXCacheEntry* entriesBegin() const { return begin_; }
    const HBXCacheEntry* entriesEnd() const { return end_; }
    /// The entry of a key, null when there is none or it was removed.
    const HBXCacheEntry* findEntry(const void* key) const;

    friend void intrusive_ptr_add_ref(const HBXCacheList* list) {
        list->references_.fetch_add(1, std::memory_order_relaxed);
    }
    /// Mostly there is one owner only, who needs no locked instruction to find that out.
    friend void intrusive_ptr_release(const HBXCacheList* list) {
        if (list->references_.load(std::memory_order_acquire) == 1 ||
            list->references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            const_cast<HBXCacheList*>(list)->close();
        }
    }

protected:
    /// The record of at least `need` bytes at an offset, and how many bytes there may be of it; null where
    /// there can be none.
    const char* recordAt(std::uint64_t offset, std::size_t need, std::size_t& available) const {
        if (!isInCacheHeap(offset, need, size_)) {
            return nullptr;
        }
        available = size_ - offset;
        return base_ + offset;
    }

private:
    friend class HBXCacheLogicBase;

    void close();

    mutable std::atomic<int> references_{1}; ///< The maker's own is one.

    HBXCacheLogicBase& cache_;
    HBXMappedMemoryManager* manager_ = nullptr; ///< The mapping, which counts us.
    std::uint64_t snapshot_ = 0;
    internal::SidecarPin* pin_ = nullptr; ///< The row that notes us; null once our rest was ended.
    std::uint32_t ticket_ = 0;            ///< Of our rests.
    const char* base_ = nullptr;          ///< Of the mapping.
    std::uint64_t size_ = 0;              ///< Of the file when the list was made.
    std::uint64_t fork_ = 0;
    const HBXCacheEntry* begin_ = nullptr;
    const HBXCacheEntry* end_ = nullptr;
    std::unique_ptr<std::vector<HBXCacheEntry>>
        sorted_; ///< Only when the file had no room for a sorted snapshot.
};

} // namespace HBX
