#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <boost/shared_ptr.hpp>

#include <HBXCommon/HBXExport.h>

namespace HBX {

namespace internal {
class CacheAttachment;
class ForkGuardedDescriptor;
class GuardedRange;
} // namespace internal

/// How a mapping is made: access 7 (all), sharing 2 (with other processes), creation 1 (when there is none),
/// lifetime 1 (until the object ends). Other values are not known.
using HBXMappingOptions = std::array<std::uint32_t, 4>;
inline constexpr HBXMappingOptions kSharedMapping = {7, 2, 1, 1};

/// A file that several processes map at the same time, with a lock that they share. The lock lives in a
/// second file beside it, NAME.lock, which stays; so that it survives any kill of its holder, and of all of
/// them.
class HBX_EXPORT HBXMemoryMappedFile {
public:
    /// @param reservation  address space that is set aside, in bytes: up to there the file grows in place.
    /// @param patience     how long to wait for a lock before it counts as broken.
    explicit HBXMemoryMappedFile(std::size_t reservation = 0,
                                 std::chrono::milliseconds patience = std::chrono::seconds(60));
    ~HBXMemoryMappedFile();
    HBXMemoryMappedFile(const HBXMemoryMappedFile&) = delete;
    HBXMemoryMappedFile& operator=(const HBXMemoryMappedFile&) = delete;

    /// Maps the file of this name, which is made and extended to `size` bytes when it is shorter. Refused are
    /// links, what is not a regular file, files of other users and on network file systems.
    /// @return the memory, owned by this object; null with the thread's error message.
    void* map(const std::string& name, std::size_t size, const HBXMappingOptions& options);
    /// Maps the file of another object once more, at least `size` bytes of it, and shares its lock.
    /// @param address  where; null for anywhere, nothing else is known.
    void* remap(std::size_t size, void* address, const HBXMemoryMappedFile* previous);

    /// Where the file is mapped; null when it is not.
    void* getMemory() const { return memory_; }
    /// Size of the file, in bytes. Under the lock.
    std::size_t getSize() const;
    /// Bytes from `getMemory()` that may be used as far as the file reaches.
    std::size_t getMappedSize() const { return mappedSize_; }

    /// @param onlyTry  do not wait. @return 0; -1 when the lock is broken, or not free in time.
    int lock(bool onlyTry);
    /// Lets the lock go, which this thread holds.
    void unlock();
    /// Allows or forbids writing through the mapping. 0; -1 with errno.
    int protectMemory(bool readOnly);
    /// Starts to bring changes to the disk.
    int syncMemory();
    /// Makes the file longer, in place as far as the mapping reaches. Under the lock.
    /// @return 0; -1 with the error message (no space left), the file is then as it was.
    int grow(std::size_t size);

    /// Whether the file still stands under its name.
    bool isLinked() const;
    /// Whether the file was cut off under us; needs guardMappedFiles.
    bool isDamaged() const { return damaged_.load(std::memory_order_relaxed); }
    /// Size that the file system tells.
    std::size_t getStoredSize() const;
    /// Whether the file was replaced or given up since it was mapped. Under the lock.
    bool isOutdated() const;
    /// Whether both mapped one file, and in one state of it.
    bool isSameFile(const HBXMemoryMappedFile& other) const {
        return attachment_ == other.attachment_ && generation_ == other.generation_;
    }
    /// Declares the content unusable for everybody. May be called without the lock when it cannot be had.
    void abandon();

    /// What this file's mappings have in common, and the state of the file that this one is of.
    internal::CacheAttachment& attachment() const { return *attachment_; }
    std::uint64_t generation() const { return generation_; }

    /// Bytes of a page, read once.
    static std::size_t getMemoryPageSize();

private:
    int open(const std::string& name, std::size_t size);
    int settle(std::size_t size);
    void adopt(bool replaced);
    int mapDescriptor(std::size_t size);
    int lockAfterFork(std::chrono::milliseconds patience);
    int reopen();
    void markClean();

    std::size_t reservation_;
    std::chrono::milliseconds patience_;
    std::string name_;
    boost::shared_ptr<internal::CacheAttachment> attachment_;
    std::shared_ptr<internal::ForkGuardedDescriptor> descriptor_; ///< One for all mappings of a file.
    std::atomic<bool> damaged_{false};
    std::unique_ptr<internal::GuardedRange> range_;
    void* memory_ = nullptr;
    std::size_t mappedSize_ = 0;
    std::uint64_t device_ = 0;
    std::uint64_t inode_ = 0;
    std::uint64_t generation_ = 0;
    std::atomic<std::uint64_t> fork_{0}; ///< Number of the fork in which the descriptor was opened.
};

/// From now on a mapped file that is cut off while it is used gives zeros, and the operation a code, instead
/// of ending the process by SIGBUS. Takes over that signal for the process; call it once, early.
/// @return 0; -1 with errno.
HBX_EXPORT int guardMappedFiles();

} // namespace HBX
