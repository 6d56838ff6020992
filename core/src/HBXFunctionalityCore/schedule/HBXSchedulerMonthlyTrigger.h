#pragma once

#include <set>

#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>

namespace HBX {

/// Runs on some days of some months. Numbers outside the ranges are ignored.
struct HBX_EXPORT HBXSchedulerMonthlyTrigger : HBXSchedulerTrigger {
    std::set<int> monthDays; ///< 1..31; 32 is the last day of the month
    std::set<int> months;    ///< 1..12

    using HBXSchedulerTrigger::HBXSchedulerTrigger;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSchedulerMonthlyTrigger>;
    using Writer = HBXTableWriter<HBXSchedulerMonthlyTrigger>;

protected:
    /// Looks `now` up in the start's month of the later of the two years, then in the next month of `months`,
    /// and no further. So the answer may lie before `startTime` (the first run of that month), and it may lie
    /// before `now`: beyond the last run of the second month it is the end of that run. Runs within a month
    /// are steps of 86400 seconds from the first day's. -1: a set is empty, no member of `months` is
    /// in 1..12, or a month looked at has none of the days.
    int computeNextRun(std::int64_t now, std::int64_t& next) const override;
};

} // namespace HBX
