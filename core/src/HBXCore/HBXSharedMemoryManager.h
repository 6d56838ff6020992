#pragma once

#include <cstddef>
#include <cstdint>

#include <HBXCommon/HBXExport.h>
#include <HBXCore/HBXCacheFile.h>

namespace HBX {

/// The heap inside a mapped file: a view that costs nothing to make. Blocks are 16-aligned and begin with a
/// head of 16 bytes; free ones hang in a binary trie over their sizes, so that the best fit is found in as
/// many steps as a size has bits. All it keeps is derived from who uses which block; nothing here needs to
/// survive a kill. Every offset is checked before it is followed: what contradicts itself throws
/// internal::CacheDamage. To be used under the file lock.
class HBX_EXPORT HBXSharedMemoryManager {
public:
    /// Offset from the mapping's start; 0 is null.
    using pointer_type = std::uint64_t;

    static constexpr std::uint64_t kAlignment = 16;
    static constexpr std::uint64_t kHeadSize = 16;
    static constexpr std::uint64_t kMinimumBlock = 64;
    static constexpr std::uint32_t kVersion = 1;

    /// @param base  start of the mapping, which begins with HBXHeapState.
    explicit HBXSharedMemoryManager(char* base) : base_(base) {}

    /// Makes one free block of everything behind a header. @param size  of the file, a multiple of 16.
    void create(std::uint64_t headerSize, std::uint64_t size);

    /// @return offset of at least `size` bytes, 16-aligned; 0 when there is no room, or for a request of 0.
    pointer_type allocate(std::uint64_t size);
    /// Gives back what `allocate` gave.
    void free(pointer_type payload);
    /// The file has grown: adds the new part, whose length must be a multiple of 16. Less than a block is
    /// left.
    void resize(std::uint64_t newSize);

    /// Bytes of the block that a request of `size` takes, head included.
    static constexpr std::uint64_t blockSize(std::uint64_t size) {
        const std::uint64_t block = (size + kAlignment - 1) / kAlignment * kAlignment + kHeadSize;
        return block < kMinimumBlock ? kMinimumBlock : block;
    }
    /// Bytes of the block of a payload, head included.
    std::uint64_t blockSizeAt(pointer_type payload) const;
    /// Bytes of all blocks in use, and where the heap ends.
    std::uint64_t totalAllocated() const { return state().total; }
    std::uint64_t end() const { return state().end; }

    // --- rebuilding from content: lay the blocks from the beginning to the end, then finish ---

    /// Starts over, as if every block had to be found.
    void beginRebuild(std::uint64_t size);
    /// The next block in use begins at `payload - kHeadSize` and needs `size` bytes; what is between it and
    /// the block before becomes free.
    void layUsed(pointer_type payload, std::uint64_t size);
    /// Ends a rebuild: what is left becomes free, and the tree of free blocks is made.
    void finishRebuild();

    /// Walks all blocks and the tree of free ones and throws where they disagree.
    void check() const;

private:
    struct Block;
    struct FreeBlock;

    HBXHeapState& state() const { return *reinterpret_cast<HBXHeapState*>(base_); }
    Block& blockAt(std::uint64_t offset) const;
    Block& usedBlockOf(pointer_type payload) const;
    FreeBlock& freeBlockAt(std::uint64_t offset) const;
    Block& next(std::uint64_t offset, const Block& block) const;
    int topBit() const;

    std::uint64_t layFree(std::uint64_t offset, std::uint64_t size);
    void layEnd(std::uint64_t previousSize);
    std::uint64_t findFit(std::uint64_t size) const;
    void insertFree(std::uint64_t offset);
    void removeFree(std::uint64_t offset);
    void replaceInTree(std::uint64_t offset, std::uint64_t by);
    std::uint64_t takeLeafBelow(std::uint64_t offset);
    void rebuildTree();
    std::uint64_t checkTree() const;

    char* base_;
    // Only while rebuilding: where the last block begins, and where it ends.
    std::uint64_t lastBlock_ = 0;
    std::uint64_t reached_ = 0;
};

} // namespace HBX
