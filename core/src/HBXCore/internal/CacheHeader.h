#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <HBXCore/HBXCacheFile.h>

namespace HBX::internal {

inline HBXCacheHead& headOf(char* base) { return *reinterpret_cast<HBXCacheHead*>(base); }

inline HBXCacheConstants readConstants(const char* base) {
    HBXCacheConstants constants;
    std::memcpy(&constants, base + kCacheConstantsOffset, sizeof constants);
    return constants;
}

inline bool readValidFlag(const char* base) {
    std::uint32_t flag = 0;
    std::memcpy(&flag, base + kCacheValidOffset, sizeof flag);
    return flag != 0;
}

/// Whether nobody has built a header here yet, or not to the end.
bool isNewCache(const char* base, const HBXCacheFormat& format);
/// Everything but the snapshot and the valid flag.
void writeConstants(char* base, const HBXCacheFormat& format);
void writeValidFlag(char* base, bool valid);
/// @return 0, or the code of the first field that is wrong: -14, -11, -13, -12, -15, -16.
int validateHeader(const char* base, const HBXCacheFormat& format);
/// How many of the five fields that make a cache file hold what this format has there.
int countKnownFields(const char* base, const HBXCacheFormat& format);

/// Sets the valid flag of a file to 0: one word that cannot be written halfway, so it is safe without the
/// lock.
void markAbandoned(int descriptor);

} // namespace HBX::internal
