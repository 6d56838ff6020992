#pragma once

#include <cstdint>
#include <string>

namespace HBX::tool {

/// Seconds since 1970-01-01 UTC of the present moment.
std::int64_t presentMoment();

/// A moment out of "1709632800", "2024-03-05", "2024-03-05 10:00" or "2024-03-05 10:00:30"; with a "Z" behind
/// it a date is UTC, else local. Of a local time that a clock change skips or repeats the C library chooses.
/// @return 0, or -1 when the text is none of these.
int parseMoment(const std::string& text, std::int64_t& moment);

} // namespace HBX::tool
