#include <HBXCore/HBXCacheStatus.h>

#include <set>

#include <HBXCore/internal/CacheOperation.h>

namespace HBX {

using internal::CacheView;

std::size_t HBXCacheLogicBase::getAchiveableSize() {
    HBXCacheStatus status;
    return getStatus(status) == 0 ? status.achievableSize : 0;
}

std::size_t HBXCacheLogicBase::getTotalAllocatedSize() {
    std::size_t total = 0;
    locked([&](Storage& storage) {
        total = storage.manager->heap().totalAllocated();
        return 0;
    });
    return total;
}

std::uint64_t HBXCacheLogicBase::getChangeCount() {
    return isAccessible()
               ? std::atomic_ref(gate_->file().attachment().head().changes).load(std::memory_order_relaxed)
               : 0;
}

int HBXCacheLogicBase::getStatus(HBXCacheStatus& status) {
    return locked([&](Storage& storage) {
        reclaimResting(storage);
        reclaimDead(storage);
        return describe(storage, status);
    });
}

int HBXCacheLogicBase::describe(Storage& storage, HBXCacheStatus& status) {
    HBXMemoryMappedFile& file = storage.manager->file();
    const HBXSharedMemoryManager heap = storage.manager->heap();
    const std::uint64_t current = head().snapshot;
    HBXSnapshotHead& snapshot = view().snapshotAt(current);
    status = HBXCacheStatus();
    status.fileSize = file.getSize();
    status.allocated = heap.totalAllocated();
    status.achievableSize = heap.blockSizeAt(current) + kCacheHeapBegin;
    const HBXCacheEntry* entries = CacheView::entriesOf(snapshot);
    for (std::uint64_t i = 0; i < snapshot.count(); ++i) {
        if (entries[i].value != 0) {
            ++status.entries;
            status.achievableSize += heap.blockSizeAt(entries[i].value);
        }
    }
    const internal::CacheAttachment& attachment = file.attachment();
    status.changes = attachment.tables().head.changes;
    status.generation = file.generation();
    std::set<std::uint64_t> snapshots{current};
    attachment.forEachPin([&](const internal::SidecarPin& pin) {
        const internal::SidecarHolder holder = pin.holder;
        if (pin.generation == file.generation() && holder.lists() > 0) {
            snapshots.insert(pin.snapshot);
            const std::uint32_t pid = attachment.tables().attachments[holder.attachment() - 1].pid;
            status.holders.push_back({pid, pin.snapshot, pin.snapshot == current, holder.lists(), pin.since});
        }
    });
    status.snapshots = snapshots.size();
    for (const internal::SidecarAttachment& process : attachment.tables().attachments) {
        if (process.inUse != 0) {
            status.processes.push_back({process.pid, process.since});
        }
    }
    return 0;
}

} // namespace HBX
