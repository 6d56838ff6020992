#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace HBX {

/// A process that uses a cache.
struct HBXCacheProcess {
    std::uint32_t pid;
    std::int64_t since; ///< Seconds since 1970 at which it opened the cache.
};

/// Lists that a process keeps open over one state of the cache.
struct HBXCacheHolder {
    std::uint32_t pid;
    std::uint64_t snapshot; ///< Offset in the file; equal for those who see the same state.
    bool isCurrent;         ///< Whether nothing changed since.
    std::uint32_t lists;
    std::int64_t since; ///< Seconds since 1970 at which the first of them was opened.
};

/// What a cache is made of at one moment; sizes in bytes.
struct HBXCacheStatus {
    std::uint64_t fileSize = 0;
    std::uint64_t allocated = 0;      ///< In blocks of the heap.
    std::uint64_t achievableSize = 0; ///< What the current entries need.
    std::uint64_t entries = 0;
    std::uint64_t snapshots = 0; ///< States that are held, the current one included.
    std::uint64_t changes = 0;   ///< Committed since the lock file was made.
    std::uint64_t generation = 0;
    std::vector<HBXCacheProcess> processes;
    std::vector<HBXCacheHolder> holders;
};

} // namespace HBX
