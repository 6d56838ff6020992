#pragma once

#include <cstdint>
#include <string_view>

#include <HBXMessage/internal/ByteBuffer.h>
#include <HBXMessage/internal/XmlChars.h>

// Values as they stand in XML text. What a function appended before it returned false is for the caller to
// take back: most values are plain, and looking through them first would cost a second pass.

namespace HBX::internal {

/// Appends the text with references for the characters of the classes `stops`.
/// @return false when a part of it can be no XML text at all.
bool appendEscaped(ByteBuffer& out, std::string_view text, std::uint8_t stops);

/// Appends the text unescaped in CDATA; "]]>" is spread over two sections.
/// @return false when CDATA cannot carry it: no XML text, or a CR, which would be read as LF.
bool appendCdata(ByteBuffer& out, std::string_view text);

void appendBase64(ByteBuffer& out, std::string_view bytes);

} // namespace HBX::internal
