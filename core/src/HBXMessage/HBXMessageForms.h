#pragma once

#include <cstdint>
#include <string_view>

namespace HBX {

/// The version of the text form, which the document element of every message in text carries.
inline constexpr std::string_view kMessageTextVersion = "1";
/// The version of the binary form, a byte of its header.
inline constexpr std::uint8_t kMessageBinaryVersion = 1;

} // namespace HBX
