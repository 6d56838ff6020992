#pragma once

#include <set>

#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>

namespace HBX {

/// Runs on the so-manieth weekdays of some months, such as the second and fourth Tuesday.
struct HBX_EXPORT HBXSchedulerMonthlyDayOfWeekTrigger : HBXSchedulerTrigger {
    std::set<int> weekDays;   ///< 0 Sunday to 6 Saturday; other numbers count modulo 7
    std::set<int> monthWeeks; ///< 1..5: the first to the fifth such weekday; other numbers are ignored
    std::set<int> months;     ///< 1..12; other numbers are ignored

    using HBXSchedulerTrigger::HBXSchedulerTrigger;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSchedulerMonthlyDayOfWeekTrigger>;
    using Writer = HBXTableWriter<HBXSchedulerMonthlyDayOfWeekTrigger>;

protected:
    /// The first run later than both `startTime` and `now`, in their month or in the next one of `months`.
    /// Runs within a month are steps of 86400 seconds from the first day's. -1: a set is empty, no member of
    /// `months` is in 1..12, or a month looked at has none of the days.
    int computeNextRun(std::int64_t now, std::int64_t& next) const override;
};

} // namespace HBX
