#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <HBXCore/internal/CacheView.h>
#include <HBXCore/internal/Sidecar.h>

namespace HBX::internal {

/// Bytes of a cache file and of its lock file, as they stood together at one moment.
struct CacheImage {
    /// A multiple of 16 and at least as long as any cache; zeros stand for what a shorter file lacks.
    std::vector<char> bytes;
    std::uint64_t fileSize = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool inUse = false; ///< Somebody has the file mapped.

    std::unique_ptr<Sidecar> lockFile; ///< Null when there is none.
    std::uint64_t lockFileSize = 0;
    std::bitset<Sidecar::kAttachments> living; ///< Attachments whose process is there.

    CacheView view(const HBXCacheFormat& format) { return {bytes.data(), bytes.size(), format}; }
    /// Whether the lock file speaks of this very file.
    bool isPaired() const {
        return lockFile != nullptr && lockFile->head.magic == SidecarHead::kMagic &&
               lockFile->head.device == device && lockFile->head.inode == inode;
    }
};

/// Opens a regular file for reading, whoever owns it; follows links, waits for nothing.
/// @return the descriptor; -1 with errno and the error message.
int openForReading(const std::string& path, std::uint64_t& size);

/// Reads both files until two readings agree: who uses them does not stop for us.
/// @return 0; -1 with errno and the error message (EAGAIN: they never agreed, EFBIG: longer than any cache).
int readCacheImage(const std::string& path, CacheImage& image);

} // namespace HBX::internal
