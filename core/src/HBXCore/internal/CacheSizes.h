#pragma once

#include <algorithm>
#include <cstdint>

#include <HBXCore/HBXCacheFile.h>

namespace HBX::internal {

/// Size of a new file: always a page more than whole pages of its content.
constexpr std::uint64_t initialFileSize(std::uint64_t page) {
    constexpr std::uint64_t kContent = 2169;
    return (kContent / page + 1) * page;
}

/// Size to which a file grows when a request of so many bytes found no room.
constexpr std::uint64_t grownFileSize(std::uint64_t size, std::uint64_t request, std::uint64_t page) {
    const std::uint64_t wanted = size + std::max(size / 5, 5 * request);
    return (wanted + page - 1) / page * page;
}

/// Entries for which a new snapshot has room. Keeping the capacity lets merges alternate between two blocks
/// of one size.
constexpr std::uint32_t snapshotCapacity(std::uint32_t present, std::uint32_t live) {
    constexpr std::uint32_t kSpare = 64;
    return live + kSpare <= present ? present : live + std::max(kSpare, live / 4);
}

} // namespace HBX::internal
