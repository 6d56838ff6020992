#include <HBXFunctionalityCore/schedule/HBXSchedulerWeeklyTrigger.h>

#include <algorithm>
#include <bit>

#include <boost/date_time/gregorian/gregorian_types.hpp>

#include <HBXFunctionalityCore/internal/Calendar.h>
#include <HBXFunctionalityCore/internal/LocalClock.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kWeeklyTrigger[] = {
    member<&HBXSchedulerWeeklyTrigger::weeksInterval>(2098),
    list<&HBXSchedulerWeeklyTrigger::weekDays>(0, 1995),
};

using boost::gregorian::date;
using boost::gregorian::date_duration;

constexpr int kDaysPerWeek = 7;

/// Bit n stands for weekday n, Monday 1 to Sunday 7.
using WeekDayMask = unsigned;

/// The calendar takes 16-bit numbers: what does not fit goes in as a number that it refuses, never as another
/// one that it would take.
std::uint16_t calendarNumber(std::int64_t number) {
    return static_cast<std::uint16_t>(std::clamp<std::int64_t>(number, 0, UINT16_MAX));
}

int mondayFirst(boost::gregorian::greg_weekday weekDay) {
    return weekDay.as_number() == 0 ? kDaysPerWeek : weekDay.as_number();
}

WeekDayMask maskOf(const std::set<int>& weekDays) {
    WeekDayMask mask = 0;
    for (const int weekDay : weekDays) {
        mask |= 1U << mondayFirst(weekDay < 0 ? UINT16_MAX : calendarNumber(weekDay));
    }
    return mask;
}

date dateOf(const internal::LocalTime& local) {
    return {calendarNumber(local.year), calendarNumber(local.month), calendarNumber(local.day)};
}

/// Rounds up; `value` is -1 or more.
int ceilDivide(int value, int divisor) { return (value + divisor - 1) / divisor; }

/// Days from 1 January to the first run day that is not before `from`; may lie beyond the year. Week 0 holds
/// 1 January; when that is a Sunday, it alone is week -1 and week 0 begins with the day after.
int runDayOfYear(const date& from, WeekDayMask days, int weeksInterval) {
    const int weekDay = mondayFirst(from.day_of_week());
    const int day = from.day_of_year() - 1;
    const int newYearsWeekDay =
        (weekDay + kDaysPerWeek - day % kDaysPerWeek) % kDaysPerWeek; // Sunday is 0 here
    const int week = ceilDivide(day + newYearsWeekDay, kDaysPerWeek) - 1;

    int runWeek = ceilDivide(week, weeksInterval) * weeksInterval;
    int runWeekDay = std::countr_zero(days);
    if (runWeek == week) {
        if (const WeekDayMask left = days >> weekDay << weekDay; left != 0) {
            runWeekDay = std::countr_zero(left);
        } else {
            runWeek += weeksInterval;
        }
    }
    return runWeek * kDaysPerWeek + runWeekDay - newYearsWeekDay;
}

date firstRunDate(const date& from, WeekDayMask days, int weeksInterval) {
    const int year = from.year();
    const int yearLength = boost::gregorian::gregorian_calendar::is_leap_year(from.year()) ? 366 : 365;
    const int runDay = runDayOfYear(from, days, weeksInterval);
    if (runDay < yearLength) {
        return date(calendarNumber(year), 1, 1) + date_duration(runDay);
    }
    const date newYear(calendarNumber(year + 1), 1, 1);
    return newYear + date_duration(runDayOfYear(newYear, days, weeksInterval));
}

} // namespace

constinit const HBXRecordTable HBXSchedulerWeeklyTrigger::table =
    recordTable<HBXSchedulerWeeklyTrigger, HBXSchedulerTrigger>("HBXSchedulerWeeklyTrigger", 283, 296,
                                                                kWeeklyTrigger);

int HBXSchedulerWeeklyTrigger::getNextRunTime(std::int64_t now, std::int64_t& next) const {
    if (weeksInterval < 1 || weeksInterval > 52) {
        return -1;
    }
    return HBXSchedulerTrigger::getNextRunTime(now, next);
}

int HBXSchedulerWeeklyTrigger::computeNextRun(std::int64_t now, std::int64_t& next) const {
    const WeekDayMask days = maskOf(weekDays);
    if (days == 0) {
        return -1;
    }
    const internal::LocalClock clock;
    internal::LocalTime start{};
    internal::LocalTime present{};
    if (!clock.read(startTime, start) || !clock.read(std::max(now, startTime), present)) {
        return -1;
    }
    date from = dateOf(present);
    if (present.secondOfDay > start.secondOfDay) {
        from += date_duration(1);
    }
    static const date epoch(1970, 1, 1);
    const std::int64_t day = (firstRunDate(from, days, weeksInterval) - epoch).days();
    return clock.momentOf(day * internal::kSecondsPerDay + start.secondOfDay, next) ? 0 : -1;
}

} // namespace HBX
