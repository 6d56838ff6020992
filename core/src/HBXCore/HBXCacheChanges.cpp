#include <HBXCore/HBXCacheLogicBase.h>

#include <cstdlib>
#include <cstring>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCore/internal/CacheOperation.h>
#include <HBXCore/internal/CacheSizes.h>

// Values in and out of a cache, and the space for them.

namespace HBX {

using internal::CacheDamage;
using internal::CacheView;
using namespace internal::code;

/// The store by which a change takes effect: all that it needs is written before it.
void HBXCacheLogicBase::commit(std::uint64_t& word, std::uint64_t value) {
    if (known_.agreed->clean != 0) {
        manager_->file().attachment().clearCleanMark();
    }
    std::atomic_ref(word).store(value, std::memory_order_release);
}

void HBXCacheLogicBase::countChange() {
    const std::atomic_ref changes(known_.agreed->changes); // watchers read it without the lock
    changes.store(changes.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

int HBXCacheLogicBase::putBytes(const void* key, const void* record, std::size_t length) {
    return locked([&](Storage& storage) { return put(storage, key, record, length); });
}

int HBXCacheLogicBase::put(Storage& storage, const void* key, const void* record, std::size_t length) {
    const std::uint64_t value = storeValue(storage, record, length);
    if (value == 0) {
        return kFailed;
    }
    const HBXCacheKey wanted(key);
    const std::uint64_t before = head().snapshot;
    const HBXCacheEntry* known = CacheView::arrayOf(view().snapshotAt(before)).find(wanted);
    const std::uint64_t offset = getWritableSnapshot(known != nullptr ? shKeep : shGrow, storage);
    if (offset == 0) {
        storage.manager->heap().free(value);
        return kFailed;
    }
    HBXSnapshotHead& snapshot = view().snapshotAt(offset);
    HBXCacheEntry* entries = CacheView::entriesOf(snapshot);
    if (known != nullptr && offset != before) {
        known = CacheView::arrayOf(snapshot).find(wanted); // a copy has no removed ones
    }
    if (known != nullptr) {
        HBXCacheEntry& entry = entries[known - entries];
        const std::uint64_t old = entry.value;
        commit(entry.value, value);
        old != 0 ? releaseValue(storage, old) : void(--snapshot.removed);
    } else {
        appendEntry(snapshot, key, value);
    }
    countChange();
    return 0;
}

/// Behind the last key of an all sorted snapshot the run itself becomes longer.
void HBXCacheLogicBase::appendEntry(HBXSnapshotHead& snapshot, const void* key, std::uint64_t value) {
    HBXCacheEntry* end = CacheView::entriesOf(snapshot) + snapshot.count();
    if (snapshot.count() == snapshot.capacity) {
        throw CacheDamage{head().snapshot, "a new snapshot has no room"};
    }
    std::memcpy(end->key, key, sizeof end->key);
    end->value = value;
    const bool ascends =
        snapshot.tail() == 0 && (snapshot.sorted() == 0 || HBXCacheKey(end[-1].key) < HBXCacheKey(key));
    commit(snapshot.lengths, HBXSnapshotHead::joinLengths(snapshot.sorted() + (ascends ? 1U : 0U),
                                                          snapshot.tail() + (ascends ? 0U : 1U)));
}

int HBXCacheLogicBase::removeKey(const void* key) {
    return locked([&](Storage& storage) { return remove(storage, key); });
}

int HBXCacheLogicBase::remove(Storage& storage, const void* key) {
    const HBXCacheKey wanted(key);
    const HBXCacheEntry* known = CacheView::arrayOf(view().snapshotAt(head().snapshot)).find(wanted);
    if (known == nullptr || known->value == 0) {
        return 0;
    }
    const std::uint64_t offset = getWritableSnapshot(shKeep, storage);
    if (offset == 0) {
        return kFailed;
    }
    HBXSnapshotHead& snapshot = view().snapshotAt(offset);
    HBXCacheEntry* entries = CacheView::entriesOf(snapshot);
    HBXCacheEntry& entry = entries[CacheView::arrayOf(snapshot).find(wanted) - entries];
    const std::uint64_t old = entry.value;
    commit(entry.value, 0);
    ++snapshot.removed;
    releaseValue(storage, old);
    countChange();
    return 0;
}

void* HBXCacheLogicBase::copyBytes(const void* key) {
    void* copy = nullptr;
    const int result = locked([&](Storage&) {
        const CacheView content = view();
        const HBXCacheEntry* entry =
            CacheView::arrayOf(content.snapshotAt(head().snapshot)).find(HBXCacheKey(key));
        if (entry == nullptr || entry->value == 0) {
            return 0;
        }
        content.prefetchValue(entry->value);
        std::size_t length = 0;
        const HBXCachedItem& value = content.valueAt(entry->value, length);
        copy = std::calloc(1, length);
        if (copy != nullptr) {
            std::memcpy(copy, &value, length);
            *static_cast<HBXCachedItem*>(copy) = HBXCachedItem();
        }
        return 0;
    });
    if (result != 0) { // the file may have ended under our hands
        std::free(copy);
        return nullptr;
    }
    return copy;
}

// --- space ---

std::uint64_t HBXCacheLogicBase::allocate(Storage& storage, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    std::uint64_t offset = storage.manager->heap().allocate(size);
    if (offset == 0) {
        reclaimResting(storage);
        reclaimDead(storage);
        offset = storage.manager->heap().allocate(size);
    }
    while (offset == 0 && growFor(storage, size)) {
        offset = storage.manager->heap().allocate(size);
    }
    if (offset != 0) {
        storage.manager->prepareBlock(known_.base + offset, size);
    }
    return offset;
}

bool HBXCacheLogicBase::growFor(Storage& storage, std::size_t size) {
    const std::size_t present = storage.manager->file().getSize();
    const std::size_t limit = sizes_.maximumFileSize;
    const bool fits = size <= limit && HBXSharedMemoryManager::blockSize(size) + kCacheHeapBegin <= limit;
    const std::size_t target =
        fits ? internal::grownFileSize(present, size, HBXMemoryMappedFile::getMemoryPageSize()) : 0;
    if (!fits || target > limit) {
        setErrorMessage("Cache file \"" + name_ + "\" would exceed its maximum of " + std::to_string(limit) +
                        " bytes");
        return false;
    }
    if (target > storage.manager->file().getMappedSize() && remapTo(storage, target, protect_) != 0) {
        return false;
    }
    if (storage.manager->grow(target) != 0) {
        return false;
    }
    look(storage);
    storage.manager->heap().resize(target);
    return true;
}

std::uint64_t HBXCacheLogicBase::storeValue(Storage& storage, const void* record, std::size_t length) {
    const std::uint64_t offset = allocate(storage, length);
    if (offset != 0) {
        char* value = known_.base + offset;
        std::memcpy(value + sizeof(HBXCachedItem), static_cast<const char*>(record) + sizeof(HBXCachedItem),
                    length - sizeof(HBXCachedItem));
        *reinterpret_cast<HBXCachedItem*>(value) = HBXCachedItem{1, 0};
    }
    return offset;
}

void HBXCacheLogicBase::releaseValue(Storage& storage, std::uint64_t offset) {
    HBXCachedItem& value = view().valueAt(offset);
    if (value.references < 1) {
        throw CacheDamage{offset, "a count of references is below 1"};
    }
    if (--value.references == 0) {
        storage.manager->heap().free(offset);
    }
}

} // namespace HBX
