#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXCommon/HBXExport.h>
#include <HBXCore/HBXCacheFile.h>

namespace HBX {

/// What a file is, judged by its header alone.
enum class HBXCacheFileKind {
    Missing,
    Empty, ///< Nothing to lose: no byte, or the zeros that a killed creator left.
    Cache, ///< At least three of the five constants that tell a cache; in order or not.
    Other, ///< Somebody's file, which no opener should be let near.
};

/// One thing about a cache file that is not as it should be.
struct HBXCacheFinding {
    /// What it costs.
    enum class Severity {
        Repairable, ///< Of what is derived: the next opener makes it anew and nothing is lost.
        Damage,     ///< The next opener gives the content up.
    };

    Severity severity;
    bool inLockFile;      ///< Whether `offset` counts in the lock file, and not in the cache file.
    std::uint64_t offset; ///< Bytes.
    std::string what;     ///< For people.
};

/// What `checkCacheFile` saw.
struct HBXCacheFindings {
    HBXCacheFileKind kind = HBXCacheFileKind::Missing;
    bool inUse = false; ///< By any process.
    std::uint64_t fileSize = 0;
    // Counted up to the first damage of the content.
    std::uint64_t snapshots = 0; ///< The current one and those that a living process holds.
    std::uint64_t entries = 0;   ///< Of the current snapshot.
    std::uint64_t values = 0;    ///< Of all snapshots, each once.
    std::uint64_t valueBytes = 0;
    std::vector<HBXCacheFinding> list; ///< Of the content the first damage only.

    /// Whether anything but what can be made anew is wrong.
    [[nodiscard]] HBX_EXPORT bool isDamaged() const;
};

/// Reads a file's header; never changes the file.
/// @param kind  Missing when there is no such file.
/// @return 0; -1 with errno and the error message when it cannot be read or is no regular file.
HBX_EXPORT int recogniseCacheFile(const std::string& path, const HBXCacheFormat& format,
                                  HBXCacheFileKind& kind);

/// Examines a cache file and its lock file by reading them: nothing is mapped, locked or changed, so the file
/// may hold anything, and processes may go on using it.
/// @return 0 when it was examined, whatever was found; -1 with errno and the error message when it cannot be
/// read, is no regular file, or (EAGAIN) is changed all the time.
HBX_EXPORT int checkCacheFile(const std::string& path, const HBXCacheFormat& format,
                              HBXCacheFindings& findings);

} // namespace HBX
