#include "ScheduleTestUtil.h"

#include <gtest/gtest.h>

namespace HBX {
namespace {

/// Writes a trigger as an element, looks at its type and at the number of its children, and reads it back.
template <class T>
void travel(const char* words, const char* type, int children) {
    const Trigger trigger = triggerOf(words);
    auto& written = dynamic_cast<T&>(*trigger);
    written.startTime = 1000;
    const Cursor cursor = newMessage();
    ASSERT_EQ(cursor->putObject(written, 3071), 0) << words;
    ASSERT_EQ(cursor->seek(3071), 0);
    EXPECT_EQ(cursor->curType(), type);
    T read;
    EXPECT_EQ(cursor->getObject(read, 0), 0) << words;
    EXPECT_EQ(read, written) << words;
    int count = cursor->firstChild() == 0 ? 1 : 0;
    while (count > 0 && cursor->nextSibling() == 0) {
        ++count;
    }
    EXPECT_EQ(count, children) << words;
}

TEST(TriggerMessage, HoldsTheTrigger) {
    travel<HBXSchedulerOnceTrigger>("once", "scheduler:once_trigger", 1);
    travel<HBXSchedulerDailyTrigger>("days 0", "scheduler:daily_trigger", 2);
    travel<HBXSchedulerDailyTrigger>("both", "scheduler:daily_trigger", 3);
    travel<HBXSchedulerDailyTrigger>("neither", "scheduler:daily_trigger", 1);
    travel<HBXSchedulerWeeklyTrigger>("weeks 2 0,6", "scheduler:weekly_trigger", 4);
    travel<HBXSchedulerMonthlyTrigger>("months 1,32", "scheduler:monthly_trigger", 15);
    travel<HBXSchedulerMonthlyDayOfWeekTrigger>("weekdays 1 5 2,3", "scheduler:monthly_day_of_week_trigger",
                                                5);
}

TEST(TriggerMessage, HoldsAnEndOnlyWhenThereIsOne) {
    const struct {
        std::int64_t start, end;
        int written, endThere;
    } rows[] = {{0, -1, 0, -1}, {0, 0, 0, 0}, {5, -2, 0, 0}, {-1, 7, -1, -1}};
    for (const auto& row : rows) {
        const Cursor cursor = newMessage();
        EXPECT_EQ(cursor->putObject(HBXSchedulerOnceTrigger(row.start, row.end), 0), row.written)
            << row.start;
        EXPECT_EQ(cursor->seekPresence(1064), row.endThere) << row.start << ", " << row.end;
        HBXSchedulerOnceTrigger read(3, 4);
        EXPECT_EQ(cursor->getObject(read, 0), row.written);
        EXPECT_EQ(read.endTime, row.written == 0 ? row.end : 4);
    }
}

TEST(TriggerMessage, ReadsADailyTriggerWithoutWhatIsUnreadable) {
    const Cursor cursor = newMessage();
    HBXSchedulerDailyTrigger trigger(3, 4);
    trigger.daysInterval = 9;
    trigger.workdaysOnly = true;
    EXPECT_EQ(cursor->getObject(trigger, 0), -1) << "no start";
    cursor->putValueLongLong(7, 1063);
    cursor->putValue(std::string("late"), 1064);
    cursor->putValue(std::string("many"), 2095);
    EXPECT_EQ(cursor->getObject(trigger, 0), 0);
    EXPECT_EQ(trigger, HBXSchedulerDailyTrigger(7, -1));
}

TEST(TriggerMessage, ReadsAWeeklyTriggerOnlyWhole) {
    const Cursor cursor = newMessage();
    HBXSchedulerWeeklyTrigger trigger;
    cursor->putValueLongLong(7, 1063);
    EXPECT_EQ(cursor->getObject(trigger, 0), -1) << "no interval";
    cursor->putValue(3, 2098);
    for (const int weekDay : {6, 1, 6}) {
        cursor->putValue(weekDay, 1995);
    }
    EXPECT_EQ(cursor->getObject(trigger, 0), 0);
    EXPECT_EQ(trigger.weekDays, (std::set<int>{1, 6}));
    cursor->putValue(std::string("Monday"), 1995);
    EXPECT_EQ(cursor->getObject(trigger, 0), -1);
}

} // namespace
} // namespace HBX
