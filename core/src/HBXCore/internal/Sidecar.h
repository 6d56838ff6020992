#pragma once

#include <cstddef>
#include <cstdint>

#include <pthread.h>

namespace HBX::internal {

/// The lock file beside a cache file, mapped by every process that uses the cache. It holds what cannot stand
/// in the cache file: the lock itself, who is attached, and who holds which snapshot.
struct SidecarHead {
    static constexpr std::uint64_t kMagic = 0x6B636F4C45484341; // "ACHELock"
    static constexpr std::uint32_t kVersion = 2;

    std::uint64_t magic;
    std::uint32_t version;
    std::uint32_t mutexSize;    ///< Tells another C library, whose lock would not be ours.
    std::uint64_t pidNamespace; ///< The lock names its holder by a number that is only good within one.
    std::uint8_t bootId[16];    ///< Of the system's run in which the file was changed last.
    std::uint32_t clean;        ///< Everything is on the disk.
    std::uint32_t rebuild;      ///< A change was cut short: rebuild what is derived before anything else.
    std::uint64_t device;       ///< Which file is the cache file.
    std::uint64_t inode;
    std::uint64_t generation; ///< Raised when the cache file is abandoned or replaced.
    std::uint64_t fileSize;   ///< Of the cache file; saves a system call.
    std::uint64_t changes;    ///< Committed ones, for those who watch.
    std::uint64_t pinRows;    ///< Rows of the table that were ever used.
};

/// A process that uses the cache. It lives as long as it holds a lock on a byte of this file.
struct SidecarAttachment {
    std::uint32_t inUse;
    std::uint32_t pid;
    std::int64_t since; ///< Seconds since 1970, for people.
};

/// Who holds a snapshot: one word, as a list comes to rest and is taken up again without the lock.
struct SidecarHolder {
    static constexpr std::uint64_t kResting = std::uint64_t{1} << 63;

    std::uint64_t word;

    static constexpr SidecarHolder ofLists(std::uint32_t attachment, std::uint32_t lists) {
        return {attachment | std::uint64_t{lists} << 32};
    }
    /// @param ticket  tells this rest from all others of the process in the same row.
    static constexpr SidecarHolder ofResting(std::uint32_t attachment, std::uint32_t ticket) {
        return {attachment | std::uint64_t{ticket} << 32 | kResting};
    }

    bool isFree() const { return word == 0; }
    /// Index + 1.
    std::uint32_t attachment() const { return static_cast<std::uint32_t>(word); }
    /// Whether it is one closed list, whose process may take it up again as long as nobody ends its rest.
    bool isResting() const { return (word & kResting) != 0; }
    /// Open lists.
    std::uint32_t lists() const { return isResting() ? 0 : static_cast<std::uint32_t>(word >> 32); }
    /// Its share in the snapshot's count.
    std::uint32_t references() const { return isResting() ? 1 : lists(); }
};

/// Lists of one process over one snapshot.
struct SidecarPin {
    SidecarHolder holder; ///< Changed by compare and exchange.
    std::uint64_t generation;
    std::uint64_t snapshot; ///< Offset.
    std::int64_t since;     ///< Seconds since 1970 at which the first of the lists was opened.
};
static_assert(sizeof(SidecarPin) == 32 && offsetof(SidecarPin, holder) % alignof(SidecarPin) == 0);

struct Sidecar {
    static constexpr std::size_t kAttachments = 1024;
    static constexpr std::size_t kPins = 4096;

    SidecarHead head;
    alignas(64) pthread_mutex_t mutex;
    alignas(64) SidecarAttachment attachments[kAttachments];
    SidecarPin pins[kPins];
};

// Bytes on which the kernel keeps locks for us; they need not exist.
inline constexpr std::int64_t kOpeningByte = 0;
inline constexpr std::int64_t kFirstAttachmentByte = std::int64_t{1} << 30;
/// Of the cache file: held, shared, by every process that has mapped it.
inline constexpr std::int64_t kInUseByte = std::int64_t{1} << 62;

} // namespace HBX::internal
