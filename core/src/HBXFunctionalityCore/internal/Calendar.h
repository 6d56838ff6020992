#pragma once

#include <cstdint>

namespace HBX::internal {

inline constexpr std::int64_t kSecondsPerDay = 86400;

/// Days from 1970-01-01 to the first day of a month (1..12) of the Gregorian calendar, in any year that the
/// C library's broken-down time can hold.
std::int64_t daysBeforeMonth(std::int64_t year, int month);

/// Number of days of a month (1..12), 28..31.
int daysInMonth(std::int64_t year, int month);

/// Weekday of a day counted from 1970-01-01: 0 Sunday to 6 Saturday.
int weekDayOf(std::int64_t day);

} // namespace HBX::internal
