#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The input with a header of the binary form that fits: magic, version and length are the same in every good
/// message, and a fuzzer that has to find them spends its time on nothing else.
inline std::string fitHeader(std::string_view input) {
    std::string bytes(input);
    if (bytes.size() >= 12) {
        bytes.replace(0, 5, std::string_view("HBXM\1", 5));
        bytes[5] = static_cast<char>(bytes[5] & 1);
        bytes[6] = bytes[7] = '\0';
        const std::size_t length = bytes.size() - 12;
        for (unsigned i = 0; i < 4; ++i) {
            bytes[8 + i] = static_cast<char>(length >> (8 * i));
        }
    }
    return bytes;
}
