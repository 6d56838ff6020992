#include <HBXFunctionalityCore/internal/Calendar.h>

#include <boost/date_time/gregorian/gregorian_types.hpp>

namespace HBX::internal {

namespace {

constexpr std::int64_t kYearsPerCycle = 400;
constexpr std::int64_t kDaysPerCycle = 146097;

std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

/// The calendar library refuses years before 1400 and after 9999. The calendar repeats itself every 400
/// years, so such a year is answered by its twin between 2000 and 2399 and the number of cycles in between.
struct TwinYear {
    explicit TwinYear(std::int64_t calendarYear)
        : cycles(floorDivide(calendarYear - 2000, kYearsPerCycle)),
          year(static_cast<std::uint16_t>(calendarYear - cycles * kYearsPerCycle)) {}

    std::int64_t cycles;
    std::uint16_t year;
};

} // namespace

std::int64_t daysBeforeMonth(std::int64_t year, int month) {
    using boost::gregorian::gregorian_calendar;
    static const std::int64_t epoch = gregorian_calendar::day_number({1970, 1, 1});
    const TwinYear twin(year);
    const auto first = gregorian_calendar::day_number({twin.year, static_cast<std::uint16_t>(month), 1});
    return first - epoch + twin.cycles * kDaysPerCycle;
}

int daysInMonth(std::int64_t year, int month) {
    return boost::gregorian::gregorian_calendar::end_of_month_day(TwinYear(year).year,
                                                                  static_cast<std::uint16_t>(month));
}

int weekDayOf(std::int64_t day) {
    constexpr std::int64_t kThursday = 4; // 1970-01-01
    return static_cast<int>(day + kThursday - floorDivide(day + kThursday, 7) * 7);
}

} // namespace HBX::internal
