#include "ScheduleTestUtil.h"

#include <climits>

#include <gtest/gtest.h>

#include <HBXFunctionalityCore/time/HBXTimeInterval.h>
#include <HBXFunctionalityCore/time/HBXTimeZone.h>

#include "support/CapturedLog.h"

namespace HBX {
namespace {

TEST(TimeInterval, ShiftsByTheZone) {
    const std::pair<int, std::int64_t> rows[] = {
        {0, 0}, {-530, -19800}, {-45, -2700}, {545, 20700}, {INT_MAX, 21474836LL * 3600 + 2820}};
    for (const auto& [zone, offset] : rows) {
        HBXTimeInterval interval(1000, 2000, zone);
        EXPECT_EQ(interval.getStartTime(), 1000 - offset) << zone;
        EXPECT_EQ(interval.getEndTime(), 2000 - offset) << zone;
        interval.setStartTime(5000);
        interval.setEndTime(6000);
        interval.setZone(0);
        EXPECT_EQ(interval, HBXTimeInterval(5000 + offset, 6000 + offset, 0)) << zone;
    }
}

TEST(TimeInterval, IsMadeNotEmpty) {
    const std::pair<HBXTimeInterval, HBXTimeInterval> rows[] = {
        {{100, 100, 5}, {100, 101, 5}},
        {{INT_MAX, INT_MAX, 5}, {INT_MAX - 1, INT_MAX, 5}},
        {{9, 5, 5}, {9, 5, 5}},
    };
    for (auto [interval, after] : rows) {
        interval.setNotNullInterval();
        EXPECT_EQ(interval, after);
    }
}

TEST(TimeInterval, MovesWithin32BitsAndSaysWhenNot) {
    const std::string kLow = "1 [HBX::HBXTimeInterval::increment] INT_MIN oberflow\n";
    const std::string kHigh = "1 [HBX::HBXTimeInterval::increment] INT_MAX oberflow\n";
    const std::tuple<std::int64_t, std::int64_t, int, std::string> rows[] = {
        {-2147483640, 0, -8, ""},  {-2147483640, 0, -9, kLow}, {0, -2147483640, -10, ""},
        {2147483640, 0, 10, ""},   {0, 2147483640, 7, ""},     {0, 2147483640, 8, kHigh},
        {0, 2147483648, 0, kHigh}, {INT64_MIN, 0, -1, kLow},   {0, INT64_MAX, 1, kHigh},
    };
    test::CapturedLog log;
    for (const auto& [start, end, delta, refusal] : rows) {
        HBXTimeInterval interval(start, end, 0);
        EXPECT_EQ(interval.increment(delta), refusal.empty() ? 0 : -1) << start << ' ' << end;
        EXPECT_EQ(log.take(), refusal);
        const int moved = refusal.empty() ? delta : 0;
        EXPECT_EQ(interval, HBXTimeInterval(start + moved, end + moved, 0));
    }
}

TEST(TimeInterval, TravelsByItsMaskWithTheZoneOfItsEnd) {
    const std::pair<int, HBXTimeInterval> rows[] = {
        {3, {100, 200, -530}}, {1, {100, 8, -530}}, {2, {7, 200, -530}}, {4, {7, 8, 9}}};
    for (const auto& [mask, expected] : rows) {
        const Cursor cursor = test::newCursor();
        EXPECT_EQ(HBXTimeInterval::Writer(mask)(*cursor, HBXTimeInterval(100, 200, -530)), 0);
        HBXTimeInterval interval(7, 8, 9);
        EXPECT_EQ(cursor->getObject(interval, 0), 0);
        EXPECT_EQ(interval, expected) << mask;
    }
    const Cursor cursor = test::newCursor();
    HBXTimeInterval interval;
    cursor->putValueTimeZone(10, 100, 1063);
    cursor->putValueTimeZone(20, 200, 1064);
    EXPECT_EQ(cursor->getObject(interval, 0), 0);
    EXPECT_EQ(interval, HBXTimeInterval(10, 20, 200));
}

TEST(TimeZone, KeepsWhatIsAbsentAndRefusesWhatHasNoValue) {
    const Cursor cursor = test::newCursor();
    const HBXTimeZone berlin{"Europe/Berlin", "Berlin"};
    HBXTimeZone zone = berlin;
    EXPECT_EQ(cursor->getObject(zone, 0), 0);
    EXPECT_EQ(zone, berlin);
    cursor->newChild(1788);
    cursor->seekUp();
    EXPECT_EQ(cursor->getObject(zone, 0), -1);
}

} // namespace
} // namespace HBX
