#include <HBXCore/internal/CacheAudit.h>

#include <algorithm>

#include <HBXCore/HBXSharedMemoryManager.h>

namespace HBX::internal {

CacheAudit::CacheAudit(char* base, const CacheView& view, const std::vector<CacheRoot>& roots)
    : base_(base), view_(view) {
    for (const CacheRoot& root : roots) {
        addSnapshot(root);
    }
    std::sort(pieces_.begin(), pieces_.end(),
              [](const Piece& a, const Piece& b) { return a.offset < b.offset; });
    joinShared();
    checkApart();
}

void CacheAudit::addSnapshot(const CacheRoot& root) {
    HBXSnapshotHead& snapshot = view_.snapshotAt(root.offset);
    checkOrder(snapshot, root.offset);
    pieces_.push_back({root.offset, CacheView::snapshotSize(snapshot.capacity), root.references, true});
    const HBXCacheEntry* entries = CacheView::entriesOf(snapshot);
    pieces_.reserve(pieces_.size() + snapshot.count());
    for (const HBXCacheEntry* entry = entries; entry != entries + snapshot.count(); ++entry) {
        if (entry->value == 0) {
            continue;
        }
        std::size_t length = 0;
        const HBXCachedItem& value = view_.valueAt(entry->value, length);
        if (view_.keyOf(value) != HBXCacheKey(entry->key)) {
            throw CacheDamage{entry->value, "a value belongs to another key"};
        }
        pieces_.push_back({entry->value, length, 1, false});
    }
}

void CacheAudit::checkOrder(HBXSnapshotHead& snapshot, std::uint64_t offset) {
    const HBXCacheEntry* entries = CacheView::entriesOf(snapshot);
    for (std::uint32_t i = 1; i < snapshot.sorted(); ++i) {
        if (HBXCacheKey(entries[i - 1].key) >= HBXCacheKey(entries[i].key)) {
            throw CacheDamage{offset, "the keys of a snapshot are out of order"};
        }
    }
    for (std::uint32_t i = 0; i < snapshot.tail(); ++i) {
        const HBXFlatSortedArray before(entries, snapshot.sorted(), i);
        if (before.find(HBXCacheKey(entries[snapshot.sorted() + i].key)) != nullptr) {
            throw CacheDamage{offset, "a key stands twice in a snapshot"};
        }
    }
}

/// Values that several snapshots hold become one piece.
void CacheAudit::joinShared() {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        const bool same = kept > 0 && pieces_[kept - 1].offset == pieces_[i].offset;
        if (same && (pieces_[i].isSnapshot || pieces_[kept - 1].isSnapshot)) {
            throw CacheDamage{pieces_[i].offset, "a snapshot and a value lie at the same place"};
        }
        if (same) {
            pieces_[kept - 1].references += pieces_[i].references;
        } else {
            pieces_[kept++] = pieces_[i];
        }
    }
    pieces_.resize(kept);
    for (const Piece& piece : pieces_) {
        valueCount_ += piece.isSnapshot ? 0 : 1;
        valueBytes_ += piece.isSnapshot ? 0 : HBXSharedMemoryManager::blockSize(piece.size);
    }
}

void CacheAudit::checkApart() const {
    std::uint64_t reached = kCacheHeapBegin;
    for (const Piece& piece : pieces_) {
        const std::uint64_t begin = piece.offset - HBXSharedMemoryManager::kHeadSize;
        if (begin < reached) {
            throw CacheDamage{piece.offset, "two blocks overlap"};
        }
        reached = begin + HBXSharedMemoryManager::blockSize(piece.size);
    }
    if (reached > view_.size() - HBXSharedMemoryManager::kHeadSize) {
        throw CacheDamage{reached, "a block reaches beyond the end of the file"};
    }
}

std::int32_t& CacheAudit::countOf(const Piece& piece) const {
    return *reinterpret_cast<std::int32_t*>(base_ + piece.offset); // both heads begin with it
}

void CacheAudit::rebuild() {
    HBXSharedMemoryManager heap(base_);
    heap.beginRebuild(view_.size());
    for (const Piece& piece : pieces_) {
        countOf(piece) = static_cast<std::int32_t>(piece.references);
        if (piece.isSnapshot) {
            HBXSnapshotHead& snapshot = view_.snapshotAt(piece.offset);
            const HBXCacheEntry* entries = CacheView::entriesOf(snapshot);
            snapshot.removed = static_cast<std::uint32_t>(
                std::count_if(entries, entries + snapshot.count(),
                              [](const HBXCacheEntry& entry) { return entry.value == 0; }));
        }
        heap.layUsed(piece.offset, piece.size);
    }
    heap.finishRebuild();
}

void CacheAudit::check() const {
    const HBXSharedMemoryManager heap(base_);
    if (heap.end() != view_.size()) {
        throw CacheDamage{0, "the heap ends elsewhere than the file"};
    }
    heap.check();
    std::uint64_t total = 0;
    for (const Piece& piece : pieces_) {
        total += heap.blockSizeAt(piece.offset);
        if (countOf(piece) != static_cast<std::int32_t>(piece.references)) {
            throw CacheDamage{piece.offset, "a count of references is wrong"};
        }
    }
    if (total != heap.totalAllocated()) {
        throw CacheDamage{0, "space is in use that nothing refers to"};
    }
}

} // namespace HBX::internal
