#include "ScheduleTestUtil.h"

#include <vector>

#include <gtest/gtest.h>

#include "support/Threads.h"

namespace HBX {
namespace {

struct Row {
    const char *trigger, *start, *now, *answer, *why; // all times in UTC
    const char* end = nullptr;
};

struct ZoneRuns {
    const char* zone;
    std::vector<Row> rows;
};

// 2024-01-01 was a Monday. The answers of other zones were computed with Python's zoneinfo, from the rules.
const ZoneRuns kRuns[] = {
    {"UTC",
     {{"once", "2024-01-01 10:00", "2024-01-01 10:00", "never", "at its start it is spent"},
      {"once", "2024-01-01 10:00", "2024-01-01 09:59:59", "2024-01-01 10:00", "the end does not count",
       "2023-01-01 00:00"},
      {"days 2", "2024-01-01 10:00", "2023-12-31 00:00", "2024-01-01 10:00", "the start"},
      {"days 2", "2024-01-01 10:00", "2024-01-01 10:00", "2024-01-03 10:00", "at a run: the following one"},
      {"days 0", "2024-01-03 10:00", "2024-01-03 10:00", "2024-01-06 10:00", "interval 0 is none"},
      {"weekends", "2024-01-03 10:00", "2024-01-07 10:00", "2024-01-13 10:00", "Sunday to Saturday"},
      {"both", "2024-01-01 10:00", "2024-01-05 10:00", "2024-01-08 10:00", "workdays win"},
      {"workdays", "2024-01-01 10:00", "2024-01-06 11:00", "2024-01-08 10:00", "Sunday moves one day"},
      {"days 1", "2024-01-05 10:00", "2024-01-01 00:00", "never", "the start is after the end",
       "2024-01-04 00:00"},
      {"days 1", "2024-01-01 10:00", "2024-01-01 10:00", "2024-01-02 10:00", "a run at the end",
       "2024-01-02 10:00"},
      {"days 1", "2024-01-01 10:00", "2024-01-01 10:00", "never", "a run after the end",
       "2024-01-02 09:59:59"},
      {"weeks 2 0", "2022-12-01 10:00", "2022-12-28 00:00", "2023-01-08 10:00", "Sunday 1 January: week -1"},
      {"weeks 52 1", "2024-01-01 10:00", "2024-02-01 00:00", "2024-12-30 10:00", "week 52"},
      {"weeks 1 -", "2024-01-01 10:00", "2024-01-01 00:00", "fails", "no weekday"},
      {"weeks 1 -", "2024-01-01 10:00", "2024-03-01 00:00", "never", "no weekday, but over",
       "2024-02-01 00:00"},
      {"weeks 0 1", "2024-01-01 10:00", "2024-03-01 00:00", "fails", "0 weeks, though over",
       "2024-02-01 00:00"},
      {"months 5,20", "2024-01-10 10:00", "2024-01-01 00:00", "2024-01-05 10:00", "even before the start"},
      {"months 5 1,3", "2024-01-01 10:00", "2024-01-25 00:00", "2024-03-05 10:00", "on to March"},
      {"months 32", "2024-01-01 10:00", "2024-06-01 00:00", "2024-03-01 00:00", "end at midnight"},
      {"months 31,32", "2024-01-01 10:00", "2024-01-31 10:00", "2024-02-29 10:00", "one run in January"},
      {"months 31", "2024-03-01 10:00", "2024-03-31 10:00", "fails", "April has none"},
      {"months 1 0,13", "2024-01-01 10:00", "2024-01-02 00:00", "fails", "no such months"},
      {"weekdays 3 -", "2024-01-01 10:00", "2024-01-01 00:00", "fails", "no weeks"},
      {"months -1,0,33", "2024-01-01 10:00", "2024-01-02 00:00", "fails", "no such days"},
      {"months 1 1,13", "2024-01-01 10:00", "2024-01-02 00:00", "2025-01-01 10:00", "once a year"},
      {"months 15", "2026-05-01 10:00", "2024-02-01 00:00", "2026-05-15 10:00", "the start's year"},
      {"weekdays 3 5", "2024-01-01 10:00", "2024-01-01 00:00", "2024-01-31 10:00", "fifth Wednesday"},
      {"weekdays 5 5", "2024-02-01 10:00", "2024-02-01 00:00", "fails", "the fifth Friday would be the 30th"},
      {"weekdays 3 5", "2024-01-01 10:00", "2024-01-31 10:00", "fails", "none in February"},
      {"months 32", "2024-02-01 00:00", "2100-02-10 00:00", "2100-02-28 00:00", "no leap year"}}},
    {"Europe/Berlin",
     {{"workdays", "2024-03-28 09:00", "2024-03-29 09:00", "2024-04-01 09:00", "the hour moves"},
      {"days 1", "2024-03-30 01:30", "2024-03-30 01:30", "2024-03-31 01:30", "a skipped hour"},
      {"weeks 1 0", "2024-03-24 01:30", "2024-03-30 11:00", "2024-03-31 01:30", "skipped: moves on"},
      {"weeks 1 0", "2024-10-20 00:30", "2024-10-27 00:30", "2024-10-27 01:30", "now the earlier"},
      {"months 1,32", "2024-03-01 22:30", "2024-03-31 22:00", "2024-03-31 22:30", "at the end"},
      {"months 1,32", "2024-03-01 22:30", "2024-03-31 22:10", "2024-04-01 21:30", "past it"},
      {"weekdays 0 5", "2024-03-01 22:00", "2024-03-31 10:00", "2024-03-31 22:00", "no end"}}},
    {"Asia/Kolkata",
     {{"weekends", "2024-03-26 18:45", "2024-03-26 18:45", "2024-03-29 18:45", "Friday in UTC"},
      {"months 29", "2024-01-31 18:30", "2025-02-09 18:30", "fails", "no leap year"}}},
    {"Pacific/Apia",
     {{"weekends", "2011-12-28 20:00", "2011-12-28 20:00", "2011-12-31 20:00", "over a skipped day"},
      {"weekdays 5 5", "2011-12-01 20:00", "2011-12-24 22:00", "2011-12-30 20:00", "skipped Friday"}}},
    {"America/Asuncion",
     {{"months 1,10", "2023-10-01 13:00", "2023-10-01 08:00", "2023-10-01 14:00", "no midnight"}}},
    {"America/Havana",
     {{"months 1,10", "2020-11-01 15:00", "2020-11-01 13:00", "2020-11-01 15:00", "two midnights"}}},
};

TEST(NextRun, FollowsTheRulesAndTheClockOfTheZone) {
    for (const auto& [zone, rows] : kRuns) {
        setZone(zone);
        for (const Row& row : rows) {
            const Trigger trigger = triggerOf(row.trigger);
            trigger->startTime = utc(row.start);
            trigger->endTime = row.end == nullptr ? -1 : utc(row.end);
            EXPECT_EQ(answerOf(*trigger, utc(row.now)), row.answer)
                << zone << ", " << row.trigger << ": " << row.why;
        }
    }
}

TEST(NextRun, TakesUpAZoneWheneverItChanges) {
    const Trigger trigger = triggerOf("weeks 1 1");
    trigger->startTime = utc("2024-01-01 12:00"); // in winter; asked for a run in summer
    const std::pair<const char*, const char*> rows[] = {{"UTC", "2024-07-08 12:00"},
                                                        {"Europe/Berlin", "2024-07-08 11:00"}};
    for (const bool told : {true, false, true}) {
        for (const auto& [zone, answer] : rows) {
            setenv("TZ", zone, 1);
            if (told) {
                tzset();
            }
            EXPECT_EQ(answerOf(*trigger, utc("2024-07-02 00:00")), answer) << zone << ", " << told;
        }
    }
    setZone("UTC"); // the zone goes away and comes back while no trigger is asked
    setenv("TZ", "America/New_York", 1);
    EXPECT_EQ(answerOf(*trigger, utc("2024-08-06 00:00")), "2024-08-12 11:00");
}

TEST(NextRun, IsTheSameOnEveryThread) {
    setZone("Europe/Berlin");
    const Trigger trigger = triggerOf("months 1,15,32");
    trigger->startTime = utc("2024-01-01 10:00");
    std::int64_t sums[3] = {};
    const auto walk = [&](std::int64_t& sum) {
        for (std::int64_t now = utc("2024-01-01 00:00"); now < utc("2024-02-28 00:00"); now += 3600) {
            std::int64_t next = 0;
            trigger->getNextRunTime(now, next);
            sum += next;
        }
    };
    test::runThreads({[&] { walk(sums[0]); }, [&] { walk(sums[1]); }});
    walk(sums[2]);
    EXPECT_TRUE(sums[0] == sums[2] && sums[1] == sums[2]);
}

} // namespace
} // namespace HBX
