#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace HBX::internal {

/// The product of two numbers, its halves folded over each other.
constexpr std::uint64_t foldedProduct(std::uint64_t a, std::uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

/// `Size` bytes as a number, the first one lowest.
template <std::size_t Size>
constexpr std::uint64_t numberAt(const char* bytes) {
    std::uint64_t number = 0;
    if (!std::is_constant_evaluated()) {
        std::memcpy(&number, bytes, Size);
        return number;
    }
    for (std::size_t i = 0; i < Size; ++i) {
        number |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << 8 * i;
    }
    return number;
}

/// Eight bytes go in at a time; the last ones may overlap those before, as the length goes in, too.
/// @param salt  random where strangers choose the names, so that they cannot choose names of one hash.
constexpr std::uint64_t hashName(std::string_view name, std::uint64_t salt) {
    const char* const begin = name.data();
    const std::size_t size = name.size();
    const std::uint64_t factor = salt ^ 0xA0761D6478BD642F;
    std::uint64_t hash = salt ^ size;
    for (std::size_t at = 0; at + 8 < size; at += 8) {
        hash = foldedProduct(hash ^ numberAt<8>(begin + at), factor);
    }
    std::uint64_t last = 0;
    if (size >= 8) {
        last = numberAt<8>(begin + size - 8);
    } else if (size >= 4) {
        last = numberAt<4>(begin) << 32 | numberAt<4>(begin + size - 4);
    } else if (size > 0) {
        last = numberAt<1>(begin) << 16 | numberAt<1>(begin + size / 2) << 8 | numberAt<1>(begin + size - 1);
    }
    return foldedProduct(hash ^ last, factor);
}

} // namespace HBX::internal
