#pragma once

#include <cstddef>
#include <cstdint>

namespace HBX {

/// Bytes 53 to 56 from the end of a cache file's header tell it from other files.
inline constexpr std::uint32_t HBX_CACHE_FILE_SIGNATURE = 0xCACEFE03;

/// What the caches of one kind agree on; part of it stands in the header of their files.
struct HBXCacheFormat {
    std::uint32_t keySize;   ///< Bytes of a key; 16.
    std::uint32_t valueSize; ///< Fixed part of a value record.
    std::size_t keyOffset;   ///< Where a value record repeats its key.
    /// The whole length of the record that begins at `record`, or 0 when it does not fit into `available`
    /// bytes. The bytes may be anything.
    std::size_t (*checkedLength)(const void* record, std::size_t available);
};

/// Bookkeeping of the heap, bytes 0 to 39 of the file. Derived: it can be rebuilt from the rest at any time.
struct HBXHeapState {
    std::uint64_t end;       ///< Where the heap ends; the file's size.
    std::uint64_t total;     ///< Bytes in used blocks, their heads included.
    std::uint64_t freeRoot;  ///< Root of the tree of free blocks, 0 when there is none.
    std::uint64_t spare;     ///< 0.
    std::uint32_t version;   ///< Layout of the heap.
    std::uint32_t usedCount; ///< Number of used blocks.
};

/// Bytes 0 to 47.
struct HBXCacheHead {
    HBXHeapState heap;
    std::uint64_t snapshot; ///< Offset of the snapshot that readers take; 0 only while the header is built.
};

/// Bytes 48 to 76: not aligned, as the format has it.
struct [[gnu::packed]] HBXCacheConstants {
    std::uint8_t lock; ///< Stands for the file lock, which lives beside the file.
    std::uint32_t signature;
    std::uint32_t headerSize;
    std::uint32_t keySize;
    std::uint32_t format;
    std::uint32_t valueSize;
    std::uint32_t unchecked; ///< Written as 1.
    std::uint32_t valid;     ///< 0: abandoned, or still being built.
};

inline constexpr std::size_t kCacheConstantsOffset = 48;
inline constexpr std::size_t kCacheValidOffset = 73;
inline constexpr std::uint32_t kCacheHeaderSize = 77;
inline constexpr std::uint32_t kCacheFormatConstant = 225;
/// The heap begins at the first multiple of 16 behind the header.
inline constexpr std::uint64_t kCacheHeapBegin = 80;
/// No cache file is shorter.
inline constexpr std::uint64_t kCacheMinimumSize = 4096;

/// Whether `need` bytes from an offset on lie inside the heap of a file of `size` bytes. The offset may be
/// anything, as anybody may have written it.
constexpr bool isInCacheHeap(std::uint64_t offset, std::uint64_t need, std::uint64_t size) {
    return offset >= kCacheHeapBegin && offset % 16 == 0 && offset <= size && need <= size - offset;
}

static_assert(sizeof(HBXHeapState) == 40 && sizeof(HBXCacheHead) == kCacheConstantsOffset);
static_assert(kCacheConstantsOffset + sizeof(HBXCacheConstants) == kCacheHeaderSize);
static_assert(kCacheConstantsOffset + offsetof(HBXCacheConstants, valid) == kCacheValidOffset);

/// One key of a snapshot with the place of its value.
struct HBXCacheEntry {
    std::uint8_t key[16];
    std::uint64_t value; ///< Offset of the value record; 0 for a removed entry.
};
static_assert(sizeof(HBXCacheEntry) == 24);

/// Head of a snapshot: entries 0 to sorted - 1 ascend, the `tail` entries behind them came later, in the
/// order of arrival. All keys are distinct.
struct HBXSnapshotHead {
    static constexpr std::uint64_t kMagic = 0x746F687350414E53; // "SNAPshot"
    static constexpr std::uint32_t kMaximumTail = 128;

    std::int32_t references; ///< 1 for being current, and one for each list.
    std::uint32_t capacity;  ///< Entries that fit.
    /// Both lengths, sorted in the lower half: one word, so that an entry is added by one store.
    std::uint64_t lengths;
    std::uint64_t sequence; ///< Of the snapshots made in this file.
    std::uint64_t magic;
    std::uint32_t removed;  ///< Entries without value. Derived.
    std::uint32_t spare[2]; ///< 0.

    /// `lengths` taken apart, and put together.
    std::uint32_t sorted() const { return static_cast<std::uint32_t>(lengths); }
    std::uint32_t tail() const { return static_cast<std::uint32_t>(lengths >> 32); }
    std::uint64_t count() const { return std::uint64_t{sorted()} + tail(); }
    static constexpr std::uint64_t joinLengths(std::uint64_t sorted, std::uint64_t tail) {
        return sorted | tail << 32;
    }
};
inline constexpr std::size_t kSnapshotSize = 44;
inline constexpr std::size_t kSnapshotEntriesOffset = 48;
static_assert(offsetof(HBXSnapshotHead, spare) + 8 == kSnapshotSize && sizeof(HBXSnapshotHead) == 48);

} // namespace HBX
