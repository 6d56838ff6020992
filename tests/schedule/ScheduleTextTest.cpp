#include "ScheduleTestUtil.h"

#include <array>

#include <gtest/gtest.h>

#include <HBXFunctionalityCore/schedule/HBXScheduleText.h>

namespace HBX {
namespace {

TEST(ScheduleText, SaysWhatATriggerDoesOrWhyNothing) {
    setZone("UTC");
    const std::pair<const char*, std::string> rows[] = {
        {"days 2", "Every 2 days"},
        {"days 24856", "Every 24856 days (wrapped to 32 bits of seconds)"},
        {"workdays", "Every Monday to Friday"},
        {"days 0", "Every Saturday and Sunday (neither an interval nor workdays are set)"},
        {"weeks 2 1,3,5", "Every 2 weeks (counted anew from 1 January) on Monday, Wednesday and Friday"},
        {"months 1,15,32", "On day 1, day 15 and the last day of every month"},
        {"weekdays 2 2,4", "On the second and fourth Tuesday of every month"},
        {"weeks 0 1", "Never: the interval of 0 weeks is outside 1 to 52."},
        {"weeks 1 -", "Never: no weekday is given."},
        {"weeks 1 1,7", "Never: a weekday is outside 0 to 6."},
        {"months 1 -", "Never: no month is given."},
        {"weekdays 1 6", "Never: no week of a month is given."},
    };
    for (const auto& [text, words] : rows) {
        const Trigger trigger = triggerOf(text);
        trigger->startTime = utc("2024-01-01 10:00");
        EXPECT_EQ(describeTrigger(*trigger),
                  words.back() == '.' ? words : words + " at 10:00, from Monday 2024-01-01 10:00 +00:00.");
    }
}

TEST(ScheduleText, SaysMoments) {
    setZone("America/St_Johns");
    EXPECT_EQ(describeMoment(-1), "never");
    EXPECT_EQ(describeMoment(utc("2024-07-01 12:00:05")), "Monday 2024-07-01 09:30:05 -02:30");
    EXPECT_EQ(describeMoment(INT64_MAX), "moment 9223372036854775807");
    EXPECT_EQ(describeTrigger(HBXSchedulerTrigger()), "Never: this kind of trigger has no runs.");
}

TEST(ScheduleText, SaysHowARunDepartsFromTheRule) {
    setZone("Europe/Berlin");
    const std::array<std::string, 4> rows[] = {
        {"2024-03-29 09:00", "2024-03-30 09:00", "2024-03-31 09:00",
         "at 11:00, 1 hour later than 10:00 and the clock was set 1 hour forward since the run before"},
        {"2024-03-29 09:00", "2024-03-31 09:00", "2024-04-01 09:00", "at 11:00, 1 hour later than 10:00"},
        {"2024-03-29 09:00", "2024-10-26 08:00", "2024-10-27 09:00",
         "the clock was set 1 hour back since the run before"},
        {"2024-10-25 22:30", "2024-10-28 22:30", "2024-10-29 22:30", "at 23:30, 1 hour earlier than 00:30"},
    };
    for (const auto& [start, previous, run, note] : rows) {
        const HBXSchedulerDailyTrigger trigger(utc(start), -1);
        EXPECT_EQ(clockChangeNote(trigger, utc(run), utc(previous)), note) << run;
        EXPECT_EQ(clockChangeNote(trigger, -1, utc(previous)), "");
    }
}

} // namespace
} // namespace HBX
