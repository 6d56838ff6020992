#include <HBXCore/internal/FileLocks.h>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace HBX::internal {

namespace {

struct flock rangeOf(std::int64_t first, std::int64_t length, int type) {
    struct flock range {};
    range.l_type = static_cast<short>(type);
    range.l_whence = SEEK_SET;
    range.l_start = first;
    range.l_len = length;
    return range;
}

} // namespace

int tryLockByte(int descriptor, std::int64_t byte, ByteLock kind) {
    struct flock range = rangeOf(byte, 1, kind == ByteLock::Shared ? F_RDLCK : F_WRLCK);
    if (fcntl(descriptor, F_OFD_SETLK, &range) == 0) {
        return 0;
    }
    return errno == EAGAIN || errno == EACCES ? 1 : -1;
}

void unlockByte(int descriptor, std::int64_t byte) {
    struct flock range = rangeOf(byte, 1, F_UNLCK);
    fcntl(descriptor, F_OFD_SETLK, &range);
}

bool isAnyByteLocked(int descriptor, std::int64_t first, std::int64_t length) {
    struct flock range = rangeOf(first, length, F_WRLCK);
    return fcntl(descriptor, F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

} // namespace HBX::internal
