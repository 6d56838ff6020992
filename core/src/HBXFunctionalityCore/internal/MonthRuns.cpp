#include <HBXFunctionalityCore/internal/MonthRuns.h>

#include <bit>

#include <HBXFunctionalityCore/internal/Calendar.h>

namespace HBX::internal {

NumberMask maskOf(const std::set<int>& numbers, int first, int last) {
    NumberMask mask = 0;
    for (auto number = numbers.lower_bound(first); number != numbers.end() && *number <= last; ++number)
        mask |= NumberMask{1} << *number;
    return mask;
}

bool MonthRuns::build(const LocalClock& clock, std::int64_t year, int month, int secondOfDay, NumberMask days,
                      LastDay lastDay) {
    if (days == 0) {
        return false;
    }
    const std::int64_t firstDay = daysBeforeMonth(year, month);
    const int length = daysInMonth(year, month);
    std::int64_t midnight = 0;
    if (!clock.momentOf(firstDay * kSecondsPerDay, midnight)) {
        return false;
    }
    days_ = days;
    first_ = midnight + secondOfDay;
    const int last = static_cast<int>(std::bit_width(days)) - 1;
    if (lastDay == LastDay::ends_at_midnight && last == length) {
        return clock.momentOf((firstDay + length) * kSecondsPerDay, end_);
    }
    end_ = runOn(last) + kSecondsPerDay;
    return true;
}

std::int64_t MonthRuns::runOn(int day) const { return first_ + (day - 1) * kSecondsPerDay; }

std::int64_t MonthRuns::lookUp(std::int64_t moment) const {
    const std::int64_t begin = runOn(std::countr_zero(days_));
    if (moment < begin) {
        return begin;
    }
    if (moment > end_) {
        return end_;
    }
    // The first day whose run would be later than the moment; days before it drop out. A moment up to the end
    // is at most a month and a clock change after the first run.
    const std::int64_t day = (moment - first_) / kSecondsPerDay + 2;
    const NumberMask later = day > 31 ? 0 : days_ >> day << day;
    return later != 0 ? runOn(std::countr_zero(later)) : end_;
}

} // namespace HBX::internal
