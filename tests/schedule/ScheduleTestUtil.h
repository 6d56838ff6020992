#pragma once

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include <HBXFunctionalityCore/schedule/HBXSchedulerDailyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyDayOfWeekTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerMonthlyTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerOnceTrigger.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerWeeklyTrigger.h>

#include "support/MessageTestUtil.h"

namespace HBX {

using test::Cursor;
using Trigger = std::shared_ptr<HBXSchedulerTrigger>;

inline void setZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
}

/// "2024-03-31 01:30:59" in UTC; the seconds may be left out.
inline std::int64_t utc(const std::string& text) {
    std::tm fields{};
    const char* rest = strptime(text.c_str(), "%Y-%m-%d %H:%M", &fields);
    strptime(rest, ":%S", &fields);
    return timegm(&fields);
}

/// "1,3": members; "-": none; "": all months.
inline std::set<int> numbers(const std::string& text) {
    std::set<int> result;
    std::istringstream items(text.empty() ? "1,2,3,4,5,6,7,8,9,10,11,12" : text);
    for (std::string item; text != "-" && std::getline(items, item, ',');) {
        result.insert(std::stoi(item));
    }
    return result;
}

/// A trigger in words, without its times: "once", "days INTERVAL", "workdays", "weekends", "neither", "both",
/// "weeks INTERVAL WEEKDAYS", "months DAYS [MONTHS]", "weekdays WEEKDAYS WEEKS [MONTHS]".
inline Trigger triggerOf(const std::string& words) {
    std::istringstream in(words);
    std::string kind, first, second, third;
    in >> kind >> first >> second >> third;
    if (kind == "once") {
        return std::make_shared<HBXSchedulerOnceTrigger>();
    }
    if (kind == "weeks") {
        auto weekly = std::make_shared<HBXSchedulerWeeklyTrigger>();
        weekly->weeksInterval = std::stoi(first);
        weekly->weekDays = numbers(second);
        return weekly;
    }
    if (kind == "months") {
        auto monthly = std::make_shared<HBXSchedulerMonthlyTrigger>();
        monthly->monthDays = numbers(first);
        monthly->months = numbers(second);
        return monthly;
    }
    if (kind == "weekdays") {
        auto monthly = std::make_shared<HBXSchedulerMonthlyDayOfWeekTrigger>();
        monthly->weekDays = numbers(first);
        monthly->monthWeeks = numbers(second);
        monthly->months = numbers(third);
        return monthly;
    }
    auto daily = std::make_shared<HBXSchedulerDailyTrigger>();
    if (kind == "days") {
        daily->daysInterval = std::stoi(first);
    }
    daily->workdaysOnly = kind == "workdays" || kind == "both";
    daily->weekendsOnly = kind == "weekends" || kind == "both";
    return daily;
}

/// The next run in UTC, "never" or "fails".
inline std::string answerOf(const HBXSchedulerTrigger& trigger, std::int64_t now) {
    std::time_t next = -123;
    if (trigger.getNextRunTime(now, next) != 0) {
        return next == -123 ? "fails" : "fails, but writes";
    }
    std::tm fields{};
    gmtime_r(&next, &fields);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &fields);
    return next == -1 ? "never" : text;
}

} // namespace HBX
