#include <HBXFunctionalityCore/schedule/HBXScheduleText.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <utility>
#include <vector>

#include <boost/date_time/gregorian/gregorian_types.hpp>

#include <HBXFunctionalityCore/internal/Calendar.h>
#include <HBXFunctionalityCore/internal/LocalClock.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerDailyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyDayOfWeekTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerOnceTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerWeeklyTrigger.h>

namespace HBX {

namespace {

using internal::LocalClock;
using internal::LocalTime;

template <class... Arguments>
std::string format(const char* pattern, Arguments... arguments) {
    std::array<char, 128> text{};
    std::snprintf(text.data(), text.size(), pattern, arguments...);
    return text.data();
}

std::string timeOfDay(int seconds) {
    const std::string text = format("%02d:%02d", seconds / 3600, seconds / 60 % 60);
    return seconds % 60 == 0 ? text : text + format(":%02d", seconds % 60);
}

std::string weekDayName(int weekDay) {
    return boost::gregorian::greg_weekday(static_cast<std::uint16_t>(weekDay)).as_long_string();
}

std::string monthName(int month) {
    return boost::gregorian::greg_month(static_cast<std::uint16_t>(month)).as_long_string();
}

/// "a, b and c"
std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        text += i == 0 ? "" : i + 1 == parts.size() ? " and " : ", ";
        text += parts[i];
    }
    return text;
}

/// The words for those members of a set that lie in first..last.
template <class Word>
std::string namesOf(const std::set<int>& numbers, int first, int last, Word word) {
    std::vector<std::string> parts;
    for (auto number = numbers.lower_bound(first); number != numbers.end() && *number <= last; ++number) {
        parts.push_back(word(*number));
    }
    return joined(parts);
}

std::string monthsOf(const std::set<int>& months) {
    constexpr int kMonths = 12;
    const std::string names = namesOf(months, 1, kMonths, monthName);
    return std::distance(months.lower_bound(1), months.upper_bound(kMonths)) == kMonths ? "every month"
                                                                                        : names;
}

std::string startsAt(const HBXSchedulerTrigger& trigger) {
    LocalTime start{};
    return LocalClock().read(trigger.startTime, start) ? " at " + timeOfDay(start.secondOfDay) : "";
}

std::string boundsOf(const HBXSchedulerTrigger& trigger) {
    std::string text = ", from " + describeMoment(trigger.startTime);
    if (trigger.endTime != -1) {
        text += ", until " + describeMoment(trigger.endTime);
    }
    return text + ".";
}

/// "Every week", "Every 2 weeks"
std::string every(int count, const char* unit) {
    return count == 1 ? format("Every %s", unit) : format("Every %d %ss", count, unit);
}

/// What a trigger's own numbers say.
struct Rule {
    bool hasRuns;
    std::string words; ///< the days of the runs, or why there are none
};

Rule runsOn(std::string days) { return {true, std::move(days)}; }
Rule never(std::string reason) { return {false, std::move(reason)}; }

Rule daysOf(const HBXSchedulerDailyTrigger& trigger) {
    if (trigger.daysInterval.isSet() && trigger.daysInterval.get() != 0) {
        constexpr int kLongest = INT32_MAX / internal::kSecondsPerDay;
        const int days = trigger.daysInterval.get();
        const bool wraps = days < 0 || days > kLongest;
        return runsOn(every(days, "day") + (wraps ? " (wrapped to 32 bits of seconds)" : ""));
    }
    if (trigger.workdaysOnly) {
        return runsOn("Every Monday to Friday");
    }
    const char* unset = trigger.weekendsOnly ? "" : " (neither an interval nor workdays are set)";
    return runsOn(std::string("Every Saturday and Sunday") + unset);
}

Rule daysOf(const HBXSchedulerWeeklyTrigger& trigger) {
    if (trigger.weeksInterval < 1 || trigger.weeksInterval > 52) {
        return never(format("the interval of %d weeks is outside 1 to 52", trigger.weeksInterval));
    }
    if (trigger.weekDays.empty()) {
        return never("no weekday is given");
    }
    if (*trigger.weekDays.begin() < 0 || *trigger.weekDays.rbegin() > 6) {
        return never("a weekday is outside 0 to 6");
    }
    const char* counted = trigger.weeksInterval == 1 ? "" : " (counted anew from 1 January)";
    return runsOn(every(trigger.weeksInterval, "week") + counted + " on " +
                  namesOf(trigger.weekDays, 0, 6, weekDayName));
}

Rule daysOf(const HBXSchedulerMonthlyTrigger& trigger) {
    const std::string days = namesOf(trigger.monthDays, 1, 32, [](int day) {
        return day == 32 ? std::string("the last day") : format("day %d", day);
    });
    const std::string months = monthsOf(trigger.months);
    if (days.empty() || months.empty()) {
        return never(days.empty() ? "no day of a month is given" : "no month is given");
    }
    return runsOn("On " + days + " of " + months);
}

