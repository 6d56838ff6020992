#include <HBXCore/HBXSharedMemoryManager.h>

#include <bit>

#include <HBXCommon/HBXAbort.h>
#include <HBXCore/internal/CacheDamage.h>

namespace HBX {

using internal::CacheDamage;

namespace {

constexpr std::uint64_t kUsed = 0xA;
constexpr std::uint64_t kFree = 0x5;
constexpr std::uint64_t kStateMask = 0xF;
constexpr int kLowestBit = 4; // sizes are multiples of 16
/// Parent of a free block that is not in the tree itself but in the ring of one of its size.
constexpr std::uint64_t kInRing = 1;
/// Deeper than any tree whose sizes have 64 bits.
constexpr int kMaximumSteps = 64;

} // namespace

struct HBXSharedMemoryManager::Block {
    std::uint64_t sizeAndState;
    std::uint64_t previousSize; ///< Of the block before, 0 for the first.

    std::uint64_t size() const { return sizeAndState & ~kStateMask; }
    bool isUsed() const { return (sizeAndState & kStateMask) == kUsed; }
    bool isFree() const { return (sizeAndState & kStateMask) == kFree; }
};

/// Blocks of one size form a ring; one of them is the node of the tree.
struct HBXSharedMemoryManager::FreeBlock : Block {
    std::uint64_t child[2];
    std::uint64_t parent; ///< 0 for the root, kInRing for a block that is no node.
    std::uint64_t ringNext;
    std::uint64_t ringPrevious;
};

HBXSharedMemoryManager::Block& HBXSharedMemoryManager::blockAt(std::uint64_t offset) const {
    const std::uint64_t end = state().end;
    if (offset < kCacheHeapBegin || offset % kAlignment != 0 || offset > end - kHeadSize) {
        throw CacheDamage{offset, "a block lies outside the heap"};
    }
    auto& block = *reinterpret_cast<Block*>(base_ + offset);
    if (block.size() < kHeadSize || block.size() > end - offset || (!block.isUsed() && !block.isFree())) {
        throw CacheDamage{offset, "the head of a block is damaged"};
    }
    return block;
}

HBXSharedMemoryManager::Block& HBXSharedMemoryManager::usedBlockOf(pointer_type payload) const {
    Block& block = blockAt(payload - kHeadSize);
    if (!block.isUsed() || block.size() < kMinimumBlock) {
        throw CacheDamage{payload, "a block that is not in use is taken for one"};
    }
    return block;
}

HBXSharedMemoryManager::FreeBlock& HBXSharedMemoryManager::freeBlockAt(std::uint64_t offset) const {
    Block& block = blockAt(offset);
    if (!block.isFree() || block.size() < kMinimumBlock) {
        throw CacheDamage{offset, "a block that is not free is taken for one"};
    }
    return static_cast<FreeBlock&>(block);
}

/// Behind the last block stands an end mark, so that every block has a next one.
HBXSharedMemoryManager::Block& HBXSharedMemoryManager::next(std::uint64_t offset, const Block& block) const {
    Block& following = blockAt(offset + block.size());
    if (following.previousSize != block.size()) {
        throw CacheDamage{offset, "two neighbouring blocks disagree about a size"};
    }
    return following;
}

int HBXSharedMemoryManager::topBit() const { return 63 - std::countl_zero(state().end); }

// --- making and rebuilding ---

void HBXSharedMemoryManager::create(std::uint64_t headerSize, std::uint64_t size) {
    if (kCacheHeapBegin != (headerSize + kAlignment - 1) / kAlignment * kAlignment) {
        throw CacheDamage{0, "the header has another size"};
    }
    beginRebuild(size);
    finishRebuild();
}

void HBXSharedMemoryManager::beginRebuild(std::uint64_t size) {
    state() = HBXHeapState{size, 0, 0, 0, kVersion, 0};
    lastBlock_ = 0;
    reached_ = kCacheHeapBegin;
}

void HBXSharedMemoryManager::layUsed(pointer_type payload, std::uint64_t size) {
    const std::uint64_t offset = payload - kHeadSize;
    std::uint64_t previousSize = lastBlock_ == 0 ? 0 : reached_ - lastBlock_;
    if (offset - reached_ >= kMinimumBlock) {
        previousSize = layFree(reached_, offset - reached_);
    } else if (offset > reached_ && lastBlock_ != 0) { // too little for a block: stays with the one before
        auto& last = *reinterpret_cast<Block*>(base_ + lastBlock_);
        previousSize = offset - lastBlock_;
        last.sizeAndState = previousSize | kUsed;
        state().total += offset - reached_;
    } else if (offset > reached_) {
        throw CacheDamage{offset, "the heap does not begin with a block"};
    }
    const std::uint64_t block = blockSize(size);
    *reinterpret_cast<Block*>(base_ + offset) = Block{block | kUsed, previousSize};
    state().total += block;
    ++state().usedCount;
    lastBlock_ = offset;
    reached_ = offset + block;
}

/// @return the size again.
std::uint64_t HBXSharedMemoryManager::layFree(std::uint64_t offset, std::uint64_t size) {
    const std::uint64_t previousSize = lastBlock_ == 0 ? 0 : offset - lastBlock_;
    *reinterpret_cast<Block*>(base_ + offset) = Block{size | kFree, previousSize};
    lastBlock_ = offset;
    return size;
}

void HBXSharedMemoryManager::layEnd(std::uint64_t previousSize) {
    *reinterpret_cast<Block*>(base_ + state().end - kHeadSize) = Block{kHeadSize | kUsed, previousSize};
}

void HBXSharedMemoryManager::finishRebuild() {
    const std::uint64_t rest = state().end - kHeadSize - reached_;
    if (rest >= kMinimumBlock) {
        layFree(reached_, rest);
    } else if (rest > 0) {
        auto& last = *reinterpret_cast<Block*>(base_ + lastBlock_);
        last.sizeAndState += rest;
        state().total += rest;
    }
    layEnd(state().end - kHeadSize - lastBlock_);
    rebuildTree();
}

void HBXSharedMemoryManager::rebuildTree() {
    state().freeRoot = 0;
    const std::uint64_t last = state().end - kHeadSize;
    for (std::uint64_t offset = kCacheHeapBegin; offset != last;) {
        const Block& block = blockAt(offset);
        if (block.isFree()) {
            insertFree(offset);
        }
        offset += block.size();
    }
}

// --- the tree of free blocks ---

void HBXSharedMemoryManager::insertFree(std::uint64_t offset) {
    FreeBlock& block = freeBlockAt(offset);
    block.child[0] = block.child[1] = 0;
    block.ringNext = block.ringPrevious = offset;
    std::uint64_t* link = &state().freeRoot;
    std::uint64_t parent = 0;
    for (int bit = topBit(); *link != 0; --bit) {
        FreeBlock& node = freeBlockAt(*link);
        if (node.size() == block.size()) {
            block.parent = kInRing;
            block.ringNext = *link;
            block.ringPrevious = node.ringPrevious;
            freeBlockAt(node.ringPrevious).ringNext = offset;
            node.ringPrevious = offset;
            return;
        }
        if (bit < kLowestBit) {
            throw CacheDamage{offset, "the tree of free blocks is too deep"};
        }
        parent = *link;
        link = &node.child[block.size() >> bit & 1];
    }
    block.parent = parent;
    *link = offset;
}

void HBXSharedMemoryManager::removeFree(std::uint64_t offset) {
    FreeBlock& block = freeBlockAt(offset);
    if (block.ringNext != offset) {
        freeBlockAt(block.ringPrevious).ringNext = block.ringNext;
        freeBlockAt(block.ringNext).ringPrevious = block.ringPrevious;
        if (block.parent != kInRing) {
            replaceInTree(offset, block.ringNext);
        }
    } else {
        replaceInTree(offset, takeLeafBelow(offset));
    }
}

/// Any leaf below a node may take its place, as all below share the bits above.
/// @return the leaf, out of the tree; 0 when the node is a leaf itself.
std::uint64_t HBXSharedMemoryManager::takeLeafBelow(std::uint64_t offset) {
    std::uint64_t leaf = offset;
    for (int step = 0; step < kMaximumSteps; ++step) {
        const FreeBlock& node = freeBlockAt(leaf);
        const std::uint64_t below = node.child[1] != 0 ? node.child[1] : node.child[0];
        if (below == 0) {
            if (leaf == offset) {
                return 0;
            }
            FreeBlock& parent = freeBlockAt(node.parent);
            parent.child[parent.child[1] == leaf ? 1 : 0] = 0;
            return leaf;
        }
        leaf = below;
    }
    throw CacheDamage{offset, "the tree of free blocks runs in a circle"};
}

/// @param by  takes over parent and children; 0 for none.
void HBXSharedMemoryManager::replaceInTree(std::uint64_t offset, std::uint64_t by) {
    const FreeBlock& block = freeBlockAt(offset);
    if (block.parent == 0) {
        state().freeRoot = by;
    } else {
        FreeBlock& parent = freeBlockAt(block.parent);
        parent.child[parent.child[1] == offset ? 1 : 0] = by;
    }
    if (by == 0) {
        return;
    }
    FreeBlock& heir = freeBlockAt(by);
    heir.parent = block.parent;
    for (int side = 0; side < 2; ++side) {
        heir.child[side] = block.child[side];
        if (heir.child[side] != 0) {
            freeBlockAt(heir.child[side]).parent = by;
        }
    }
}

/// The smallest free block of at least `size` lies on the way down along the bits of `size`, or on the
/// leftmost way below the last right turn that was not taken.
std::uint64_t HBXSharedMemoryManager::findFit(std::uint64_t size) const {
    std::uint64_t best = 0;
    std::uint64_t bestSize = ~std::uint64_t{0};
    std::uint64_t larger = 0;
    const auto consider = [&](std::uint64_t offset) -> const FreeBlock& {
        const FreeBlock& node = freeBlockAt(offset);
        if (node.size() >= size && node.size() < bestSize) {
            best = offset;
            bestSize = node.size();
        }
        return node;
    };
    std::uint64_t at = state().freeRoot;
    for (int bit = topBit(); at != 0 && bestSize != size; --bit) {
        const FreeBlock& node = consider(at);
        if (bit < kLowestBit) {
            break;
        }
        const std::uint64_t side = size >> bit & 1;
        if (side == 0 && node.child[1] != 0) {
            larger = node.child[1];
        }
        at = node.child[side];
    }
    at = bestSize == size ? 0 : larger;
    for (int step = 0; at != 0; ++step) {
        if (step == kMaximumSteps) {
            throw CacheDamage{at, "the tree of free blocks runs in a circle"};
        }
        const FreeBlock& node = consider(at);
        at = node.child[0] != 0 ? node.child[0] : node.child[1];
    }
    return best;
}

// --- taking and giving back ---

HBXSharedMemoryManager::pointer_type HBXSharedMemoryManager::allocate(std::uint64_t size) {
    if (size == 0 || size > state().end - kCacheHeapBegin - kHeadSize) {
        return 0;
    }
    const std::uint64_t wanted = blockSize(size);
    const std::uint64_t offset = findFit(wanted);
    if (offset == 0) {
        return 0;
    }
    Block& block = blockAt(offset);
    Block& following = next(offset, block);
    removeFree(offset);
    const std::uint64_t rest = block.size() - wanted;
    if (rest >= kMinimumBlock) {
        block.sizeAndState = wanted | kUsed;
        *reinterpret_cast<Block*>(base_ + offset + wanted) = Block{rest | kFree, wanted};
        following.previousSize = rest;
        insertFree(offset + wanted);
    } else {
        block.sizeAndState = block.size() | kUsed;
    }
    state().total += block.size();
    ++state().usedCount;
    return offset + kHeadSize;
}

void HBXSharedMemoryManager::free(pointer_type payload) {
    std::uint64_t offset = payload - kHeadSize;
    const Block& block = usedBlockOf(payload);
    const Block* following = &next(offset, block);
    std::uint64_t size = block.size();
    std::uint64_t previousSize = block.previousSize;
    state().total -= size;
    --state().usedCount;
    if (following->isFree()) {
        const std::uint64_t followingOffset = offset + size;
        removeFree(followingOffset);
        size += following->size();
        following = &next(followingOffset, *following);
    }
    if (previousSize != 0) {
        const Block& previous = blockAt(offset - previousSize);
        if (previous.size() != previousSize) {
            throw CacheDamage{offset, "two neighbouring blocks disagree about a size"};
        }
        if (previous.isFree()) {
            offset -= previousSize;
            removeFree(offset);
            size += previousSize;
            previousSize = previous.previousSize;
        }
    }
    *reinterpret_cast<Block*>(base_ + offset) = Block{size | kFree, previousSize};
    reinterpret_cast<Block*>(base_ + offset + size)->previousSize = size;
    insertFree(offset);
}

/// The end mark becomes the head of the new block, and a free block before it takes the new one in.
void HBXSharedMemoryManager::resize(std::uint64_t newSize) {
    const std::uint64_t added = newSize - state().end;
    if (newSize < state().end || added % kAlignment != 0) {
        abort("HBXCore", "core/src/HBXCore/HBXSharedMemoryManager", __LINE__,
              "HBX::HBXSharedMemoryManager::resize", "HBX::HBXSharedMemoryManager::resize");
    }
    if (added < kMinimumBlock) {
        return;
    }
    const std::uint64_t offset = state().end - kHeadSize;
    auto& block = *reinterpret_cast<Block*>(base_ + offset);
    const int bits = topBit();
    state().end = newSize;
    block.sizeAndState = added | kUsed;
    layEnd(added);
    if (bits != topBit()) { // the tree was ordered by other bits
        rebuildTree();
    }
    state().total += added;
    ++state().usedCount;
    free(offset + kHeadSize);
}

std::uint64_t HBXSharedMemoryManager::blockSizeAt(pointer_type payload) const {
    return usedBlockOf(payload).size();
}

// --- checking ---

void HBXSharedMemoryManager::check() const {
    const std::uint64_t last = state().end - kHeadSize;
    std::uint64_t previousSize = 0;
    std::uint64_t used = 0;
    std::uint64_t total = 0;
    std::uint64_t freeCount = 0;
    for (std::uint64_t offset = kCacheHeapBegin; offset != last;) {
        const Block& block = blockAt(offset);
        if (block.previousSize != previousSize || block.size() < kMinimumBlock) {
            throw CacheDamage{offset, "two neighbouring blocks disagree about a size"};
        }
        (block.isUsed() ? used : freeCount) += 1;
        total += block.isUsed() ? block.size() : 0;
        previousSize = block.size();
        offset += block.size();
    }
    if (next(last - previousSize, blockAt(last - previousSize)).size() != kHeadSize) {
        throw CacheDamage{last, "the end mark of the heap is missing"};
    }
    if (total != state().total || used != state().usedCount) {
        throw CacheDamage{0, "the number or the size of the used blocks is wrong"};
    }
    if (checkTree() != freeCount) {
        throw CacheDamage{0, "the tree of free blocks is not complete"};
    }
}

/// @return how many blocks hang in the tree. Walks without memory of its own: down, then up again.
std::uint64_t HBXSharedMemoryManager::checkTree() const {
    std::uint64_t found = 0;
    std::uint64_t from = 0;
    const std::uint64_t most = state().end / kMinimumBlock;
    for (std::uint64_t at = state().freeRoot, steps = 0; at != 0; ++steps) {
        const FreeBlock& node = freeBlockAt(at);
        if (steps > 4 * most) {
            throw CacheDamage{at, "the tree of free blocks runs in a circle"};
        }
        if (from == node.parent) {
            for (const std::uint64_t child : node.child) {
                if (child != 0 && freeBlockAt(child).parent != at) {
                    throw CacheDamage{at, "the tree of free blocks disagrees about a parent"};
                }
            }
            std::uint64_t ring = at;
            do {
                const FreeBlock& member = freeBlockAt(ring);
                if (++found > most || member.size() != node.size()) {
                    throw CacheDamage{ring, "a ring of free blocks is damaged"};
                }
                ring = member.ringNext;
            } while (ring != at);
        }
        std::uint64_t to = node.parent;
        if (from == node.parent && node.child[0] != 0) {
            to = node.child[0];
        } else if (from != node.child[1] && node.child[1] != 0) {
            to = node.child[1];
        }
        from = at;
        at = to;
    }
    return found;
}

} // namespace HBX
