#include <HBXCore/HBXMemoryMappedFile.h>

#include <algorithm>
#include <cerrno>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/internal/HBXDescriptor.h>
#include <HBXCore/internal/BootId.h>
#include <HBXCore/internal/CacheAttachment.h>
#include <HBXCore/internal/CacheHeader.h>
#include <HBXCore/internal/FaultGuard.h>
#include <HBXCore/internal/FileLocks.h>
#include <HBXCore/internal/ForkGuard.h>
#include <HBXCore/internal/PlainFile.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HBX {

using internal::CacheAttachment;
using internal::isThisBoot;

namespace {

bool isFitToMap(const std::string& name) {
    struct stat status {};
    const HBXDescriptor file(internal::openPlainFile(name, false, status));
    return file.isOpen() || errno == ENOENT;
}

} // namespace

HBXMemoryMappedFile::HBXMemoryMappedFile(std::size_t reservation, std::chrono::milliseconds patience)
    : reservation_(reservation), patience_(patience) {}

HBXMemoryMappedFile::~HBXMemoryMappedFile() {
    if (memory_ == nullptr) {
        return;
    }
    if (descriptor_.use_count() == 1 && attachment_->isOurs() && descriptor_->get() >= 0) {
        markClean();
    }
    range_.reset();
    munmap(memory_, mappedSize_);
}

/// The last one to leave brings the file to the disk; with the lock, as other threads may have it open too.
void HBXMemoryMappedFile::markClean() {
    const CacheAttachment::Opening opening(*attachment_, std::chrono::seconds(1));
    if (!opening.isHeld() || !attachment_->isAlone() ||
        attachment_->lock(CacheAttachment::Patience(0)) != 0) {
        return;
    }
    internal::SidecarHead& head = attachment_->head();
    if (head.clean == 0 && head.inode == inode_ && fdatasync(descriptor_->get()) == 0) {
        head.clean = 1;
    }
    attachment_->unlock();
}

std::size_t HBXMemoryMappedFile::getMemoryPageSize() {
    static const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return size;
}

// --- mapping ---

void* HBXMemoryMappedFile::map(const std::string& name, std::size_t size, const HBXMappingOptions& options) {
    if (memory_ != nullptr || options != kSharedMapping) {
        errno = EINVAL;
        failWithErrno("map", name);
        return nullptr;
    }
    if (!isFitToMap(name)) { // before a lock file is put beside it
        return nullptr;
    }
    attachment_ = CacheAttachment::attach(name, patience_);
    if (attachment_ == nullptr) {
        return nullptr;
    }
    const CacheAttachment::Opening opening(*attachment_, patience_);
    if (!opening.isHeld()) {
        failWithErrno("wait for", name);
        return nullptr;
    }
    if (open(name, size) != 0 || mapDescriptor(size) != 0) {
        return nullptr;
    }
    return memory_;
}

int HBXMemoryMappedFile::open(const std::string& name, std::size_t size) {
    struct stat status {};
    const int descriptor = internal::openPlainFile(name, true, status);
    if (descriptor < 0) {
        return -1;
    }
    descriptor_ = std::make_shared<internal::ForkGuardedDescriptor>(descriptor);
    if (internal::restrictAccess(descriptor, name) != 0) {
        return -1;
    }
    name_ = name;
    device_ = status.st_dev;
    inode_ = status.st_ino;
    if (settle(size) != 0) {
        return -1;
    }
    generation_ = attachment_->generation();
    return internal::tryLockByte(descriptor, internal::kInUseByte, internal::ByteLock::Shared) == 0
               ? 0
               : failWithErrno("lock", name);
}

/// Agrees with the other processes on which file is the cache file and how long it is; only when there is
/// something to agree on, as the lock may be held by a stopped process.
int HBXMemoryMappedFile::settle(std::size_t size) {
    const internal::SidecarHead& head = attachment_->head();
    const bool replaced = head.device != device_ || head.inode != inode_;
    const std::size_t known = head.fileSize; // before the stored one, which others may just make longer
    if (!replaced && isThisBoot(head) && getStoredSize() >= std::max(size, known)) {
        return 0;
    }
    if (attachment_->lock(patience_) != 0) {
        return -1;
    }
    adopt(replaced);
    const std::size_t stored = getStoredSize();
    const int result = stored < size ? internal::extendFile(descriptor_->get(), stored, size, name_) : 0;
    attachment_->head().fileSize = getStoredSize();
    attachment_->unlock();
    return result;
}

/// A file that stands under the name for the first time is only taken when nobody uses it with another lock
/// file; one from an earlier run of the system only when it was closed in good order.
void HBXMemoryMappedFile::adopt(bool replaced) {
    internal::SidecarHead& head = attachment_->head();
    const int descriptor = descriptor_->get();
    const bool usedElsewhere = replaced && internal::isAnyByteLocked(descriptor, internal::kInUseByte, 1);
    const bool torn = !replaced && !isThisBoot(head) && head.clean == 0;
    if (usedElsewhere || torn) {
        internal::markAbandoned(descriptor);
    }
    if (replaced) {
        attachment_->raiseGeneration();
        head.rebuild = 1;
        head.device = device_;
        head.inode = inode_;
    }
    internal::setThisBoot(head);
}

