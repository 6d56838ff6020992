#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyTrigger.h>

#include <algorithm>

#include <HBXFunctionalityCore/internal/Calendar.h>
#include <HBXFunctionalityCore/internal/MonthRuns.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kMonthlyTrigger[] = {
    list<&HBXSchedulerMonthlyTrigger::monthDays>(0, 2099),
    list<&HBXSchedulerMonthlyTrigger::months>(0, 2100),
};

using internal::NumberMask;

constexpr int kLastDay = 32;

} // namespace

constinit const HBXRecordTable HBXSchedulerMonthlyTrigger::table =
    recordTable<HBXSchedulerMonthlyTrigger, HBXSchedulerTrigger>("HBXSchedulerMonthlyTrigger", 283, 297,
                                                                 kMonthlyTrigger);

int HBXSchedulerMonthlyTrigger::computeNextRun(std::int64_t now, std::int64_t& next) const {
    if (monthDays.empty() || months.empty()) {
        return -1;
    }
    const internal::LocalClock clock;
    internal::LocalTime start{};
    internal::LocalTime present{};
    if (!clock.read(startTime, start) || !clock.read(now, present)) {
        return -1;
    }
    const NumberMask days = internal::maskOf(monthDays, 1, 31);
    const bool onLastDay = monthDays.contains(kLastDay);
    const auto daysOf = [days, onLastDay](std::int64_t year, int month) {
        const int length = internal::daysInMonth(year, month);
        const NumberMask last = onLastDay ? NumberMask{1} << length : 0;
        return (days & internal::daysUpTo(length)) | last;
    };
    return internal::findMonthlyRun(clock,
                                    {.year = std::max(start.year, present.year),
                                     .month = start.month,
                                     .months = internal::maskOf(months, 1, 12),
                                     .secondOfDay = start.secondOfDay,
                                     .moment = now,
                                     .lastDay = internal::LastDay::ends_at_midnight},
                                    daysOf, next);
}

} // namespace HBX
