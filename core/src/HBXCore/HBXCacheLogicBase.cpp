#include <HBXCore/HBXCacheLogicBase.h>

#include <algorithm>
#include <cerrno>
#include <map>

#include <HBXCommon/HBXAbort.h>
#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>
#include <HBXCommon/HBXLog.h>
#include <HBXCore/internal/CacheAudit.h>
#include <HBXCore/internal/CacheOperation.h>
#include <HBXCore/internal/CacheSizes.h>
#include <HBXCore/internal/ForkGuard.h>

namespace HBX {

using internal::CacheDamage;
using internal::kAlignmentMask;
using namespace internal::code;

namespace {

constexpr const char* kModule = "HBXFunctionalityCore"; // where the one kind of cache is made
constexpr const char* kSource = "core/src/HBXCore/HBXCacheLogic";
constexpr const char* kInitialize = "HBX::HBXCacheLogic<struct HBX::HBXEID,struct HBX::HBXEnvCoreBasic,class "
                                    "HBX::HBXMappedMemoryManager>::initialize";
constexpr const char* kDestructor = "HBX::HBXCacheLogic<struct HBX::HBXEID,struct HBX::HBXEnvCoreBasic,class "
                                    "HBX::HBXMappedMemoryManager>::~HBXCacheLogic";
constexpr const char* kOperation = "HBX::HBXCacheLogic<struct HBX::HBXEID,struct HBX::HBXEnvCoreBasic,class "
                                   "HBX::HBXMappedMemoryManager>::lock";

constexpr int kMapAttempts = 100;

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
    if (fork_ != internal::forkNumber()) {
        enterFork(storage);
    }
    const int code = storage.manager == nullptr ? kFailed : checkState(storage);
    if (code != 0) {
        unlock(storage);
        storage = Storage();
    }
    return code;
}

/// Lists of the parent are not ours to close, and what another thread of it was just changing is only ours in
/// part.
void HBXCacheLogicBase::enterFork(Storage& storage) {
    fork_ = internal::forkNumber();
    openLists_ = 0;
    if (storage.manager != nullptr) {
        memory_ = storage.manager->memory();
        look(storage);
    }
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

// --- repair ---

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
    attachment.reclaimResting([](const internal::SidecarPin&) {});
    attachment.reclaimDead([](const internal::SidecarPin&) {});
    std::map<std::uint64_t, std::uint32_t> counts{{head().snapshot, 1}};
    attachment.forEachPin([&](const internal::SidecarPin& pin) {
        if (pin.generation == storage.manager->file().generation() && pin.holder.references() > 0) {
            counts[pin.snapshot] += pin.holder.references();
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

} // namespace HBX
