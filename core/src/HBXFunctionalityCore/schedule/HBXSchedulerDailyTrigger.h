#pragma once

#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>
#include <HBXMessage/HBXOptionalProperty.h>

namespace HBX {

/// Runs every so many days, on workdays, or on weekends. A set interval other than 0 comes first, then
/// `workdaysOnly`; with neither the trigger runs on Saturdays and Sundays, whether `weekendsOnly` is set or
/// not.
struct HBX_EXPORT HBXSchedulerDailyTrigger : HBXSchedulerTrigger {
    HBXOptionalProperty<int> daysInterval; ///< Days between two runs; 0 counts as unset.
    bool workdaysOnly = false;             ///< Monday to Friday.
    bool weekendsOnly = false;             ///< Carried along; see above.

    using HBXSchedulerTrigger::HBXSchedulerTrigger;

    static const HBXRecordTable table;

    /// The interval is unset when it is absent or unreadable; a flag is set by the presence of its element.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXSchedulerDailyTrigger& value) const;
    };
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXSchedulerDailyTrigger> {
        int operator()(HBXMessageIterator& it, const HBXSchedulerDailyTrigger& value) const;
    };

protected:
    /// The first run later than `now` (`startTime` itself while `now` is before it). Days are steps of 86400
    /// seconds from the start, so a clock change moves the wall-clock time of later runs. The time since the
    /// start and the interval are counted in 32 bits, which wrap beyond 68 years.
    /// -1: the interval is 0 seconds in 32 bits, or the run does not fit in 64.
    int computeNextRun(std::int64_t now, std::int64_t& next) const override;
};

} // namespace HBX
