#include <HBXCore/internal/CacheImage.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>
#include <HBXCommon/internal/HBXDescriptor.h>
#include <HBXCore/internal/FileLocks.h>
#include <HBXCore/internal/PlainFile.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace HBX::internal {

namespace {

constexpr std::uint64_t kMaximumSize = std::uint64_t{4} << 30; ///< Four times what caches may grow to.

/// What tells that somebody did something in between. (The lock itself changes with every look.)
bool agree(const CacheImage& a, const CacheImage& b) {
    if (a.fileSize != b.fileSize || a.inode != b.inode ||
        (a.lockFile == nullptr) != (b.lockFile == nullptr)) {
        return false;
    }
    return a.lockFile == nullptr ||
           (a.lockFile->head.changes == b.lockFile->head.changes &&
            a.lockFile->head.rebuild == b.lockFile->head.rebuild &&
            a.lockFile->head.generation == b.lockFile->head.generation &&
            std::memcmp(a.lockFile->pins, b.lockFile->pins, sizeof a.lockFile->pins) == 0);
}

int readCacheFile(const std::string& path, CacheImage& image) {
    const HBXDescriptor file(openForReading(path, image.fileSize));
    struct stat status {};
    if (!file.isOpen()) {
        return -1;
    }
    if (image.fileSize > kMaximumSize) {
        errno = EFBIG;
        return failWithErrno("examine", path);
    }
    fstat(file.get(), &status);
    image.device = status.st_dev;
    image.inode = status.st_ino;
    image.inUse = isAnyByteLocked(file.get(), kInUseByte, 1);
    image.bytes.assign(std::max(image.fileSize, kCacheMinimumSize) / 16 * 16, 0);
    const std::size_t length = std::min<std::uint64_t>(image.fileSize, image.bytes.size());
    if (readAt(file.get(), image.bytes.data(), length, 0) != 0) {
        errno = errno == 0 ? EAGAIN : errno; // it was cut while we read
        return failWithErrno("read", path);
    }
    return 0;
}

/// No lock file is as good as one that nobody uses.
int readLockFile(const std::string& path, CacheImage& image) {
    const HBXDescriptor file(openForReading(path, image.lockFileSize));
    if (!file.isOpen()) {
        return errno == ENOENT ? 0 : -1;
    }
    image.lockFile = std::make_unique<Sidecar>();
    const std::size_t length = std::min<std::uint64_t>(image.lockFileSize, sizeof(Sidecar));
    if (readAt(file.get(), image.lockFile.get(), length, 0) != 0) {
        return failWithErrno("read", path);
    }
    for (std::size_t slot = 0; slot < Sidecar::kAttachments; ++slot) {
        image.living[slot] =
            isAnyByteLocked(file.get(), kFirstAttachmentByte + static_cast<std::int64_t>(slot), 1);
    }
    return 0;
}

int readOnce(const std::string& path, CacheImage& image) {
    image = CacheImage();
    return readCacheFile(path, image) == 0 && readLockFile(path + ".lock", image) == 0 ? 0 : -1;
}

} // namespace

int openForReading(const std::string& path, std::uint64_t& size) {
    const int descriptor = openU(path, O_RDONLY | O_NONBLOCK | O_NOCTTY, 0);
    if (descriptor < 0) {
        return failWithErrno("open", path);
    }
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        const HBXDescriptor closed(descriptor);
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return failWithErrno("read", path);
    }
    size = static_cast<std::uint64_t>(status.st_size);
    return descriptor;
}

int readCacheImage(const std::string& path, CacheImage& image) {
    constexpr int kAttempts = 50;
    if (readOnce(path, image) != 0) {
        return -1;
    }
    if (!image.inUse) {
        return 0;
    }
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        CacheImage again;
        if (readOnce(path, again) != 0) {
            return -1;
        }
        const bool same = agree(image, again) && image.bytes == again.bytes;
        image = std::move(again);
        if (same) {
            return 0;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(attempt));
    }
    errno = EAGAIN;
    return failWithErrno("get a steady view of", path);
}

} // namespace HBX::internal
