#include "ScheduleTestUtil.h"

#include <climits>
#include <stdexcept>

#include <gtest/gtest.h>

namespace HBX {
namespace {

// Expected values by hand: products modulo 2^32.
TEST(HostileTrigger, DailyCountsIn32Bits) {
    setZone("UTC");
    const std::tuple<const char*, std::int64_t, std::int64_t, std::int64_t, const char*> rows[] = {
        {"days 1", 0, 2147483648, -24854LL * 86400, "d = -2^31, k = -24855 + 1"},
        {"days 1", 0, 4294967295, 86400, "d = -1: k truncates to 1"},
        {"days 24856", 1000, 1000, 1000 + 24856LL * 86400 - 4294967296, "a period below 0"},
        {"days 24855", 0, 2147472000, 2 * 2147472000LL - 4294967296, "the product wraps"},
        {"workdays", 0, 2147472000, 24856LL * 86400, "workdays multiply in 64 bits"},
    };
    for (const auto& [words, start, now, expected, why] : rows) {
        const Trigger trigger = triggerOf(words);
        trigger->startTime = start;
        std::int64_t next = 0;
        EXPECT_EQ(trigger->getNextRunTime(now, next), 0) << why;
        EXPECT_EQ(next, expected) << words << ": " << why;
    }
    EXPECT_EQ(answerOf(*triggerOf("days 33554432"), 1000), "fails") << "a period of 0 seconds";
}

TEST(HostileTrigger, ARefusalOfTheCalendarComesOutOfTheWeeklyTrigger) {
    setZone("UTC");
    std::int64_t next = 5;
    for (const int weekDay : {INT_MIN, -1, 7, 65537}) {
        const Trigger trigger = triggerOf("weeks 1 1," + std::to_string(weekDay));
        EXPECT_THROW(trigger->getNextRunTime(0, next), std::out_of_range) << weekDay;
        trigger->endTime = 10;
        EXPECT_EQ(answerOf(*trigger, 11), "never") << "nothing is computed after the end";
    }
    for (const std::int64_t farYear :
         {253402300800, 2534023008000}) { // 10000, and one that 16 bits would turn
        EXPECT_THROW(triggerOf("weeks 1 1")->getNextRunTime(farYear, next), std::out_of_range) << farYear;
    }
    EXPECT_EQ(next, 5);
}

TEST(HostileTrigger, MonthsGoOnBeyondTheCalendarLibraryAndNumbersThatDoNotCountCostNoTime) {
    setZone("UTC");
    const Trigger trigger = triggerOf("months 15,32");
    trigger->startTime = utc("2024-02-01 10:00");
    EXPECT_EQ(answerOf(*trigger, 253402300800), "10000-02-15 10:00");
    HBXSchedulerMonthlyDayOfWeekTrigger crowded(utc("2024-01-01 10:00"), -1);
    for (int number = -100'000; number < 100'000; ++number) {
        crowded.weekDays.insert(crowded.weekDays.end(), number);
    }
    crowded.monthWeeks = crowded.months = crowded.weekDays;
    EXPECT_EQ(answerOf(crowded, crowded.startTime), "2024-01-02 10:00");
}

TEST(HostileTrigger, ExtremeNumbersAreAnswered) {
    // The two in the middle are the last second of the C library's last year, and the first after it.
    const std::int64_t times[] = {
        INT64_MIN,         INT64_MIN + 1,     -1,       0, INT_MAX, 67768036191676799,
        67768036191676800, INT64_MAX - 86400, INT64_MAX};
    setZone("Europe/Berlin");
    for (const char* words :
         {"once", "days -2147483648", "days 2147483647", "workdays", "weekends", "weeks 52 0,6",
          "weeks -2147483648 1", "months -2147483648,-1,0,5,31,33,2147483647 -2147483648,-1,0,12,2147483647",
          "weekdays 1 1", "weekdays -2147483648,7,2147483647 -2147483648,0,5 -2147483648,2147483647,1"}) {
        const Trigger trigger = triggerOf(words);
        for (const std::int64_t start : times) {
            for (const std::int64_t now : times) {
                trigger->startTime = start;
                std::int64_t next = 5;
                int result = -1;
                try {
                    result = trigger->getNextRunTime(now, next);
                } catch (const std::out_of_range&) {
                    EXPECT_EQ(std::string(words).substr(0, 5), "weeks");
                }
                EXPECT_TRUE(now >= 0 || result == -1) << words;
                EXPECT_TRUE(result == 0 || next == 5) << words;
            }
        }
    }
}

} // namespace
} // namespace HBX
