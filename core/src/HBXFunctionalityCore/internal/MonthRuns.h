#pragma once

#include <cstdint>
#include <set>

#include <HBXFunctionalityCore/internal/LocalClock.h>

namespace HBX::internal {

/// A set of small numbers (days 1..31, months 1..12): bit n stands for n.
using NumberMask = std::uint32_t;

/// The members of a set that lie in first..last (at most 31), in time that does not grow with the others.
NumberMask maskOf(const std::set<int>& numbers, int first, int last);

/// The days of a month of that length (28..31).
constexpr NumberMask daysUpTo(int length) { return ~NumberMask{0} >> (31 - length) & ~NumberMask{1}; }

/// Whether a run on the last day of a month lasts until the month is over rather than 86400 seconds.
enum class LastDay { ends_at_midnight, like_any_other };

/// The runs of one month in order. They are counted in steps of 86400 seconds from the moment of the time of
/// day on the first day (local midnight plus the time of day), so a clock change within the month moves the
/// wall-clock time of the runs after it.
class MonthRuns {
public:
    /// False when no day of the month is in `days`, or when a local time does not fit.
    bool build(const LocalClock& clock, std::int64_t year, int month, int secondOfDay, NumberMask days,
               LastDay lastDay);

    /// The first run when `moment` is before it; the end when `moment` is after the end; else the first run
    /// after `moment`, or the end when there is none.
    std::int64_t lookUp(std::int64_t moment) const;

    /// Local midnight after a run on the last day that ends there, else the end of the last run.
    std::int64_t end() const { return end_; }

private:
    std::int64_t runOn(int day) const;

    std::int64_t first_ = 0; // the time of day on the first day of the month
    std::int64_t end_ = 0;
    NumberMask days_ = 0;
};

/// What a monthly search starts from.
struct MonthSearch {
    std::int64_t year;
    int month;           ///< looked at first when it is a member of `months`
    NumberMask months;   ///< 1..12
    int secondOfDay;     ///< local time of day of the runs
    std::int64_t moment; ///< looked up in the run lists
    LastDay lastDay;
};

/// The search that both monthly triggers share: the month itself, then the next member of `months`, whose
/// answer is taken as it comes (no month is skipped, and the end of its list counts as an answer).
/// @param daysOf  (year, month) to the NumberMask of the run days of that month
/// @return 0 and the answer in `next`; -1 when a month looked at has no run, when `months` is empty, or when
///         a local time does not fit.
template <class DaysOf>
int findMonthlyRun(const LocalClock& clock, MonthSearch search, DaysOf daysOf, std::int64_t& next) {
    if (search.months == 0) {
        return -1;
    }
    const auto isMember = [&] { return (search.months >> search.month & 1U) != 0; };
    MonthRuns runs;
    const auto lookUp = [&] {
        if (!runs.build(clock, search.year, search.month, search.secondOfDay,
                        daysOf(search.year, search.month), search.lastDay))
            return -1;
        next = runs.lookUp(search.moment);
        return 0;
    };

    if (isMember()) {
        if (lookUp() != 0) {
            return -1;
        }
        if (next != runs.end()) {
            return 0;
        }
    }
    do {
        search.year += search.month / 12;
        search.month = search.month % 12 + 1;
    } while (!isMember());
    return lookUp();
}

} // namespace HBX::internal
