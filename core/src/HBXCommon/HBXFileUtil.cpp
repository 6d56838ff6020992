#include <HBXCommon/HBXFileUtil.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/internal/HBXDescriptor.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HBX {

namespace {

int failWith(int error, std::string_view action, std::string_view path) {
    errno = error;
    return failWithErrno(action, path);
}

/// Reads up to `limit` bytes or the end; -1 with errno.
ssize_t readFully(int descriptor, char* bytes, std::size_t limit) {
    std::size_t done = 0;
    while (done < limit) {
        const ssize_t count = ::read(descriptor, bytes + done, limit - done);
        if (count == 0)
            break;
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return -1;
    }
    return static_cast<ssize_t>(done);
}

int writeFully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return -1;
    }
    return 0;
}

/// The file behind a link, so that replacing it keeps the link; the path itself when nothing is there.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// A new file beside the target, removed again unless it takes the target's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& target) : file_(openBeside(target)) {}
    ~TemporaryFile() {
        if (stands_) {
            const int error = errno;
            ::unlink(path_.c_str());
            errno = error;
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool isOpen() const { return file_.isOpen(); }

    /// Takes the permissions that a file to be replaced has.
    int setMode(mode_t mode) { return ::fchmod(file_.get(), mode); }

    int store(std::string_view bytes) {
        if (writeFully(file_.get(), bytes) != 0 || ::fsync(file_.get()) != 0)
            return -1;
        return file_.close();
    }

    int moveTo(const std::string& target) {
        if (::rename(path_.c_str(), target.c_str()) != 0)
            return -1;
        stands_ = false;
        return 0;
    }

private:
    /// A name may be taken by what a crashed process of the same number has left behind: try the next one.
    int openBeside(const std::string& target) {
        static std::atomic<unsigned> counter{0};
        int descriptor = -1;
        do {
            path_ = target + ".new-" + std::to_string(::getpid()) + "-" + std::to_string(counter++);
            descriptor = openU(path_, O_WRONLY | O_CREAT | O_EXCL, 0644);
        } while (descriptor < 0 && errno == EEXIST);
        return descriptor;
    }

    std::string path_;
    HBXDescriptor file_;
    bool stands_ = isOpen();
};

/// Makes a finished rename survive a crash.
int storeFolder(const std::string& folder) {
    const HBXDescriptor descriptor(openU(folder, O_RDONLY | O_DIRECTORY, 0));
    return descriptor.isOpen() ? ::fsync(descriptor.get()) : -1;
}

} // namespace

int openU(const std::string& path, int flags, int mode) {
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

int removeFile(const std::string& path) {
    return ::unlink(path.c_str()) == 0 ? 0 : failWithErrno("remove", path);
}

int readFile(const std::string& path, std::size_t maxBytes, std::string& out) {
    const HBXDescriptor file(openU(path, O_RDONLY | O_NONBLOCK | O_NOCTTY, 0));
    struct stat status;
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        return failWithErrno("open", path);
    if (!S_ISREG(status.st_mode))
        return failWith(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, "read", path);

    // The size is a first guess only: the file may grow meanwhile, and files of /proc report 0.
    std::string bytes;
    std::size_t done = 0;
    std::size_t room = std::max<std::size_t>(static_cast<std::size_t>(status.st_size), 4095) + 1;
    for (;;) {
        room = std::min(room, maxBytes < SIZE_MAX ? maxBytes + 1 : maxBytes);
        bytes.resize(room);
        const ssize_t count = readFully(file.get(), bytes.data() + done, room - done);
        if (count < 0)
            return failWithErrno("read", path);
        done += static_cast<std::size_t>(count);
        if (done > maxBytes)
            return failWith(EFBIG, "read", path);
        if (done < room)
            break;
        room *= 2;
    }
    bytes.resize(done);
    out = std::move(bytes);
    return 0;
}

int writeFileAtomic(const std::string& path, std::string_view bytes) {
    const std::string target = resolved(path);
    struct stat status;
    const bool replaces = ::stat(target.c_str(), &status) == 0;
    if (replaces && !S_ISREG(status.st_mode))
        return failWith(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, "write", path);

    TemporaryFile temporary(target);
    if (!temporary.isOpen() || (replaces && temporary.setMode(status.st_mode & 07777U) != 0) ||
        temporary.store(bytes) != 0 || temporary.moveTo(target) != 0)
        return failWithErrno("write", path);
    return storeFolder(folderOf(target)) == 0 ? 0 : failWithErrno("store the folder of", path);
}

void schedYield() { ::sched_yield(); }

std::string getproctitle() { return ::program_invocation_short_name; }

} // namespace HBX
