#pragma once

#include <HBXCore/HBXCacheFile.h>
#include <HBXCore/HBXCachedItem.h>
#include <HBXCore/HBXFlatSortedArray.h>
#include <HBXCore/internal/CacheDamage.h>

namespace HBX::internal {

/// The content of a cache file in memory, mapped or read. The only way from an offset to a pointer: every
/// offset comes from a file that anybody may have written, so it is checked first. Costs nothing to make.
class CacheView {
public:
    CacheView(char* base, std::uint64_t size, const HBXCacheFormat& format)
        : base_(base), size_(size), format_(&format) {}

    std::uint64_t size() const { return size_; }

    HBXSnapshotHead& snapshotAt(std::uint64_t offset) const {
        auto& snapshot = *reinterpret_cast<HBXSnapshotHead*>(at(offset, kSnapshotEntriesOffset));
        if (snapshot.magic != HBXSnapshotHead::kMagic || snapshot.count() > snapshot.capacity ||
            snapshot.tail() > HBXSnapshotHead::kMaximumTail ||
            snapshot.capacity * sizeof(HBXCacheEntry) > size_ - offset - kSnapshotEntriesOffset) {
            throw CacheDamage{offset, "the head of a snapshot is damaged"};
        }
        return snapshot;
    }
    static HBXCacheEntry* entriesOf(HBXSnapshotHead& snapshot) {
        return reinterpret_cast<HBXCacheEntry*>(reinterpret_cast<char*>(&snapshot) + kSnapshotEntriesOffset);
    }
    static HBXFlatSortedArray arrayOf(HBXSnapshotHead& snapshot) {
        return {entriesOf(snapshot), snapshot.sorted(), snapshot.tail()};
    }
    /// Bytes of a snapshot that has room for so many entries.
    static constexpr std::uint64_t snapshotSize(std::uint64_t capacity) {
        return capacity == 0 ? kSnapshotSize : kSnapshotEntriesOffset + capacity * sizeof(HBXCacheEntry);
    }

    /// @param length  receives the record's length.
    HBXCachedItem& valueAt(std::uint64_t offset, std::size_t& length) const {
        char* value = at(offset, format_->valueSize);
        length = format_->checkedLength(value, size_ - offset);
        if (length == 0) {
            throw CacheDamage{offset, "a value does not fit into the file"};
        }
        return *reinterpret_cast<HBXCachedItem*>(value);
    }
    HBXCachedItem& valueAt(std::uint64_t offset) const {
        std::size_t length = 0;
        return valueAt(offset, length);
    }
    /// Asks the processor for the beginning of a record, as its length is only known when that has come. Not
    /// inlined, it would count as a function without effect and be left out.
    [[gnu::always_inline]] void prefetchValue(std::uint64_t offset) const {
        constexpr std::uint64_t kLine = 64;
        constexpr std::uint64_t kUsual = 640; // bytes of most records
        const char* value = at(offset, format_->valueSize);
        const std::uint64_t length = size_ - offset < kUsual ? size_ - offset : kUsual;
        for (std::uint64_t line = 0; line < length; line += kLine) {
            __builtin_prefetch(value + line);
        }
    }
    HBXCacheKey keyOf(const HBXCachedItem& value) const {
        return HBXCacheKey(reinterpret_cast<const char*>(&value) + format_->keyOffset);
    }

private:
    char* at(std::uint64_t offset, std::uint64_t need) const {
        if (!isInCacheHeap(offset, need, size_)) {
            throw CacheDamage{offset, "an offset leads out of the heap"};
        }
        return base_ + offset;
    }

    char* base_;
    std::uint64_t size_;
    const HBXCacheFormat* format_;
};

} // namespace HBX::internal
