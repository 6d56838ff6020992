#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyDayOfWeekTrigger.h>

#include <algorithm>

#include <HBXFunctionalityCore/internal/Calendar.h>
#include <HBXFunctionalityCore/internal/MonthRuns.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kMonthlyDayOfWeekTrigger[] = {
    list<&HBXSchedulerMonthlyDayOfWeekTrigger::weekDays>(0, 1995),
    list<&HBXSchedulerMonthlyDayOfWeekTrigger::monthWeeks>(0, 2101),
    list<&HBXSchedulerMonthlyDayOfWeekTrigger::months>(0, 2100),
};

using internal::NumberMask;

constexpr int kDaysPerWeek = 7;
constexpr int kWeeksPerMonth = 5;

/// Bit n: weekday n is a member, 0 Sunday to 6 Saturday.
NumberMask weekDayMask(const std::set<int>& weekDays) {
    NumberMask mask = 0;
    for (const int weekDay : weekDays) {
        mask |= NumberMask{1} << (weekDay % kDaysPerWeek + kDaysPerWeek) % kDaysPerWeek;
    }
    return mask;
}

/// The days of a month that are the so-manieth weekdays; what falls beyond the month's length is dropped.
NumberMask daysOfMonth(std::int64_t year, int month, NumberMask weekDays, NumberMask monthWeeks) {
    const int firstWeekDay = internal::weekDayOf(internal::daysBeforeMonth(year, month));
    const NumberMask firstSevenDays = ((weekDays | weekDays << kDaysPerWeek) >> firstWeekDay & 0x7F) << 1;
    NumberMask days = 0;
    for (int week = 0; week < kWeeksPerMonth; ++week) {
        if ((monthWeeks >> (week + 1) & 1U) != 0) {
            days |= firstSevenDays << week * kDaysPerWeek;
        }
    }
    return days & internal::daysUpTo(internal::daysInMonth(year, month));
}

} // namespace

constinit const HBXRecordTable HBXSchedulerMonthlyDayOfWeekTrigger::table =
    recordTable<HBXSchedulerMonthlyDayOfWeekTrigger, HBXSchedulerTrigger>(
        "HBXSchedulerMonthlyDayOfWeekTrigger", 283, 298, kMonthlyDayOfWeekTrigger);

int HBXSchedulerMonthlyDayOfWeekTrigger::computeNextRun(std::int64_t now, std::int64_t& next) const {
    if (weekDays.empty() || monthWeeks.empty() || months.empty()) {
        return -1;
    }
    const internal::LocalClock clock;
    const std::int64_t reference = std::max(now, startTime);
    internal::LocalTime start{};
    internal::LocalTime present{};
    if (!clock.read(startTime, start) || !clock.read(reference, present)) {
        return -1;
    }
    const auto daysOf = [days = weekDayMask(weekDays),
                         weeks = internal::maskOf(monthWeeks, 1, kWeeksPerMonth)](
                            std::int64_t year, int month) { return daysOfMonth(year, month, days, weeks); };
    return internal::findMonthlyRun(clock,
                                    {.year = present.year,
                                     .month = present.month,
                                     .months = internal::maskOf(months, 1, 12),
                                     .secondOfDay = start.secondOfDay,
                                     .moment = reference,
                                     .lastDay = internal::LastDay::like_any_other},
                                    daysOf, next);
}

} // namespace HBX
