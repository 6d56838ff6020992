#pragma once

#include <HBXCommon/HBXExport.h>

#include <cstddef>
#include <string>
#include <string_view>

// Base64 with the standard alphabet, padded.

namespace HBX {

/// The length of the text for n bytes.
constexpr std::size_t base64EncodedSize(std::size_t n) { return (n + 2) / 3 * 4; }

/// Writes exactly base64EncodedSize(n) characters to `out`.
HBX_EXPORT void base64Encode(const char* bytes, std::size_t n, char* out);

/// Decodes canonical text: whole groups of four, padding at the end only, no bits set behind the last byte.
/// Blanks, tabs, carriage returns and line feeds are passed over anywhere.
/// @param out  replaced on success, untouched on failure.
HBX_EXPORT bool base64Decode(std::string_view text, std::string& out);

} // namespace HBX
