#include <HBXCore/internal/PlainFile.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>
#include <HBXCommon/HBXLog.h>
#include <HBXCommon/internal/HBXDescriptor.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace HBX::internal {

namespace {

constexpr const char* kSource = "core/src/HBXCore/internal/PlainFile";

int refuse(const std::string& path, const char* why) {
    setErrorMessage("Cannot use \"" + path + "\": " + why);
    errno = EPERM;
    return -1;
}

/// Locks and shared memory do not work across machines.
bool isOnNetwork(int descriptor) {
    constexpr std::array<std::uint32_t, 7> kNetworks = {0x6969,     0x517B,     0xFF534D42, 0xFE534D42,
                                                        0x5346414F, 0x65735546, 0x01021997};
    struct statfs system {};
    return fstatfs(descriptor, &system) == 0 &&
           std::find(kNetworks.begin(), kNetworks.end(), static_cast<std::uint32_t>(system.f_type)) !=
               kNetworks.end();
}

/// Whoever can rename in the folder can put another file in the place of ours.
void warnOfOpenFolder(const std::string& path) {
    static std::atomic<bool> warned{false};
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    struct stat status {};
    if (stat(folder.c_str(), &status) == 0 && (status.st_mode & S_IWOTH) != 0 &&
        (status.st_mode & S_ISVTX) == 0 && !warned.exchange(true)) {
        constexpr const char* kFunction = "HBX::internal::openPlainFile";
        Log2("HBXCore", kSource, __LINE__, kFunction, kFunction)
            .put(1, "Folder '%s' is writable by everybody.", folder.c_str());
    }
}

int checkPlain(int descriptor, const std::string& path, struct stat& status) {
    if (fstat(descriptor, &status) != 0) {
        return failWithErrno("examine", path);
    }
    if (!S_ISREG(status.st_mode)) {
        return refuse(path, "it is not a regular file");
    }
    if (status.st_uid != geteuid()) {
        return refuse(path, "it belongs to another user");
    }
    if (status.st_nlink > 1) {
        return refuse(path, "it has a second name");
    }
    if (isOnNetwork(descriptor)) {
        return refuse(path, "it is on a network file system");
    }
    return 0;
}

} // namespace

int openPlainFile(const std::string& path, bool create, struct stat& status) {
    warnOfOpenFolder(path);
    const int flags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | (create ? O_CREAT : 0);
    const int descriptor = openU(path, flags, 0600);
    if (descriptor < 0) {
        return errno == ELOOP ? refuse(path, "it is a symbolic link") : failWithErrno("open", path);
    }
    if (checkPlain(descriptor, path, status) != 0) {
        const int error = errno;
        ::close(descriptor);
        errno = error;
        return -1;
    }
    return descriptor;
}

int restrictAccess(int descriptor, const std::string& path) {
    return fchmod(descriptor, 0600) == 0 ? 0 : failWithErrno("set the permissions of", path);
}

int readAt(int descriptor, void* to, std::size_t size, std::uint64_t offset) {
    auto* bytes = static_cast<char*>(to);
    while (size > 0) {
        const ssize_t got = pread(descriptor, bytes, size, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            errno = got == 0 ? 0 : errno;
            return -1;
        }
        bytes += got;
        size -= static_cast<std::size_t>(got);
        offset += static_cast<std::uint64_t>(got);
    }
    return 0;
}

int writeAt(int descriptor, const void* from, std::size_t size, std::uint64_t offset) {
    const auto* bytes = static_cast<const char*>(from);
    while (size > 0) {
        const ssize_t written = pwrite(descriptor, bytes, size, static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return -1;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
        offset += static_cast<std::uint64_t>(written);
    }
    return 0;
}

int extendFile(int descriptor, std::uint64_t from, std::uint64_t to, const std::string& path) {
    int result = 0;
    do {
        result = fallocate(descriptor, 0, static_cast<off_t>(from), static_cast<off_t>(to - from));
    } while (result != 0 && errno == EINTR);
    if (result != 0 && errno == EOPNOTSUPP) {
        constexpr std::array<char, 4096> kZeros{};
        for (result = 0; result == 0 && from < to;) {
            const std::uint64_t size = std::min<std::uint64_t>(to - from, kZeros.size());
            result = writeAt(descriptor, kZeros.data(), size, from);
            from += size;
        }
    }
    return result == 0 ? 0 : failWithErrno("extend", path);
}

} // namespace HBX::internal
