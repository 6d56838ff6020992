// Random triggers against a model that walks day by day (minute by minute where the wall clock is concerned)
// and knows nothing of week counts, run lists or offsets.

#include "ScheduleTestUtil.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

namespace HBX {
namespace {

constexpr std::int64_t kDay = 86400;

/// What the wall clock shows, as if it were in UTC.
std::int64_t wallAt(std::time_t moment) {
    std::tm fields{};
    localtime_r(&moment, &fields);
    return timegm(&fields);
}

std::tm dayOf(std::time_t wall) {
    std::tm fields{};
    gmtime_r(&wall, &fields);
    return fields;
}

std::int64_t timeOfDay(std::int64_t wall) { return (wall % kDay + kDay) % kDay; }

/// The last minute at which the wall clock shows this; when it never does, as far after the jump as asked
/// for.
std::int64_t momentOf(std::int64_t wall) {
    std::int64_t found = -1;
    constexpr std::int64_t kReach = 54000; // 15 hours
    for (std::int64_t moment = wall + kReach; moment > wall - kReach; moment -= 60) {
        const std::int64_t before = wallAt(moment - 60);
        if (wallAt(moment) == wall) {
            return moment;
        }
        if (before < wall && wallAt(moment) > wall) {
            found = moment + (wall - before - 60);
        }
    }
    return found;
}

/// Weeks since the one that holds 1 January, or begins the day after when that is a Sunday.
int weekOfYear(const std::tm& day) {
    char mondays[4];
    std::strftime(mondays, sizeof mondays, "%W", &day); // Mondays of the year up to this day
    const int newYear = (day.tm_wday - day.tm_yday % 7 + 7) % 7;
    return std::atoi(mondays) - (newYear <= 1 ? 1 : 0);
}

std::int64_t nextOf(const HBXSchedulerWeeklyTrigger& trigger, std::int64_t now) {
    const std::int64_t present = wallAt(std::max(now, trigger.startTime));
    const std::int64_t time = timeOfDay(wallAt(trigger.startTime));
    std::int64_t wall = present - timeOfDay(present) + time + (timeOfDay(present) > time ? kDay : 0);
    while (!trigger.weekDays.contains(dayOf(wall).tm_wday) ||
           weekOfYear(dayOf(wall)) % trigger.weeksInterval != 0) {
        wall += kDay;
    }
    return momentOf(wall);
}

std::int64_t nextOf(const HBXSchedulerMonthlyDayOfWeekTrigger& trigger, std::int64_t now) {
    const std::int64_t reference = std::max(now, trigger.startTime);
    const std::int64_t time = timeOfDay(wallAt(trigger.startTime));
    std::int64_t wall = wallAt(reference);
    wall -= timeOfDay(wall) + (dayOf(wall).tm_mday - 1) * kDay;
    for (std::int64_t first = 0;; wall += kDay) {
        const std::tm day = dayOf(wall);
        if (day.tm_mday == 1) {
            first = momentOf(wall) + time;
        }
        const std::int64_t run = first + (day.tm_mday - 1) * kDay;
        if (trigger.months.contains(day.tm_mon + 1) && trigger.weekDays.contains(day.tm_wday) &&
            trigger.monthWeeks.contains((day.tm_mday - 1) / 7 + 1) && run > reference) {
            return run;
        }
    }
}

struct Draw {
    std::mt19937_64 random{20240331};

    std::int64_t number(std::int64_t low, std::int64_t high) {
        return std::uniform_int_distribution<std::int64_t>(low, high)(random);
    }
    std::set<int> some(int low, int high) {
        const auto draw = [&] { return static_cast<int>(number(low, high)); };
        return {draw(), draw(), draw()};
    }
};

template <class T, class Fill>
void compareWithModel(Fill fill) {
    Draw draw;
    for (const char* zone :
         {"UTC", "Europe/Berlin", "Asia/Kolkata", "Australia/Lord_Howe", "America/Sao_Paulo"}) {
        setZone(zone);
        for (int round = 0; round < 80; ++round) {
            T trigger(draw.number(3'333'333, 31'666'666) * 60, -1);
            fill(trigger, draw);
            // Every other question is asked at the start's time of day, or a second beside it.
            const std::int64_t later = round % 2 == 0 ? draw.number(-100, 800) * kDay + draw.number(-1, 1)
                                                      : draw.number(-10'000'000, 50'000'000);
            const std::int64_t now = trigger.startTime + later;
            std::int64_t next = 0;
            ASSERT_EQ(trigger.getNextRunTime(now, next), 0);
            EXPECT_EQ(next, nextOf(trigger, now))
                << zone << ", start " << trigger.startTime << ", now " << now;
        }
    }
}

TEST(NextRunModel, Weekly) {
    compareWithModel<HBXSchedulerWeeklyTrigger>([](auto& trigger, Draw& draw) {
        trigger.weeksInterval = static_cast<int>(draw.number(1, draw.number(0, 1) == 0 ? 4 : 52));
        trigger.weekDays = draw.some(0, 6);
    });
}

TEST(NextRunModel, DayOfWeek) {
    compareWithModel<HBXSchedulerMonthlyDayOfWeekTrigger>([](auto& trigger, Draw& draw) {
        trigger.weekDays = draw.some(0, 6);
        trigger.monthWeeks = draw.some(1, 4); // every month has these, so no question fails
        trigger.months = draw.some(1, 12);
    });
}

} // namespace
} // namespace HBX
