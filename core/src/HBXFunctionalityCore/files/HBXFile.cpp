#include <HBXFunctionalityCore/files/HBXFile.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <HBXCommon/HBXFileUtil.h>
#include <HBXFunctionalityCore/files/HBXFileInfo.h>
#include <HBXFunctionalityCore/modules/HBXComputerMBase.h>
#include <HBXFunctionalityCore/modules/HBXSecurityMBase.h>

namespace HBX {

namespace {

constexpr int kDefaultMode = 0777;

int modeOf(const HBXSecurityAttributes* attributes) {
    return attributes != nullptr && attributes->mode.isSet() ? attributes->mode.get() : kDefaultMode;
}

int goTo(int descriptor, std::int64_t offset) {
    return offset > 0 && ::lseek(descriptor, offset, SEEK_SET) < 0 ? -1 : 0;
}

int measure(int descriptor, std::int64_t offset, std::int64_t& remaining) {
    struct stat status;
    if (::fstat(descriptor, &status) != 0) {
        return -1;
    }
    remaining = std::max<std::int64_t>(status.st_size - std::max<std::int64_t>(offset, 0), 0);
    return 0;
}

/// What open(2) does with the bytes that are there.
int placeFlags(std::int64_t offset) {
    switch (offset) {
    case HBXFileInfo::kAppend:
        return O_APPEND;
    case HBXFileInfo::kTruncate:
        return O_TRUNC;
    default:
        return 0;
    }
}

} // namespace

HBXFile::HBXFile(HBXFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

HBXFile& HBXFile::operator=(HBXFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

void HBXFile::close() {
    if (isOpened()) {
        const int error = errno; // the caller's reason to close counts, not how closing went
        ::close(std::exchange(descriptor_, -1));
        errno = error;
    }
}

int HBXFile::openFile(const std::string& path, int flags, std::int64_t offset,
                      const HBXSecurityAttributes* attributes, std::int64_t* remaining) {
    if (!isOpened()) {
        descriptor_ = openU(path, flags, modeOf(attributes));
    }
    if (!isOpened()) {
        return -1;
    }
    if (goTo(descriptor_, offset) != 0 ||
        (remaining != nullptr && measure(descriptor_, offset, *remaining) != 0)) {
        close();
        return -1;
    }
    return 0;
}

int HBXFile::openRead(const std::string& path, std::int64_t offset, std::int64_t* remaining) {
    return openFile(path, O_RDONLY, offset, nullptr, remaining);
}

int HBXFile::openWrite(const std::string& path, std::int64_t offset, const HBXFilerOptions& options,
                       const HBXSecurityAttributes* attributes) {
    const bool mayOverwrite = (options.flags & HBXFilerOptions::Overwrite) != 0;
    const int flags = O_WRONLY | O_CREAT | (mayOverwrite ? 0 : O_EXCL) | placeFlags(offset);
    return openFile(path, flags, offset, attributes, nullptr);
}

std::int64_t HBXFile::read(char* bytes, std::size_t size) {
    ssize_t count = -1;
    do {
        errno = 0;
        count = ::read(descriptor_, bytes, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

int HBXFile::write(const char* bytes, std::size_t size) {
    ssize_t count = -1;
    do {
        count = ::write(descriptor_, bytes, size);
    } while (count < 0 && errno == EINTR);
    if (count >= 0 && static_cast<std::size_t>(count) < size) {
        errno = ENOSPC; // the usual reason; the system tells it at the next write only
        return -1;
    }
    return count < 0 ? -1 : 0;
}

} // namespace HBX
