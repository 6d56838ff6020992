#include <HBXCore/HBXCacheLogicBase.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>
#include <set>
#include <utility>

#include <HBXCommon/HBXAbort.h>
#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>
#include <HBXCommon/HBXLog.h>
#include <HBXCore/HBXCacheList.h>
#include <HBXCore/internal/CacheAttachment.h>
#include <HBXCore/internal/CacheAudit.h>
#include <HBXCore/internal/CacheHeader.h>
#include <HBXCore/internal/CacheMerge.h>
#include <HBXCore/internal/CacheSizes.h>
#include <HBXCore/internal/CacheView.h>
#include <HBXCore/internal/ForkGuard.h>

namespace HBX {

using internal::CacheDamage;
using internal::CacheView;

namespace {

constexpr const char* kModule = "HBXFunctionalityCore"; // where the one kind of cache is made
constexpr const char* kSource = "core/src/HBXCore/HBXCacheLogic";
constexpr const char* kInitialize = "HBX::HBXCacheLogic<struct HBX::HBXEID,struct HBX::HBXEnvCoreBasic,class "
                                    "HBX::HBXMappedMemoryManager>::initialize";
constexpr const char* kDestructor = "HBX::HBXCacheLogic<struct HBX::HBXEID,struct HBX::HBXEnvCoreBasic,class "
                                    "HBX::HBXMappedMemoryManager>::~HBXCacheLogic";
constexpr const char* kOperation = "HBX::HBXCacheLogic<struct HBX::HBXEID,struct HBX::HBXEnvCoreBasic,class "
                                   "HBX::HBXMappedMemoryManager>::lock";

constexpr int kFailed = -1;
constexpr int kNotMapped = -2;
constexpr int kNoSnapshot = -8;
constexpr int kNotLocked = -9;
constexpr int kNotRemapped = -10;
constexpr int kAbandoned = -14;

constexpr int kMapAttempts = 100;
constexpr std::uint64_t kAlignmentMask = ~(HBXSharedMemoryManager::kAlignment - 1);

/// What was waited for in vain is not waited for again: the holder of a lock may be stopped for good.
template <class Attempt>
int attemptOften(Attempt attempt) {
    for (int i = 0; i < kMapAttempts; ++i) {
        errno = 0;
        if (attempt() == 0) {
            return 0;
        }
        if (errno == ETIMEDOUT) {
            return -1;
        }
        schedYield();
    }
    return -1;
}

} // namespace

HBXCacheLogicBase::HBXCacheLogicBase(std::string name, const HBXCacheFormat& format,
                                     const HBXCacheSizes& sizes)
    : name_(std::move(name)), format_(format), sizes_(sizes), fork_(internal::forkNumber()) {}

HBXCacheLogicBase::~HBXCacheLogicBase() {
    if (!isAccessible()) {
        return;
    }
    if (gate_->lock() != 0) {
        logUnableToLock();
        return;
    }
    Storage storage;
    forget(storage);
    gate_->file().unlock();
}

void HBXCacheLogicBase::logUnableToLock() {
    Log2(kModule, kSource, __LINE__, kDestructor, kDestructor)
        .put("CacheLogic::~CacheLogic was unable to lock cache file");
}

// --- opening ---

int HBXCacheLogicBase::initialize(bool keepWritable, bool invalidateOnFailure) {
    protect_ = false;
    if (openMapping() != 0) {
        return kNotMapped;
    }
    Storage storage;
    storage.manager = manager_.get();
    if (gate_->lock() != 0) {
        manager_->file().abandon();
        forget(storage);
        gate_ = nullptr; // nobody can have a list yet, so the end of the object need not wait for the lock
        return kNotLocked;
    }
    int result = kFailed;
    try {
        look(storage);
        result = prepare(storage);
    } catch (const CacheDamage& damage) {
        logDamage(damage);
        result = kNoSnapshot;
    } catch (const std::bad_alloc&) {
        result = kFailed;
    }
    if (result != 0 && manager_ != nullptr) {
        if (invalidateOnFailure) {
            manager_->file().abandon();
        }
        forget(storage);
    }
    protect_ = result == 0 && !keepWritable;
    unlock(storage);
    return result;
}

int HBXCacheLogicBase::openMapping() {
    manager_ = nullptr;
    memory_ = nullptr;
    const std::size_t size = internal::initialFileSize(HBXMemoryMappedFile::getMemoryPageSize());
    boost::intrusive_ptr<HBXMappedMemoryManager> opened;
    const auto attempt = [&] {
        opened = newManager();
        return opened->map(size);
    };
    if (attemptOften(attempt) != 0) {
        return -1;
    }
    gate_ = manager_ = opened;
    memory_ = opened->memory();
    return 0;
}

int HBXCacheLogicBase::prepare(Storage& storage) {
    HBXMemoryMappedFile& file = manager_->file();
    if (file.isOutdated()) { // replaced while we waited for the lock: nothing of ours is to be marked
        forget(storage);
        return kAbandoned;
    }
    if (internal::isNewCache(manager_->memory(), format_)) {
        return buildFile(storage);
    }
    if (const int code = internal::validateHeader(manager_->memory(), format_); code != 0) {
        return code;
    }
    if (needsRecovery() && recover(storage) != 0) {
        return kNoSnapshot;
    }
    if (const int code = unsafe_checkSize(storage); code != 0) {
        return code;
    }
    reclaimDead(storage);
    return tryCurrentSnapshot(storage);
}

/// The valid flag comes last: a file that was built in part is still new, or refused.
int HBXCacheLogicBase::buildFile(Storage& storage) {
    internal::SidecarHead& agreed = *known_.agreed;
    agreed.fileSize = manager_->file().getStoredSize() & kAlignmentMask;
    look(storage);
    internal::writeConstants(known_.base, format_);
    manager_->heap().create(kCacheHeaderSize, agreed.fileSize);
    const std::uint64_t offset = allocate(storage, kSnapshotSize);
    if (offset == 0) {
        return kFailed;
    }
    HBXSnapshotHead empty{1, 0, 0, 1, HBXSnapshotHead::kMagic, 0, {}};
    std::memcpy(manager_->memory() + offset, &empty, kSnapshotSize);
    commit(head().snapshot, offset);
    std::atomic_thread_fence(std::memory_order_release);
    internal::writeValidFlag(manager_->memory(), true);
    agreed.rebuild = 0;
    return 0;
}

int HBXCacheLogicBase::tryCurrentSnapshot(Storage& storage) {
    const std::uint64_t offset = head().snapshot;
    if (offset == 0) {
        return kNoSnapshot;
    }
    HBXSnapshotHead* snapshot = &view().snapshotAt(offset);
    if (snapshot->references < 1) {
        if (recover(storage) != 0) {
            return kNoSnapshot;
        }
        snapshot = &view().snapshotAt(offset);
    }
    if (++snapshot->references <= 1) {
        abort(kModule, kSource, 745, kInitialize, kInitialize);
    }
    --snapshot->references;
    manager_->file().syncMemory();
    return 0;
}

int HBXCacheLogicBase::reinit() {
    Storage storage;
    if (gate_ == nullptr || gate_->lock() != 0) {
        memory_ = nullptr;
        return 0;
    }
    forget(storage);
    gate_->file().unlock();
    return 0;
}

void HBXCacheLogicBase::forget(Storage& storage) {
    memory_ = nullptr;
    retire(storage);
}

/// Lists that read the mapping keep it until the last of them is closed.
void HBXCacheLogicBase::retire(Storage& storage) {
    if (manager_ != nullptr && manager_->openLists > 0) {
        intrusive_ptr_add_ref(manager_.get());
    }
    storage.retired = std::move(manager_);
}

/// The file holds nonsense, or less than it should: nobody is to use it any more.
int HBXCacheLogicBase::giveUp(Storage& storage, int code) {
    HBXMemoryMappedFile& file = storage.manager->file();
    file.abandon();
    file.attachment().raiseGeneration();
    const bool cutOff = file.isDamaged(); // where the file has ended all seems to be zero
    forget(storage);
    return cutOff ? kNoSnapshot : code;
}

bool HBXCacheLogicBase::isLinked() { return gate_ != nullptr && gate_->file().isLinked(); }

// --- the lock ---

int HBXCacheLogicBase::lock(Storage& storage) {
    if (gate_ == nullptr) {
        return kFailed;
    }
    if (gate_->lock() != 0) {
        return kNotLocked;
    }
    storage.manager = manager_.get();
    const int code = storage.manager == nullptr ? kFailed : checkState(storage);
    if (code != 0) {
        unlock(storage);
        storage = Storage();
    }
    return code;
}

void HBXCacheLogicBase::unlock(Storage& storage) {
    if (protect_ && storage.manager != nullptr && manager_ != nullptr) {
        storage.manager->file().protectMemory(true);
    }
    gate_->file().unlock();
}

int HBXCacheLogicBase::checkState(Storage& storage) {
    HBXMemoryMappedFile& file = storage.manager->file();
    const bool isOutdated = known_.agreed->generation != known_.generation;
    const bool isValid = internal::readValidFlag(known_.base);
    if (!isOutdated && file.isDamaged()) {
        return giveUp(storage, kNoSnapshot);
    }
    if (isOutdated || !isValid) {
        forget(storage);
        return kAbandoned;
    }
    return protect_ || known_.size != (known_.agreed->fileSize & kAlignmentMask) || needsRecovery()
               ? repairState(storage)
               : 0;
}

int HBXCacheLogicBase::repairState(Storage& storage) {
    if (protect_ && storage.manager->file().protectMemory(false) != 0) {
        return kFailed;
    }
    if (!needsRecovery()) {
        return unsafe_checkSize(storage);
    }
    try {
        return recover(storage) == 0 ? 0 : giveUp(storage, kAbandoned);
    } catch (const std::bad_alloc&) {
        return giveUp(storage, kFailed);
    }
}

int HBXCacheLogicBase::unsafe_checkSize(Storage& storage) {
    const std::size_t size = known_.agreed->fileSize;
    if (size <= storage.manager->file().getMappedSize()) {
        look(storage);
        return 0;
    }
    return remapTo(storage, size, false) == 0 ? 0 : kNotRemapped;
}

/// What was known by its place in memory is gone afterwards, but for lists, which keep their own mapping.
int HBXCacheLogicBase::remapTo(Storage& storage, std::size_t size, bool protectOld) {
    boost::intrusive_ptr<HBXMappedMemoryManager> larger;
    const auto attempt = [&] {
        larger = newManager();
        return larger->remap(size, *manager_);
    };
    if (attemptOften(attempt) != 0) {
        return -1;
    }
    if (protectOld) {
        manager_->file().protectMemory(true);
    }
    retire(storage);
    manager_ = std::move(larger);
    storage.manager = manager_.get();
    memory_ = manager_->memory();
    look(storage);
    return 0;
}

HBXCacheHead& HBXCacheLogicBase::head() const { return internal::headOf(known_.base); }

CacheView HBXCacheLogicBase::view() const { return {known_.base, known_.size, format_}; }

/// To be called whenever the mapping or the size of the file changed.
void HBXCacheLogicBase::look(Storage& storage) {
    const HBXMemoryMappedFile& file = storage.manager->file();
    internal::SidecarHead& agreed = file.attachment().head();
    const std::uint64_t size = std::min<std::uint64_t>(agreed.fileSize, file.getMappedSize());
    known_ = {&agreed, storage.manager->memory(), size & kAlignmentMask, file.generation()};
}

void HBXCacheLogicBase::logDamage(const CacheDamage& damage) const {
    Log2(kModule, kSource, __LINE__, kOperation, kOperation)
        .put(1, "Cache file '%s' is damaged at offset %llu: %s.", name_.c_str(),
             static_cast<unsigned long long>(damage.offset), damage.what);
    setErrorMessage("Cache file \"" + name_ + "\" is damaged at offset " + std::to_string(damage.offset) +
                    ": " + damage.what);
}

// --- operations ---

template <class Work>
int HBXCacheLogicBase::locked(Work work) {
    Storage storage;
    if (const int code = lock(storage); code != 0) {
        return code;
    }
    int result = repairing(storage, work);
    if (storage.manager->file().isDamaged()) {
        result = giveUp(storage, kNoSnapshot);
    }
    unlock(storage);
    return result;
}

/// A contradiction may lie in what is derived only; once that is made anew the work is tried again. It may
/// have taken effect already, so it must be one that can be repeated.
template <class Work>
int HBXCacheLogicBase::repairing(Storage& storage, Work work) {
    try {
        try {
            return work(storage);
        } catch (const CacheDamage& damage) {
            logDamage(damage);
            if (recover(storage) == 0) {
                return work(storage);
            }
        }
    } catch (const CacheDamage& damage) {
        logDamage(damage);
    } catch (const std::bad_alloc&) { // in the midst of whatever it was
        storage.manager->file().attachment().head().rebuild = 1;
        return kFailed;
    }
    return giveUp(storage, kAbandoned);
}

bool HBXCacheLogicBase::needsRecovery() const {
    const HBXHeapState& heap = head().heap;
    const internal::SidecarHead& agreed = *known_.agreed;
    return agreed.rebuild != 0 || heap.end != (agreed.fileSize & kAlignmentMask) ||
           heap.end < kCacheMinimumSize || heap.version != HBXSharedMemoryManager::kVersion;
}

/// Makes counts and heap anew out of the snapshots that are current or held by the living.
/// @return 0; -1 when the file contradicts itself, or is too short.
int HBXCacheLogicBase::recover(Storage& storage) {
    internal::CacheAttachment& attachment = storage.manager->file().attachment();
    attachment.head().fileSize = storage.manager->file().getStoredSize() & kAlignmentMask;
    look(storage);
    if (attachment.head().fileSize < kCacheMinimumSize || unsafe_checkSize(storage) != 0) {
        return -1;
    }
    attachment.reclaimDead([](const internal::SidecarPin&) {});
    std::map<std::uint64_t, std::uint32_t> counts{{head().snapshot, 1}};
    attachment.forEachPin([&](const internal::SidecarPin& pin) {
        if (pin.generation == storage.manager->file().generation() && pin.number > 0) {
            counts[pin.snapshot] += pin.number;
        }
    });
    std::vector<internal::CacheRoot> roots;
    roots.reserve(counts.size());
    for (const auto& [offset, references] : counts) {
        roots.push_back({offset, references});
    }
    try {
        internal::CacheAudit(known_.base, view(), roots).rebuild();
    } catch (const CacheDamage& damage) {
        logDamage(damage);
        return -1;
    }
    std::atomic_ref(attachment.head().rebuild).store(0, std::memory_order_release);
    return 0;
}

/// The store by which a change takes effect: all that it needs is written before it.
void HBXCacheLogicBase::commit(std::uint64_t& word, std::uint64_t value) {
    if (known_.agreed->clean != 0) {
        manager_->file().attachment().clearCleanMark();
    }
    std::atomic_ref(word).store(value, std::memory_order_release);
}

void HBXCacheLogicBase::countChange() {
    std::atomic_ref(known_.agreed->changes).fetch_add(1, std::memory_order_relaxed);
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
    const HBXCacheEntry* known = CacheView::arrayOf(view().snapshotAt(head().snapshot)).find(wanted);
    const std::uint64_t offset = getWritableSnapshot(known != nullptr ? shKeep : shGrow, storage);
    if (offset == 0) {
        storage.manager->heap().free(value);
        return kFailed;
    }
    HBXSnapshotHead& snapshot = view().snapshotAt(offset);
    HBXCacheEntry* entries = CacheView::entriesOf(snapshot);
    if (const HBXCacheEntry* found = CacheView::arrayOf(snapshot).find(wanted)) {
        HBXCacheEntry& entry = entries[found - entries];
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

// --- snapshots ---

std::uint64_t HBXCacheLogicBase::getWritableSnapshot(eSnapshotHint hint, Storage& storage) {
    const auto current = [&]() -> HBXSnapshotHead& { return view().snapshotAt(head().snapshot); };
    if (current().references < 1) {
        throw CacheDamage{head().snapshot, "a count of references is below 1"};
    }
    if (current().references > 1) {
        reclaimDead(storage); // a copy costs more than to ask whether the holders live
    }
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
std::uint64_t HBXCacheLogicBase::acquireSnapshot(Storage& storage) {
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
    if (!isSnapshotMemoryAccessible(offset, storage) ||
        file.attachment().addPin(file.generation(), offset) != 0) {
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

void HBXCacheLogicBase::reclaimDead(Storage& storage) {
    HBXMemoryMappedFile& file = storage.manager->file();
    file.attachment().reclaimDead([&](const internal::SidecarPin& pin) {
        if (pin.generation == file.generation()) {
            releaseSnapshot(pin.snapshot, storage, pin.number);
        }
    });
}

// --- lists ---

void HBXCacheLogicBase::openList(HBXCacheList& list) {
    locked([&](Storage& storage) { return fillList(storage, list); });
}

int HBXCacheLogicBase::fillList(Storage& storage, HBXCacheList& list) {
    if (fork_ != internal::forkNumber()) { // those of the parent are not ours to close
        fork_ = internal::forkNumber();
        openLists_ = 0;
    }
    if (openLists_ >= sizes_.maximumLists) {
        return kFailed;
    }
    const std::uint64_t offset = acquireSnapshot(storage);
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
    ++openLists_;
    ++storage.manager->openLists;
    return 0;
}

/// The last owner is gone. Without the lock nobody can tell, so the object stays for good.
void HBXCacheLogicBase::endUnlessListed() {
    if (gate_ != nullptr && gate_->file().lock(false) == 0) {
        onlyLists_ = openLists_ > 0 && fork_ == internal::forkNumber();
        const bool listed = onlyLists_;
        gate_->file().unlock();
        if (listed) {
            return;
        }
    } else if (gate_ != nullptr) {
        logUnableToLock();
        return;
    }
    delete this;
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
        manager.file().attachment().dropPin(manager.file().generation(), list.snapshot_);
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
        manager.file().attachment().dropPin(manager.file().generation(), list.snapshot_);
        giveBack(storage, list.snapshot_);
        unlock(storage);
    } else {
        gate_->file().unlock();
    }
    if (last) {
        delete this;
    }
}

void HBXCacheLogicBase::giveBack(Storage& storage, std::uint64_t snapshot) {
    bool released = false;
    repairing(storage, [&](Storage& held) {
        if (!std::exchange(released, true)) { // a repair counts without our row already
            releaseSnapshot(snapshot, held, 1);
        }
        return 0;
    });
}

// --- what people ask ---

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
        if (pin.generation == file.generation() && pin.number > 0) {
            snapshots.insert(pin.snapshot);
            const std::uint32_t pid = attachment.tables().attachments[pin.attachment - 1].pid;
            status.holders.push_back({pid, pin.snapshot, pin.snapshot == current, pin.number, pin.since});
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
