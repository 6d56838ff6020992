#include <HBXCore/HBXCacheRemoval.h>

#include <array>
#include <cerrno>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>
#include <HBXCommon/internal/HBXDescriptor.h>
#include <HBXCore/internal/CacheAttachment.h>
#include <HBXCore/internal/CacheHeader.h>
#include <HBXCore/internal/PlainFile.h>

#include <sys/stat.h>

namespace HBX {

using internal::CacheAttachment;

namespace {

using HeaderBytes = std::array<char, kCacheHeaderSize>;

bool exists(const std::string& name) {
    struct stat status {};
    return lstat(name.c_str(), &status) == 0;
}

int fail(std::string& error) {
    error = getErrorMessage();
    return -1;
}

int unlinkFile(const std::string& name, std::string& error) {
    return removeFile(name) == 0 || errno == ENOENT ? 0 : fail(error);
}

/// Removes a file that is open here, so that all who have it mapped take notice.
int retire(CacheAttachment& attachment, int descriptor, const std::string& name, std::string& error) {
    // The lock is not waited for: its holder may be stopped for good, and both stores are safe without it.
    const bool locked = attachment.lock(CacheAttachment::Patience(0)) == 0;
    internal::markAbandoned(descriptor);
    attachment.raiseGeneration();
    if (locked) {
        attachment.unlock();
    }
    return unlinkFile(name, error);
}

bool isInGoodOrder(const HeaderBytes& header, const struct stat& status, const HBXCacheFormat& format) {
    return static_cast<std::uint64_t>(status.st_size) >= kCacheMinimumSize &&
           (internal::isNewCache(header.data(), format) ||
            internal::validateHeader(header.data(), format) == 0);
}

/// What to do with a file once it is open under the opening lock.
template <class Decide>
int removeOpened(const std::string& name, std::string& error, Decide decide) {
    if (!exists(name)) {
        return 0;
    }
    const auto attachment = CacheAttachment::attach(name, CacheAttachment::kPatience);
    if (attachment == nullptr) {
        return fail(error);
    }
    const CacheAttachment::Opening opening(*attachment, CacheAttachment::kPatience);
    if (!opening.isHeld()) {
        failWithErrno("wait for", name);
        return fail(error);
    }
    struct stat status {};
    const HBXDescriptor file(internal::openPlainFile(name, false, status));
    if (!file.isOpen()) {
        return errno == ENOENT ? 0 : fail(error);
    }
    HeaderBytes header{};
    internal::readAt(file.get(), header.data(), header.size(), 0); // a shorter file reads as zeros
    return decide(*attachment, file.get(), header, status);
}

} // namespace

int removeLockedCacheFile(const std::string& name, const HBXCacheFormat& format, std::string& error) {
    return removeOpened(
        name, error,
        [&](CacheAttachment& attachment, int file, const HeaderBytes& header, const struct stat& status) {
            return isInGoodOrder(header, status, format) ? 0 : retire(attachment, file, name, error);
        });
}

int removeCacheFile(const std::string& name, const HBXCacheFormat& format, std::string& error) {
    std::string ignored;
    const int result = removeOpened(
        name, ignored,
        [&](CacheAttachment& attachment, int file, const HeaderBytes& header, const struct stat&) {
            return internal::countKnownFields(header.data(), format) >= 3
                       ? retire(attachment, file, name, ignored)
                       : -1;
        });
    return result == 0 ? 0 : unlinkFile(name, error);
}

} // namespace HBX