void* HBXMemoryMappedFile::remap(std::size_t size, void* address, const HBXMemoryMappedFile* previous) {
    if (memory_ != nullptr || address != nullptr || previous == nullptr || previous->memory_ == nullptr) {
        errno = EINVAL;
        failWithErrno("map", name_);
        return nullptr;
    }
    descriptor_ = previous->descriptor_;
    attachment_ = previous->attachment_;
    name_ = previous->name_;
    device_ = previous->device_;
    inode_ = previous->inode_;
    generation_ = previous->generation_;
    return mapDescriptor(size) == 0 ? memory_ : nullptr;
}

/// Address space behind the file's end costs nothing, and becomes memory when any process makes it longer.
int HBXMemoryMappedFile::mapDescriptor(std::size_t size) {
    const std::size_t page = getMemoryPageSize();
    std::size_t length = (std::max(size, reservation_) + page - 1) / page * page;
    void* memory = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_->get(), 0);
    if (memory == MAP_FAILED) { // the address space of the process may be limited
        length = (size + page - 1) / page * page;
        memory = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_->get(), 0);
    }
    if (memory == MAP_FAILED) {
        return failWithErrno("map", name_);
    }
    memory_ = memory;
    mappedSize_ = length;
    fork_.store(internal::forkNumber(), std::memory_order_relaxed);
    range_ = std::make_unique<internal::GuardedRange>(memory, length, damaged_);
    return 0;
}

// --- use ---

std::size_t HBXMemoryMappedFile::getSize() const { return attachment_->head().fileSize; }

std::size_t HBXMemoryMappedFile::getStoredSize() const {
    struct stat status {};
    return fstat(descriptor_->get(), &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

bool HBXMemoryMappedFile::isLinked() const {
    struct stat status {};
    return stat(name_.c_str(), &status) == 0 && status.st_dev == device_ && status.st_ino == inode_;
}

bool HBXMemoryMappedFile::isOutdated() const { return attachment_->generation() != generation_; }

int HBXMemoryMappedFile::lock(bool onlyTry) {
    const std::chrono::milliseconds patience = onlyTry ? std::chrono::milliseconds(0) : patience_;
    return fork_.load(std::memory_order_relaxed) == internal::forkNumber() ? attachment_->lock(patience)
                                                                           : lockAfterFork(patience);
}

int HBXMemoryMappedFile::lockAfterFork(std::chrono::milliseconds patience) {
    if (!attachment_->isOurs() && attachment_->reattach(patience_) != 0) {
        return -1;
    }
    if (attachment_->lock(patience) != 0) {
        return -1;
    }
    if (descriptor_->get() < 0 && reopen() != 0) {
        attachment_->unlock();
        return -1;
    }
    fork_.store(internal::forkNumber(), std::memory_order_relaxed);
    return 0;
}

void HBXMemoryMappedFile::unlock() { attachment_->unlock(); }

/// In a forked child, whose mapping is good but whose descriptor was closed.
int HBXMemoryMappedFile::reopen() {
    struct stat status {};
    const int descriptor = internal::openPlainFile(name_, false, status);
    if (descriptor < 0) {
        return -1;
    }
    if (status.st_dev != device_ || status.st_ino != inode_ ||
        internal::tryLockByte(descriptor, internal::kInUseByte, internal::ByteLock::Shared) != 0) {
        ::close(descriptor);
        errno = ESTALE;
        return failWithErrno("find again", name_);
    }
    descriptor_->replace(descriptor);
    return 0;
}

int HBXMemoryMappedFile::protectMemory(bool readOnly) {
    const std::size_t length = std::min(getSize(), mappedSize_);
    return mprotect(memory_, length, readOnly ? PROT_READ : PROT_READ | PROT_WRITE) == 0
               ? 0
               : failWithErrno("protect", name_);
}

int HBXMemoryMappedFile::syncMemory() {
    return msync(memory_, std::min(getSize(), mappedSize_), MS_ASYNC) == 0 ? 0
                                                                           : failWithErrno("store", name_);
}

int HBXMemoryMappedFile::grow(std::size_t size) {
    const std::size_t from = getSize();
    if (internal::extendFile(descriptor_->get(), from, size, name_) != 0) {
        return -1;
    }
    constexpr int kPopulateWrite = 23; // MADV_POPULATE_WRITE, which older headers do not know
    const std::size_t page = getMemoryPageSize();
    const std::size_t begin = from / page * page;
    const std::size_t end = std::min(size, mappedSize_);
    if (begin < end && madvise(static_cast<char*>(memory_) + begin, end - begin, kPopulateWrite) != 0 &&
        errno != EINVAL) {
        return failWithErrno("extend", name_);
    }
    attachment_->head().fileSize = size;
    return 0;
}

void HBXMemoryMappedFile::abandon() { internal::markAbandoned(descriptor_->get()); }

int guardMappedFiles() { return internal::installFaultGuard(); }

} // namespace HBX
