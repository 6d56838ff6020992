#include "ScheduleTestUtil.h"

#include <array>
#include <regex>

#include <gtest/gtest.h>

namespace HBX {
namespace {

/// What a trigger without its times writes, from its type on.
template <class T>
std::string written(const char* words) {
    const Cursor cursor = test::newCursor();
    EXPECT_EQ(cursor->putObject(dynamic_cast<const T&>(*triggerOf(words)), 3071), 0);
    const std::string text =
        std::regex_replace(test::contentText(*cursor), std::regex(" hbx:ns=\"[a-z]+\""), "");
    return text.substr(text.find("type=") + 6);
}

TEST(TriggerMessage, HoldsTheTrigger) {
    EXPECT_EQ(written<HBXSchedulerDailyTrigger>("days 0"),
              "daily_trigger\"><start_time>0</start_time><days_interval>0</days_interval></trigger>");
    EXPECT_EQ(written<HBXSchedulerDailyTrigger>("both"),
              "daily_trigger\"><start_time>0</start_time><workdays_only/><weekends_only/></trigger>");
    EXPECT_EQ(written<HBXSchedulerMonthlyDayOfWeekTrigger>("weekdays 1,3 5 2"),
              "monthly_day_of_week_trigger\"><start_time>0</start_time><week_day>1</week_day>"
              "<week_day>3</week_day><month_week>5</month_week><month>2</month></trigger>");
}

TEST(TriggerMessage, HoldsAnEndOnlyWhenThereIsOne) {
    const std::array<std::int64_t, 4> rows[] = {{0, -1, 0, -1}, {0, 0, 0, 0}, {5, -2, 0, 0}, {-1, 7, -1, -1}};
    for (const auto& [start, end, written, endThere] : rows) {
        const Cursor cursor = test::newCursor();
        EXPECT_EQ(cursor->putObject(HBXSchedulerOnceTrigger(start, end), 0), written) << start;
        EXPECT_EQ(cursor->seekPresence(1064), endThere) << start << ", " << end;
        HBXSchedulerOnceTrigger read(3, 4);
        EXPECT_EQ(cursor->getObject(read, 0), written);
        EXPECT_EQ(read.endTime, written == 0 ? end : 4);
    }
}

TEST(TriggerMessage, ReadsWhatIsThereAndAWeeklyTriggerOnlyWhole) {
    const Cursor cursor = test::newCursor();
    HBXSchedulerWeeklyTrigger weekly;
    HBXSchedulerDailyTrigger daily(3, 4);
    daily.daysInterval = 9;
    daily.workdaysOnly = true;
    EXPECT_EQ(cursor->getObject(daily, 0), -1) << "no start";
    cursor->putValueLongLong(7, 1063);
    EXPECT_EQ(cursor->getObject(weekly, 0), -1) << "no interval";
    cursor->putValue("late", 1064);
    cursor->putValue("many", 2095);
    EXPECT_EQ(cursor->getObject(daily, 0), 0);
    EXPECT_EQ(daily, HBXSchedulerDailyTrigger(7, -1));
    cursor->putValue(3, 2098);
    cursor->putValue(6, 1995);
    EXPECT_EQ(cursor->getObject(weekly, 0), 0);
    EXPECT_EQ(weekly.weekDays, std::set<int>{6});
    cursor->putValue("Monday", 1995);
    EXPECT_EQ(cursor->getObject(weekly, 0), -1);
}

} // namespace
} // namespace HBX
