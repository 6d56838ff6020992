#pragma once

#include <cstdint>

#include <HBXCore/HBXCacheFile.h>

namespace HBX::internal {

/// Copies the live entries of a snapshot in sorted order, those of its tail included.
/// @param capacity  of `to`; CacheDamage when more are found.
/// @return how many.
std::uint32_t mergeLiveEntries(HBXSnapshotHead& from, HBXCacheEntry* to, std::uint32_t capacity);

} // namespace HBX::internal
