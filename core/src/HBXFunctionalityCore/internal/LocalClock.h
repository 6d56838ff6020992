#pragma once

#include <cstdint>

namespace HBX::internal {

class ZoneMemory;

/// What the wall clock and the calendar on the wall show at a moment.
struct LocalTime {
    std::int64_t year;
    int month;         ///< 1..12
    int day;           ///< 1..31
    int weekDay;       ///< 0 Sunday to 6 Saturday
    int secondOfDay;   ///< 0..86399 (86400 in zones that show leap seconds)
    std::int64_t wall; ///< the same reading as seconds since 1970-01-01 00:00 on this wall clock
};

/// The wall clock of the process's time zone (TZ, or the system's zone), through the C library's conversion.
///
/// An object stands for one computation: it looks at TZ once, when it is made, and a zone changed since the
/// last computation is in force from then on, whether or not the program called tzset. Without TZ the
/// system's zone file is looked at again at most once a second.
///
/// The conversion takes a lock that all threads share, and one computation asks up to ten times, mostly for
/// moments that the computation before asked for too (the trigger's start, the ends of the month). So each
/// thread remembers the answers for some exact moments; nothing is inferred from one moment to another. An
/// object stays in the thread that made it.
class LocalClock {
public:
    LocalClock();

    /// What the clock shows at a moment (seconds since 1970-01-01 UTC); false when the year does not fit.
    bool read(std::int64_t moment, LocalTime& local) const;

    /// When the clock shows a reading. A reading that occurs twice (the clock is set back) is the later one,
    /// a skipped one (the clock is set forward) moves on by as much as is skipped. False when it does not
    /// fit.
    ///
    /// Not left to mktime: for a reading that occurs twice its answer depends on what was asked before.
    /// Exact as long as two clock changes of a zone are more than 50 hours apart; the time zone database has
    /// none closer than 95 hours.
    bool momentOf(std::int64_t wall, std::int64_t& moment) const;

private:
    /// How far the wall clock is ahead of universal time; false as for read.
    bool offsetAt(std::int64_t moment, std::int64_t& offset) const;

    ZoneMemory& memory_; // of this thread
};

} // namespace HBX::internal
