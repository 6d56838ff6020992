#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace HBX::internal {

/// Copies bytes, most often few, without the cost of a call; returns the place behind them.
inline char* copyBytes(char* to, std::string_view bytes) {
    const char* from = bytes.data();
    const std::size_t size = bytes.size();
    if (size > 16) {
        std::memcpy(to, from, size);
    } else if (size >= 8) { // two pieces that overlap
        std::uint64_t first = 0;
        std::uint64_t last = 0;
        std::memcpy(&first, from, 8);
        std::memcpy(&last, from + size - 8, 8);
        std::memcpy(to, &first, 8);
        std::memcpy(to + size - 8, &last, 8);
    } else if (size >= 4) {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
        std::memcpy(&first, from, 4);
        std::memcpy(&last, from + size - 4, 4);
        std::memcpy(to, &first, 4);
        std::memcpy(to + size - 4, &last, 4);
    } else {
        for (std::size_t i = 0; i < size; ++i) {
            to[i] = from[i];
        }
    }
    return to + size;
}

} // namespace HBX::internal