Rule daysOf(const HBXSchedulerMonthlyDayOfWeekTrigger& trigger) {
    std::set<int> weekDays;
    for (const int weekDay : trigger.weekDays) {
        weekDays.insert((weekDay % 7 + 7) % 7);
    }
    const std::string weeks = namesOf(trigger.monthWeeks, 1, 5, [](int week) {
        constexpr std::array<const char*, 5> kOrdinals{"first", "second", "third", "fourth", "fifth"};
        return std::string(kOrdinals[static_cast<std::size_t>(week) - 1]);
    });
    const std::string months = monthsOf(trigger.months);
    if (weekDays.empty() || weeks.empty() || months.empty()) {
        return never(weekDays.empty() ? "no weekday is given"
                     : weeks.empty()  ? "no week of a month is given"
                                      : "no month is given");
    }
    return runsOn("On the " + weeks + " " + namesOf(weekDays, 0, 6, weekDayName) + " of " + months);
}

Rule daysOf(const HBXSchedulerTrigger& trigger) {
    if (const auto* daily = dynamic_cast<const HBXSchedulerDailyTrigger*>(&trigger)) {
        return daysOf(*daily);
    }
    if (const auto* weekly = dynamic_cast<const HBXSchedulerWeeklyTrigger*>(&trigger)) {
        return daysOf(*weekly);
    }
    if (const auto* monthly = dynamic_cast<const HBXSchedulerMonthlyTrigger*>(&trigger)) {
        return daysOf(*monthly);
    }
    if (const auto* dayOfWeek = dynamic_cast<const HBXSchedulerMonthlyDayOfWeekTrigger*>(&trigger)) {
        return daysOf(*dayOfWeek);
    }
    return never("this kind of trigger has no runs");
}

std::string duration(std::int64_t seconds) {
    const std::int64_t length = std::llabs(seconds);
    std::vector<std::string> parts;
    const auto add = [&parts](std::int64_t count, const char* unit) {
        if (count != 0) {
            parts.push_back(format("%lld %s%s", static_cast<long long>(count), unit, count == 1 ? "" : "s"));
        }
    };
    add(length / 3600, "hour");
    add(length / 60 % 60, "minute");
    add(length % 60, "second");
    return joined(parts);
}

/// The difference of two times of day, to the nearer side.
std::int64_t differenceOfTimes(int later, int earlier) {
    constexpr std::int64_t kHalfDay = internal::kSecondsPerDay / 2;
    const std::int64_t difference = later - earlier;
    if (difference > kHalfDay) {
        return difference - internal::kSecondsPerDay;
    }
    return difference <= -kHalfDay ? difference + internal::kSecondsPerDay : difference;
}

} // namespace

std::string describeTrigger(const HBXSchedulerTrigger& trigger) {
    if (dynamic_cast<const HBXSchedulerOnceTrigger*>(&trigger) != nullptr) {
        return "Once, on " + describeMoment(trigger.startTime) + ".";
    }
    const Rule rule = daysOf(trigger);
    return rule.hasRuns ? rule.words + startsAt(trigger) + boundsOf(trigger) : "Never: " + rule.words + ".";
}

std::string describeMoment(std::int64_t moment) {
    if (moment == -1) {
        return "never";
    }
    LocalTime local{};
    if (!LocalClock().read(moment, local)) {
        return format("moment %lld", static_cast<long long>(moment));
    }
    const std::int64_t offset = (local.wall - moment) / 60;
    return weekDayName(local.weekDay) +
           format(" %04lld-%02d-%02d ", static_cast<long long>(local.year), local.month, local.day) +
           timeOfDay(local.secondOfDay) +
           format(" %c%02lld:%02lld", offset < 0 ? '-' : '+', std::llabs(offset) / 60,
                  std::llabs(offset) % 60);
}

std::string clockChangeNote(const HBXSchedulerTrigger& trigger, std::int64_t run, std::int64_t previous) {
    const LocalClock clock;
    LocalTime start{};
    LocalTime local{};
    if (run == -1 || !clock.read(trigger.startTime, start) || !clock.read(run, local)) {
        return "";
    }
    std::vector<std::string> notes;
    if (const std::int64_t moved = differenceOfTimes(local.secondOfDay, start.secondOfDay); moved != 0) {
        notes.push_back("at " + timeOfDay(local.secondOfDay) + ", " + duration(moved) +
                        (moved > 0 ? " later than " : " earlier than ") + timeOfDay(start.secondOfDay));
    }
    LocalTime before{};
    if (previous != -1 && clock.read(previous, before)) {
        const std::int64_t change = (local.wall - run) - (before.wall - previous);
        if (change != 0) {
            notes.push_back("the clock was set " + duration(change) + (change > 0 ? " forward" : " back") +
                            " since the run before");
        }
    }
    return joined(notes);
}

} // namespace HBX
