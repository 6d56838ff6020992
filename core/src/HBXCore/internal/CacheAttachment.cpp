#include <HBXCore/internal/CacheAttachment.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <map>
#include <new>
#include <thread>

#include <boost/weak_ptr.hpp>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXLock.h>
#include <HBXCore/internal/FileLocks.h>
#include <HBXCore/internal/PlainFile.h>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HBX::internal {

namespace {

using Clock = std::chrono::steady_clock;

int refuse(const std::string& path, const char* why) {
    setErrorMessage("Cannot use \"" + path + "\": " + why);
    errno = EPERM;
    return -1;
}

std::uint64_t pidNamespace() {
    struct stat status {};
    return stat("/proc/self/ns/pid", &status) == 0 ? status.st_ino : 0;
}

timespec deadlineAfter(CacheAttachment::Patience patience) {
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    const std::int64_t nanoseconds = deadline.tv_nsec + patience.count() % 1000 * 1'000'000;
    deadline.tv_sec += patience.count() / 1000 + nanoseconds / 1'000'000'000;
    deadline.tv_nsec = nanoseconds % 1'000'000'000;
    return deadline;
}

/// The kernel's locks know no deadline.
int waitForByte(int descriptor, std::int64_t byte, CacheAttachment::Patience patience) {
    const Clock::time_point deadline = Clock::now() + patience;
    for (;;) {
        const int result = tryLockByte(descriptor, byte, ByteLock::Exclusive);
        if (result <= 0) {
            return result;
        }
        if (Clock::now() >= deadline) {
            errno = ETIMEDOUT;
            return -1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

/// What this process is attached to, by device and inode.
struct Registry {
    HBXLock lock;
    std::map<std::pair<dev_t, ino_t>, boost::weak_ptr<CacheAttachment>> attachments;

    static Registry& instance() {
        static auto* registry = new Registry;
        return *registry;
    }

private:
    Registry() { keepOutOfForks(lock); }
};

} // namespace

// --- attaching ---

boost::shared_ptr<CacheAttachment> CacheAttachment::attach(const std::string& cacheName, Patience patience) {
    const std::string path = cacheName + ".lock";
    struct stat status {};
    const int descriptor = openPlainFile(path, true, status);
    if (descriptor < 0) {
        return nullptr;
    }
    Registry& registry = Registry::instance();
    const HBXLockGuard guard(registry.lock);
    auto& known = registry.attachments[{status.st_dev, status.st_ino}];
    if (boost::shared_ptr<CacheAttachment> existing = known.lock()) {
        ::close(descriptor);
        return existing->isOurs() || existing->attachAgain(patience) == 0 ? existing : nullptr;
    }
    boost::shared_ptr<CacheAttachment> made(new CacheAttachment(path, descriptor, status));
    if (made->open(patience) != 0) {
        return nullptr;
    }
    known = made;
    return made;
}

CacheAttachment::CacheAttachment(std::string path, int descriptor, const struct stat& status)
    : path_(std::move(path)), device_(status.st_dev), inode_(status.st_ino), descriptor_(descriptor) {}

int CacheAttachment::open(Patience patience) {
    const Opening opening(*this, patience);
    if (!opening.isHeld()) {
        return failWithErrno("wait for", path_);
    }
    const bool first = isAlone();
    if (prepareFile(first) != 0) {
        return -1;
    }
    void* memory = mmap(nullptr, sizeof(Sidecar), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_.get(), 0);
    if (memory == MAP_FAILED) {
        return failWithErrno("map", path_);
    }
    sidecar_ = static_cast<Sidecar*>(memory);
    range_ = std::make_unique<GuardedRange>(memory, sizeof(Sidecar), damaged_);
    if (first) {
        initialise();
    } else if (checkShared() != 0) {
        return -1;
    }
    return claimSlot();
}

/// A file that somebody else made for another purpose is left alone; what a killed first opener left is not.
int CacheAttachment::prepareFile(bool first) {
    struct stat status {};
    if (fstat(descriptor_.get(), &status) != 0) {
        return failWithErrno("examine", path_);
    }
    const auto size = static_cast<std::uint64_t>(status.st_size);
    std::uint64_t magic = 0;
    if (readAt(descriptor_.get(), &magic, std::min<std::size_t>(size, sizeof magic), 0) != 0) {
        return failWithErrno("read", path_);
    }
    if (magic != 0 && magic != SidecarHead::kMagic) {
        return refuse(path_, "it is no lock file of a cache");
    }
    if (restrictAccess(descriptor_.get(), path_) != 0) {
        return -1;
    }
    if (size >= sizeof(Sidecar)) {
        return 0;
    }
    return first ? extendFile(descriptor_.get(), 0, sizeof(Sidecar), path_)
                 : refuse(path_, "it was cut off while it is in use");
}

/// Nobody else is attached: whatever the lock and the tables say is over. Which run of the system changed the
/// cache file last is kept.
void CacheAttachment::initialise() {
    SidecarHead& shared = head();
    if (shared.magic != SidecarHead::kMagic || shared.version != SidecarHead::kVersion) {
        std::memset(static_cast<void*>(sidecar_), 0, sizeof(Sidecar));
    }
    shared.rebuild = 1;
    std::memset(sidecar_->attachments, 0, sizeof sidecar_->attachments);
    std::memset(sidecar_->pins, 0, sizeof sidecar_->pins);
    shared.pinRows = 0;
    pthread_mutexattr_t kind{};
    pthread_mutexattr_init(&kind);
    pthread_mutexattr_setpshared(&kind, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&kind, PTHREAD_MUTEX_ROBUST);
    pthread_mutex_init(&sidecar_->mutex, &kind);
    pthread_mutexattr_destroy(&kind);
    shared.version = SidecarHead::kVersion;
    shared.mutexSize = sizeof(pthread_mutex_t);
    shared.pidNamespace = pidNamespace();
    std::atomic_ref(shared.magic).store(SidecarHead::kMagic, std::memory_order_release);
}

int CacheAttachment::checkShared() const {
    const SidecarHead& shared = sidecar_->head;
    if (shared.magic != SidecarHead::kMagic || shared.version != SidecarHead::kVersion ||
        shared.mutexSize != sizeof(pthread_mutex_t)) {
        return refuse(path_, "the processes that use it have another version of its layout");
    }
    if (shared.pidNamespace != pidNamespace()) {
        return refuse(path_, "the processes that use it see other process numbers");
    }
    return 0;
}

/// A slot that a killed process left is not taken before somebody has released what it held.
int CacheAttachment::claimSlot() {
    for (std::uint32_t slot = 0; slot < Sidecar::kAttachments; ++slot) {
        SidecarAttachment& attachment = sidecar_->attachments[slot];
        std::atomic_ref inUse(attachment.inUse);
        if (inUse.load(std::memory_order_acquire) == 0 &&
            tryLockByte(descriptor_.get(), kFirstAttachmentByte + slot, ByteLock::Exclusive) == 0) {
            attachment.pid = static_cast<std::uint32_t>(getpid());
            attachment.since = std::time(nullptr);
            inUse.store(1, std::memory_order_release);
            slot_ = slot;
            fork_.store(forkNumber(), std::memory_order_release);
            return 0;
        }
    }
    return refuse(path_, "too many processes use it");
}

int CacheAttachment::reattach(Patience patience) {
    const HBXLockGuard guard(Registry::instance().lock);
    return isOurs() ? 0 : attachAgain(patience);
}

/// Under the lock of the registry. The name may have gone to another file, whose locks would say nothing
/// about our tables.
int CacheAttachment::attachAgain(Patience patience) {
    // A thread that exists only in the parent may have the inherited one.
    ::new (&opening_) std::timed_mutex();
    struct stat status {};
    const int descriptor = openPlainFile(path_, false, status);
    if (descriptor < 0) {
        return -1;
    }
    if (status.st_dev != device_ || status.st_ino != inode_) {
        ::close(descriptor);
        errno = ESTALE;
        return failWithErrno("find again", path_);
    }
    descriptor_.replace(descriptor);
    const Opening opening(*this, patience);
    return opening.isHeld() ? claimSlot() : failWithErrno("wait for", path_);
}

CacheAttachment::~CacheAttachment() {
    if (sidecar_ == nullptr) {
        return;
    }
    const int error = errno; // of the operation that failed, which is why we go
    if (isOurs()) {
        const Opening opening(*this, Patience{1000}); // without it the next one finds the slot by its lock
        if (opening.isHeld()) {
            std::atomic_ref(sidecar_->attachments[slot_].inUse).store(0, std::memory_order_release);
        }
    }
    range_.reset();
    munmap(sidecar_, sizeof(Sidecar));
    errno = error;
}

CacheAttachment::Opening::Opening(CacheAttachment& attachment, Patience patience)
    : attachment_(attachment), threads_(attachment.opening_, patience) {
    errno = ETIMEDOUT;
    held_ = threads_.owns_lock() && waitForByte(attachment.descriptor_.get(), kOpeningByte, patience) == 0;
}

CacheAttachment::Opening::~Opening() {
    if (held_) {
        unlockByte(attachment_.descriptor_.get(), kOpeningByte);
    }
}

bool CacheAttachment::isAlone() const {
    return !isAnyByteLocked(descriptor_.get(), kFirstAttachmentByte, Sidecar::kAttachments);
}

// --- the lock ---

/// @param result  what the first attempt gave: an error, or the lock of a holder that was killed.
int CacheAttachment::finishLock(int result, Patience patience) {
    constexpr int kSpins = 100; // the usual change takes less than a switch to another thread
    pthread_mutex_t* mutex = &sidecar_->mutex;
    for (int spin = 0; result == EBUSY && spin < kSpins; ++spin) {
        __builtin_ia32_pause();
        result = pthread_mutex_trylock(mutex);
    }
    if (result == EBUSY) {
        const timespec deadline = deadlineAfter(patience);
        result = pthread_mutex_clocklock(mutex, CLOCK_MONOTONIC, &deadline);
    }
    if (result == EOWNERDEAD) {
        std::atomic_ref(head().rebuild).store(1, std::memory_order_release);
        result = pthread_mutex_consistent(mutex);
    }
    if (result == 0 && damaged_.load(std::memory_order_relaxed)) { // what we have locked is ours alone
        pthread_mutex_unlock(mutex);
        result = EIO;
    }
    if (result != 0) {
        errno = result;
        return failWithErrno("lock", path_);
    }
    return 0;
}

/// Must be on the disk before any change is; else a power cut could leave the change and the mark.
void CacheAttachment::clearCleanMark() {
    head().clean = 0;
    msync(sidecar_, sizeof(SidecarHead), MS_SYNC);
}

// --- pins ---

std::uint64_t CacheAttachment::usedRows() const {
    return std::min<std::uint64_t>(sidecar_->head.pinRows, Sidecar::kPins);
}

/// The first free row; null when the table is full.
SidecarPin* CacheAttachment::findFreeRow() {
    SidecarPin* const begin = sidecar_->pins;
    SidecarPin* const end = begin + usedRows();
    SidecarPin* const found =
        std::find_if(begin, end, [](const SidecarPin& pin) { return read(pin).holder.isFree(); });
    if (found != end) {
        return found;
    }
    if (usedRows() == Sidecar::kPins) {
        return nullptr;
    }
    head().pinRows = usedRows() + 1;
    return end;
}

/// Whether the row is one of ours for that snapshot, which then counts one list more.
bool CacheAttachment::joinRow(SidecarPin& pin, std::uint64_t generation, std::uint64_t snapshot) {
    const SidecarPin row = read(pin);
    return row.holder.attachment() == slot_ + 1 && !row.holder.isResting() && row.snapshot == snapshot &&
           row.generation == generation &&
           exchange(pin, row.holder, SidecarHolder::ofLists(slot_ + 1, row.holder.lists() + 1));
}

/// The row used last mostly fits: it is free, or has the same snapshot. Two rows may name one snapshot.
SidecarPin* CacheAttachment::addPin(std::uint64_t generation, std::uint64_t snapshot) {
    SidecarPin* pin = &sidecar_->pins[lastRow_];
    if (lastRow_ < usedRows() && joinRow(*pin, generation, snapshot)) {
        return pin;
    }
    if (lastRow_ >= usedRows() || !read(*pin).holder.isFree()) {
        pin = findFreeRow();
    }
    if (pin == nullptr) {
        setErrorMessage("Too many lists are open over \"" + path_ + '"');
        return nullptr;
    }
    pin->generation = generation;
    pin->snapshot = snapshot;
    notePinTime(*pin);
    std::atomic_ref(pin->holder.word).store(SidecarHolder::ofLists(slot_ + 1, 1).word);
    lastRow_ = static_cast<std::uint64_t>(pin - sidecar_->pins);
    return pin;
}

/// Another list of the row may come to rest at the same time only when it is alone there.
void CacheAttachment::dropPin(SidecarPin& pin) {
    const SidecarHolder holder = read(pin).holder;
    if (holder.attachment() == slot_ + 1 && holder.lists() > 0) {
        exchange(pin, holder,
                 holder.lists() == 1 ? SidecarHolder{0}
                                     : SidecarHolder::ofLists(slot_ + 1, holder.lists() - 1));
    }
}

std::bitset<Sidecar::kAttachments> CacheAttachment::findDead() const {
    std::bitset<Sidecar::kAttachments> dead;
    for (std::uint32_t slot = 0; slot < Sidecar::kAttachments; ++slot) {
        if (slot != slot_ &&
            std::atomic_ref(sidecar_->attachments[slot].inUse).load(std::memory_order_acquire) != 0 &&
            !isAnyByteLocked(descriptor_.get(), kFirstAttachmentByte + slot, 1)) {
            dead.set(slot);
        }
    }
    return dead;
}

void CacheAttachment::forgetAttachments(const std::bitset<Sidecar::kAttachments>& dead) {
    for (std::uint32_t slot = 0; slot < Sidecar::kAttachments; ++slot) {
        if (dead[slot]) {
            std::atomic_ref(sidecar_->attachments[slot].inUse).store(0, std::memory_order_release);
        }
    }
}

} // namespace HBX::internal
