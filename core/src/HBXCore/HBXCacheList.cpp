#include <HBXCore/HBXCacheList.h>

#include <HBXCore/HBXCacheLogicBase.h>
#include <HBXCore/HBXFlatSortedArray.h>
#include <HBXCore/internal/ForkGuard.h>

namespace HBX {

HBXCacheList::HBXCacheList(HBXCacheLogicBase& cache) : cache_(cache), fork_(internal::forkNumber()) {
    cache_.openList(*this);
}

/// A forked child has the object but not the snapshot, which the parent still holds.
HBXCacheList::~HBXCacheList() {
    if (holdsSnapshot() && fork_ == internal::forkNumber()) {
        cache_.closeList(*this);
    }
}

/// The last owner is gone.
void HBXCacheList::close() {
    references_.store(1, std::memory_order_relaxed); // the next owner
    if (!holdsSnapshot() || !cache_.restList(*this)) {
        delete this;
    }
}

const HBXCacheEntry* HBXCacheList::findEntry(const void* key) const {
    const HBXFlatSortedArray array(begin_, static_cast<std::uint32_t>(end_ - begin_), 0);
    const HBXCacheEntry* entry = array.find(HBXCacheKey(key));
    return entry != nullptr && entry->value != 0 ? entry : nullptr;
}

} // namespace HBX
