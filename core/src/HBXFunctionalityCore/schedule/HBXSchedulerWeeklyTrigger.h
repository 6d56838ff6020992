#pragma once

#include <set>

#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>

namespace HBX {

/// Runs on some weekdays of every so-manieth week. Weeks begin on Monday and are counted within the calendar
/// year: the count begins again on every 1 January.
struct HBX_EXPORT HBXSchedulerWeeklyTrigger : HBXSchedulerTrigger {
    int weeksInterval = 1;  ///< 1..52
    std::set<int> weekDays; ///< 0 Sunday to 6 Saturday

    using HBXSchedulerTrigger::HBXSchedulerTrigger;

    /// The first run at `now` or later, so at a run its own moment; not before `startTime`. Once the time of
    /// day of `startTime` is past, the search begins with the next day.
    /// @return -1 also when `weeksInterval` is out of range (whatever `endTime` says) or there is no weekday.
    /// @throws std::out_of_range  from the calendar: a weekday outside 0..6, or a year that it does not know
    ///         (before 1400 or after 9999). The only public operation here that throws.
    int getNextRunTime(std::int64_t now, std::int64_t& next) const override;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSchedulerWeeklyTrigger>;
    using Writer = HBXTableWriter<HBXSchedulerWeeklyTrigger>;

protected:
    int computeNextRun(std::int64_t now, std::int64_t& next) const override;
};

} // namespace HBX
