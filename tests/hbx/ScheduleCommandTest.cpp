#include "ProgramTest.h"

#include <nlohmann/json.hpp>

namespace HBX {
namespace {

/// A message with one trigger, deep down; 1704103200 is Monday 2024-01-01 10:00 UTC.
std::string trigger(const std::string& type, const std::string& members) {
    return messageText("<task><id>7</id><plan><trigger hbx:tns='scheduler' hbx:type='" + type +
                       "_trigger'><start_time>1704103200</start_time>" + members +
                       "</trigger></plan></task>");
}

std::string everyMonth() {
    std::string text;
    for (int month = 1; month <= 12; ++month) {
        text += "<month>" + std::to_string(month) + "</month>";
    }
    return text;
}

const std::string kEvery2Days = trigger("daily", "<days_interval>2</days_interval>");
const std::string kMondays = trigger("weekly", "<weeks_interval>1</weeks_interval><week_day>1</week_day>");
const std::string kDay15 = trigger("monthly", "<month_day>15</month_day>" + everyMonth());
const std::string kDay31 = trigger("monthly", "<month_day>31</month_day>" + everyMonth());

TEST_F(ProgramTest, ListsTheNextRuns) {
    const struct {
        const char* name;
        std::string message;
        const char* from;
        const char* out;
        const char* zone = "UTC";
    } rows[] = {
        {"weekly, at a run: that one and then the next", kMondays, "2024-01-08 10:00",
         "Monday 2024-01-08 10:00 +00:00\nMonday 2024-01-15 10:00 +00:00\n"},
        {"once, then over", trigger("once", ""), "2023-12-31",
         "Monday 2024-01-01 10:00 +00:00\nno further run: the schedule is over\n"},
        {"until its end", trigger("daily", "<end_time>1704189600</end_time><days_interval>1</days_interval>"),
         "2024-01-01 10:00", "Tuesday 2024-01-02 10:00 +00:00\nno further run: the schedule is over\n"},
        {"stuck at a month without a 31st", kDay31, "2024-01-01",
         "Wednesday 2024-01-31 10:00 +00:00\n"
         "no further run: the trigger's numbers name no run after Wednesday 2024-01-31 10:00 +00:00\n"},
        {"the end of a month's last run, then back in the past", kDay15, "2024-02-15 10:00",
         "Friday 2024-02-16 10:00 +00:00\n"
         "no further run: the trigger answers a moment in the past, Friday 2024-02-16 10:00 +00:00\n"},
        {"over a clock change", kEvery2Days, "2024-03-29 12:00",
         "Sunday 2024-03-31 12:00 +02:00  (at 12:00, 1 hour later than 11:00)\n"
         "Tuesday 2024-04-02 12:00 +02:00  (at 12:00, 1 hour later than 11:00)\n",
         "Europe/Berlin"},
    };
    for (const auto& row : rows) {
        const std::string file = write("trigger.xml", row.message);
        const Ended ended =
            run({"schedule", "next", file, "--from", row.from, "--count", "2"}, {.zone = row.zone});
        EXPECT_EQ(ended.code, 0) << row.name << ": " << ended.err;
        EXPECT_EQ(ended.out, row.out) << row.name;
    }
}

TEST_F(ProgramTest, SaysWhyThereIsNoRun) {
    const struct {
        std::string message;
        int code;
        const char* reason;
    } rows[] = {
        {trigger("once", ""), 1, "no run: the schedule is over"},
        {kDay15, 1, "no run: the trigger answers a moment in the past, Friday 2024-02-16 10:00 +00:00"},
        {trigger("weekly", "<weeks_interval>0</weeks_interval>"), 3,
         "no run: the trigger's numbers name no run"},
        {trigger("weekly", "<weeks_interval>1</weeks_interval><week_day>7</week_day>"), 3,
         "no run: the calendar refuses: "},
        {trigger("weekly", ""), 3, "/task/plan/trigger: this scheduler:weekly_trigger lacks something"},
        {trigger("hourly", ""), 1, "there is no trigger in it"},
        {"<message", 3, "line 1, column "},
    };
    for (const auto& row : rows) {
        const std::string file = write("trigger.xml", row.message);
        const Ended ended = run({"schedule", "next", file, "--from", "2024-06-01"});
        EXPECT_EQ(ended.code, row.code) << row.reason;
        EXPECT_EQ(ended.err.rfind("hbx: " + file + ": " + row.reason, 0), 0U) << ended.err;
        EXPECT_EQ(ended.out, "");
    }
}

TEST_F(ProgramTest, ReadsMoments) {
    const std::string file = write("trigger.xml", trigger("daily", "<days_interval>1</days_interval>"));
    const std::string third = "Wednesday 2024-01-03 11:00 +01:00\n";
    const std::string fourth = "Thursday 2024-01-04 11:00 +01:00\n";
    const struct {
        const char* from;
        std::string out; ///< empty: refused
    } rows[] = {
        {"1704275999", third},
        {"1704276000", fourth},
        {"2024-01-03 10:59:59", third},
        {"2024-01-03 11:00", fourth},
        {"2024-01-03 09:59:59Z", third},
        {"2024-01-03 10:00Z", fourth},
        {"2024-02-30", ""},
        {"2024-01-03 24:00", ""},
        {"2024-01-03 10:00:60", ""},
        {"2024-01-03  9:00", ""},
        {"2024-01-03 10:00+1", ""},
        {"1969-12-31Z", ""},
        {"-5", ""},
        {"9223372036854775808", ""},
        {"", ""},
        {"now", ""},
    };
    for (const auto& row : rows) {
        const Ended ended = run({"schedule", "next", file, "--count", "1", std::string("--from=") + row.from},
                                {.zone = "Europe/Berlin"});
        EXPECT_EQ(ended.out, row.out) << row.from;
        EXPECT_EQ(ended.code, row.out.empty() ? 2 : 0) << row.from;
    }
}

TEST_F(ProgramTest, ExplainsTheFirstTriggerInWords) {
    const auto task = [](const std::string& message) {
        const std::size_t begin = message.find("<task>");
        return message.substr(begin, message.find("</message>") - begin);
    };
    const std::string both =
        write("two.xml", messageText("<a><b/></a>" + task(kMondays) + task(kEvery2Days)));
    EXPECT_EQ(run({"schedule", "explain", both, "--from", "2024-01-02", "--count", "1"}).out,
              "Every week on Monday at 10:00, from Monday 2024-01-01 10:00 +00:00.\n"
              "Monday 2024-01-08 10:00 +00:00\n");
    EXPECT_EQ(run({"schedule", "explain", write("spent.xml", trigger("once", ""))}).out,
              "Once, on Monday 2024-01-01 10:00 +00:00.\nno further run: the schedule is over\n");
}

TEST_F(ProgramTest, AnswersPrograms) {
    const std::string file = write("trigger.xml", kEvery2Days);
    const Words options = {"-", "--from", "2024-03-31 00:00", "--count", "1", "--json"};
    const nlohmann::json run1 = {{"time", 1711879200},
                                 {"text", "Sunday 2024-03-31 12:00 +02:00"},
                                 {"note", "at 12:00, 1 hour later than 11:00"}};
    for (const std::string verb : {"next", "explain"}) {
        nlohmann::json expected = {{"schema", 1}, {"runs", {run1}}};
        if (verb == "explain") {
            expected["explanation"] = "Every 2 days at 11:00, from Monday 2024-01-01 11:00 +01:00.";
            expected["trigger"] = {{"type", "scheduler:daily_trigger"},
                                   {"start_time", 1704103200},
                                   {"end_time", -1},
                                   {"days_interval", 2},
                                   {"workdays_only", false},
                                   {"weekends_only", false}};
        }
        const Ended ended = run(joined({"schedule", verb}, options), {.in = file, .zone = "Europe/Berlin"});
        EXPECT_EQ(nlohmann::json::parse(ended.out), expected) << ended.err;
    }
}

} // namespace
} // namespace HBX
