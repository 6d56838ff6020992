#pragma once

#include <HBXCommon/HBXExport.h>

#include <cstdint>
#include <string>
#include <string_view>

// Text and numbers, always ASCII and without a locale. A failed parse leaves its output untouched.

namespace HBX {

/// Compares without regard to the case of ASCII letters; bytes are otherwise compared as unsigned.
/// @param length  the number of leading bytes that count; -1 = the whole strings.
/// @return below 0, 0 or above 0.
HBX_EXPORT int compareNoCase(std::string_view a, std::string_view b, int length = -1);

/// A copy with ASCII letters in lower case.
HBX_EXPORT std::string toLower(std::string_view text);

/// Decimal text.
HBX_EXPORT std::string intToStr(int value);
HBX_EXPORT std::string longlongToStr(std::int64_t value);

/// The shortest text that reads back exactly through parseDouble.
HBX_EXPORT std::string doubleToStr(double value);

/// Without leading and trailing blanks, tabs, carriage returns and line feeds.
HBX_EXPORT std::string_view trimBlanks(std::string_view text);

/// Read the whole text, blanks around it aside, as a number in range: decimal digits, "-" in front where the
/// type is signed; doubles in every form of from_chars, with inf and nan. False for everything else.
HBX_EXPORT bool parseInt32(std::string_view text, std::int32_t& value);
HBX_EXPORT bool parseInt64(std::string_view text, std::int64_t& value);
HBX_EXPORT bool parseDouble(std::string_view text, double& value);
HBX_EXPORT bool strToUlong(std::string_view text, unsigned long& value);

} // namespace HBX
