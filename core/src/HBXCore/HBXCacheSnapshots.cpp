#include <HBXCore/HBXCacheLogicBase.h>

#include <algorithm>
#include <utility>

#include <HBXCore/HBXCacheList.h>
#include <HBXCore/internal/CacheMerge.h>
#include <HBXCore/internal/CacheOperation.h>
#include <HBXCore/internal/CacheSizes.h>
#include <HBXCore/internal/ForkGuard.h>

// The states of a cache: which one is current, and who holds which.

namespace HBX {

using internal::CacheDamage;
using internal::CacheView;
using namespace internal::code;

// --- snapshots ---

std::uint64_t HBXCacheLogicBase::getWritableSnapshot(eSnapshotHint hint, Storage& storage) {
    const auto current = [&]() -> HBXSnapshotHead& { return view().snapshotAt(head().snapshot); };
    if (current().references < 1) {
        throw CacheDamage{head().snapshot, "a count of references is below 1"};
    }
    reclaimIfHeld(storage);
    const HBXSnapshotHead& snapshot = current();
    const bool hasRoom = snapshot.tail() < HBXSnapshotHead::kMaximumTail &&
                         snapshot.count() < snapshot.capacity &&
                         snapshot.removed <= snapshot.count() / 4 + 64;
    return snapshot.references == 1 && (hint == shKeep || hasRoom) ? head().snapshot
                                                                   : replaceSnapshot(storage);
}

/// @return the new current snapshot, all sorted; 0 when there is no room for it.
std::uint64_t HBXCacheLogicBase::replaceSnapshot(Storage& storage) {
    const std::uint64_t old = head().snapshot;
    const HBXSnapshotHead& before = view().snapshotAt(old);
    const auto count = static_cast<std::uint32_t>(before.count());
    const std::uint32_t capacity =
        internal::snapshotCapacity(before.capacity, count - std::min(before.removed, count));
    const std::uint64_t made = allocate(storage, CacheView::snapshotSize(capacity));
    if (made == 0) {
        return 0;
    }
    fillSnapshot(old, made, capacity);
    HBXSnapshotHead& replaced = view().snapshotAt(old);
    const bool held = replaced.references > 1;
    if (held) {
        raiseValueCounts(made);
    }
    commit(head().snapshot, made);
    if (held) {
        --replaced.references;
        reclaimResting(storage); // a list that came to rest meanwhile may not have seen the new snapshot
    } else {
        storage.manager->heap().free(old); // the new one takes over its counts
    }
    return made;
}

void HBXCacheLogicBase::fillSnapshot(std::uint64_t from, std::uint64_t to, std::uint32_t capacity) {
    HBXSnapshotHead& source = view().snapshotAt(from);
    auto& made = *reinterpret_cast<HBXSnapshotHead*>(known_.base + to);
    made = HBXSnapshotHead{1, capacity, 0, source.sequence + 1, HBXSnapshotHead::kMagic, 0, {}};
    made.lengths = internal::mergeLiveEntries(source, CacheView::entriesOf(made), capacity);
}

void HBXCacheLogicBase::raiseValueCounts(std::uint64_t snapshot) {
    constexpr std::uint32_t kAhead = 24; // values lie anywhere in memory
    const CacheView content = view();
    HBXSnapshotHead& holder = content.snapshotAt(snapshot);
    const HBXCacheEntry* entries = CacheView::entriesOf(holder);
    for (std::uint32_t i = 0; i < holder.sorted(); ++i) {
        if (i + kAhead < holder.sorted()) {
            const std::uint64_t ahead = std::min(entries[i + kAhead].value, known_.size);
            __builtin_prefetch(known_.base + ahead, 1);
        }
        ++content.valueAt(entries[i].value).references;
    }
}

/// All of a file is always mapped.
bool HBXCacheLogicBase::isSnapshotMemoryAccessible(std::uint64_t, const Storage&) { return true; }

/// @return the snapshot, noted as held; 0 when there is no room to note it.
std::uint64_t HBXCacheLogicBase::acquireSnapshot(Storage& storage, internal::SidecarPin*& pin) {
    std::uint64_t offset = head().snapshot;
    HBXSnapshotHead* current = &view().snapshotAt(offset);
    if (current->references < 1) {
        throw CacheDamage{offset, "a count of references is below 1"};
    }
    if (current->tail() > 0 && current->references == 1) {
        const std::uint64_t sorted = replaceSnapshot(storage);
        offset = sorted != 0 ? sorted : offset;
        current = &view().snapshotAt(offset);
    }
    HBXMemoryMappedFile& file = storage.manager->file();
    pin = isSnapshotMemoryAccessible(offset, storage) ? file.attachment().addPin(file.generation(), offset)
                                                      : nullptr;
    if (pin == nullptr) {
        return 0;
    }
    ++current->references;
    return offset;
}

void HBXCacheLogicBase::releaseSnapshot(std::uint64_t snapshot, Storage& storage, std::uint32_t lists) {
    HBXSnapshotHead& released = view().snapshotAt(snapshot);
    if (released.references < 1 || static_cast<std::uint32_t>(released.references) < lists) {
        throw CacheDamage{snapshot, "a count of references is below 1"};
    }
    released.references -= static_cast<std::int32_t>(lists);
    if (released.references == 0) {
        freeSnapshot(storage, snapshot);
    }
}

void HBXCacheLogicBase::freeSnapshot(Storage& storage, std::uint64_t snapshot) {
    HBXSnapshotHead& released = view().snapshotAt(snapshot);
    const HBXCacheEntry* entries = CacheView::entriesOf(released);
    for (std::uint64_t i = 0; i < released.count(); ++i) {
        if (entries[i].value != 0) {
            releaseValue(storage, entries[i].value);
        }
    }
    storage.manager->heap().free(snapshot);
}

void HBXCacheLogicBase::releasePin(Storage& storage, const internal::SidecarPin& pin) {
    if (pin.generation == storage.manager->file().generation()) {
        releaseSnapshot(pin.snapshot, storage, pin.holder.references());
    }
}

void HBXCacheLogicBase::reclaimResting(Storage& storage) {
    storage.manager->file().attachment().reclaimResting(
        [&](const internal::SidecarPin& pin) { releasePin(storage, pin); });
}

void HBXCacheLogicBase::reclaimDead(Storage& storage) {
    storage.manager->file().attachment().reclaimDead(
        [&](const internal::SidecarPin& pin) { releasePin(storage, pin); });
}

/// A copy costs more than to ask whether the holders read, and whether they live.
void HBXCacheLogicBase::reclaimIfHeld(Storage& storage) {
    const auto isHeld = [&] { return view().snapshotAt(head().snapshot).references > 1; };
    if (isHeld()) {
        reclaimResting(storage);
    }
    if (isHeld()) {
        reclaimDead(storage);
    }
}

// --- lists ---

void HBXCacheLogicBase::openList(HBXCacheList& list) {
    locked([&](Storage& storage) { return fillList(storage, list); });
}

int HBXCacheLogicBase::fillList(Storage& storage, HBXCacheList& list) {
    if (openLists_ >= sizes_.maximumLists) {
        return kFailed;
    }
    const std::uint64_t offset = acquireSnapshot(storage, list.pin_);
    if (offset == 0) {
        return kFailed;
    }
    HBXSnapshotHead& snapshot = view().snapshotAt(offset);
    const HBXCacheEntry* entries = CacheView::entriesOf(snapshot);
    list.begin_ = entries;
    list.end_ = entries + snapshot.sorted();
    if (snapshot.tail() > 0) {
        list.sorted_ = std::make_unique<std::vector<HBXCacheEntry>>(snapshot.count());
        const std::uint32_t count = internal::mergeLiveEntries(snapshot, list.sorted_->data(),
                                                               static_cast<std::uint32_t>(snapshot.count()));
        list.begin_ = list.sorted_->data();
        list.end_ = list.begin_ + count;
    }
    list.manager_ = storage.manager;
    list.base_ = known_.base;
    list.size_ = known_.size;
    list.snapshot_ = offset;
    list.ticket_ = storage.manager->file().attachment().newTicket();
    ++openLists_;
    ++storage.manager->openLists;
    return 0;
}

/// Brings a list to rest that nobody reads any more: it keeps its snapshot, and whoever next wants a list
/// gets it, all without the lock. A writer ends the rest before anything else. @return false: it must be
/// closed.
bool HBXCacheLogicBase::restList(HBXCacheList& list) {
    if (list.pin_ == nullptr || list.sorted_ != nullptr || list.fork_ != internal::forkNumber() ||
        !list.manager_->file().attachment().rest(*list.pin_, list.ticket_)) {
        return false;
    }
    HBXCacheList* none = nullptr;
    if (showsPresent(list) && resting_.compare_exchange_strong(none, &list)) {
        return true; // and may be gone, with its cache
    }
    wakeList(list);
    return false;
}

/// Holds the snapshot again, unless the rest was ended.
bool HBXCacheLogicBase::wakeList(HBXCacheList& list) {
    if (list.fork_ != internal::forkNumber()) {
        return false;
    }
    if (!list.manager_->file().attachment().takeUp(*list.pin_, list.ticket_)) {
        list.pin_ = nullptr;
        return false;
    }
    return true;
}

HBXCacheList* HBXCacheLogicBase::takeUpList() {
    HBXCacheList* list = resting_.load(std::memory_order_relaxed);
    if (list == nullptr || list == noList() || !resting_.compare_exchange_strong(list, nullptr)) {
        return nullptr;
    }
    if (wakeList(*list) && memory_.load(std::memory_order_acquire) == list->base_ && showsPresent(*list)) {
        list->manager_->file().attachment().notePinTime(*list->pin_);
        return list;
    }
    delete list;
    return nullptr;
}

/// Nobody changes a snapshot that is held, so while it is the current one it is the present.
bool HBXCacheLogicBase::showsPresent(const HBXCacheList& list) {
    const HBXMemoryMappedFile& file = list.manager_->file();
    HBXCacheHead& head = internal::headOf(const_cast<char*>(list.base_));
    return std::atomic_ref(head.snapshot).load() == list.snapshot_ && !file.isOutdated() &&
           !file.isDamaged() && internal::readValidFlag(list.base_);
}

/// The last owner is gone, and with the last list the object goes. Without the lock nobody can tell which is
/// the last, so then it stays for good; anybody can end the rest of its list.
void HBXCacheLogicBase::endUnlessListed() {
    HBXCacheList* const resting = resting_.exchange(noList());
    if (gate_ != nullptr && gate_->file().lock(false) != 0) {
        logUnableToLock();
        return;
    }
    onlyLists_ = openLists_ > 0 && fork_ == internal::forkNumber();
    const bool listed = onlyLists_;
    if (gate_ != nullptr) {
        gate_->file().unlock();
    }
    if (resting != nullptr) {
        wakeList(*resting);
        delete resting; // and perhaps this object
    }
    if (!listed) {
        delete this;
    }
}

/// A list over a file that was replaced meanwhile has nothing to give back but its row in the table.
void HBXCacheLogicBase::closeList(HBXCacheList& list) {
    HBXMappedMemoryManager& manager = *list.manager_;
    Storage storage;
    bool isCurrent = lock(storage) == 0;
    if (isCurrent && !manager_->file().isSameFile(manager.file())) {
        unlock(storage);
        isCurrent = false;
    }
    if (!isCurrent && manager.file().lock(false) == 0) { // may be another lock than ours
        dropPin(list);
        manager.file().unlock();
    }
    if (!isCurrent && gate_->file().lock(false) != 0) {
        return;
    }
    boost::intrusive_ptr<HBXMappedMemoryManager> retired; // ends after the unlocking
    if (--manager.openLists == 0 && &manager != manager_.get()) {
        retired.reset(&manager, false);
    }
    const bool last = --openLists_ == 0 && onlyLists_;
    if (isCurrent) {
        giveBack(storage, list);
        unlock(storage);
    } else {
        gate_->file().unlock();
    }
    if (last) {
        delete this;
    }
}

void HBXCacheLogicBase::dropPin(HBXCacheList& list) {
    if (list.pin_ != nullptr) {
        list.manager_->file().attachment().dropPin(*list.pin_);
    }
}

void HBXCacheLogicBase::giveBack(Storage& storage, HBXCacheList& list) {
    dropPin(list);
    bool released = list.pin_ == nullptr;
    repairing(storage, [&](Storage& held) {
        if (!std::exchange(released, true)) { // a repair counts without our row already
            releaseSnapshot(list.snapshot_, held, 1);
        }
        return 0;
    });
}

} // namespace HBX
