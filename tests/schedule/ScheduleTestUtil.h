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
    std::string kind;
    std::string parts[3];
    in >> kind >> parts[0] >> parts[1] >> parts[2];
    if (kind == "once") {
        return std::make_shared<HBXSchedulerOnceTrigger>();
    }
    if (kind == "weeks") {
        auto trigger = std::make_shared<HBXSchedulerWeeklyTrigger>();
        trigger->weeksInterval = std::stoi(parts[0]);
        trigger->weekDays = numbers(parts[1]);
        return trigger;
    }
    if (kind == "months") {
        auto trigger = std::make_shared<HBXSchedulerMonthlyTrigger>();
        trigger->monthDays = numbers(parts[0]);
        trigger->months = numbers(parts[1]);
        return trigger;
    }
    if (kind == "weekdays") {
        auto trigger = std::make_shared<HBXSchedulerMonthlyDayOfWeekTrigger>();
        trigger->weekDays = numbers(parts[0]);
        trigger->monthWeeks = numbers(parts[1]);
        trigger->months = numbers(parts[2]);
        return trigger;
    }
    auto trigger = std::make_shared<HBXSchedulerDailyTrigger>();
    if (kind == "days") {
        trigger->daysInterval = std::stoi(parts[0]);
    }
    trigger->workdaysOnly = kind == "workdays" || kind == "both";
    trigger->weekendsOnly = kind == "weekends" || kind == "both";
    return trigger;
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
