#include "ProgramTest.h"

namespace HBX {
namespace {

/// A task with one trigger, deep down; 1704103200 is Monday 2024-01-01 10:00 UTC.
std::string task(const std::string& type, const std::string& members) {
    return "<task><id>7</id><plan><trigger hbx:tns='scheduler' hbx:type='" + type +
           "_trigger'><start_time>1704103200</start_time>" + members + "</trigger></plan></task>";
}

const std::string kEveryDay = task("daily", "<days_interval>1</days_interval>");
const std::string kMondays = task("weekly", "<weeks_interval>1</weeks_interval><week_day>1</week_day>");
const std::string kDay15 = task("monthly", "<month_day>15</month_day><month>1</month><month>2</month>");

TEST_F(ProgramTest, ListsTheNextRunsOrSaysWhyThereIsNone) {
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {task("daily", "<end_time>1704189600</end_time><days_interval>1</days_interval>"), "2024-01-01 10:00",
         "Tuesday 2024-01-02 10:00 +00:00\nno further run: the schedule is over\n"},
        {kDay15, "2024-02-15 10:00", // the end of a month's last run, then back in the past
         "Friday 2024-02-16 10:00 +00:00\n"
         "no further run: the trigger answers a moment in the past, Friday 2024-02-16 10:00 +00:00\n"},
    };
    const std::string file = path("trigger.xml");
    for (const auto& [content, from, printed] : rows) {
        write("trigger.xml", messageText(content));
        EXPECT_EQ(out({"schedule", "next", file, "--from", from, "--count", "2"}), printed);
    }
    const std::tuple<int, std::string, std::string> refused[] = {
        {1, "no run: the schedule is over", task("once", "")},
        {1, "no run: the trigger answers a moment in the past, Friday 2024-02-16", kDay15},
        {3, "no run: the trigger's numbers name no run",
         task("weekly", "<weeks_interval>0</weeks_interval>")},
        {3, "no run: the calendar refuses: ",
         task("weekly", "<weeks_interval>1</weeks_interval><week_day>7</week_day>")},
        {3, "/task/plan/trigger: this scheduler:weekly_trigger lacks something", task("weekly", "")},
        {1, "there is no trigger in it", task("hourly", "")},
        {3, "line 1, column ", "<"},
    };
    for (const auto& [code, reason, content] : refused) {
        write("trigger.xml", messageText(content));
        expectFailures({{code, file + ": " + reason, {"schedule", "next", file, "--from", "2024-06-01"}}});
    }
}

TEST_F(ProgramTest, ReadsMoments) {
    const std::string file = write("trigger.xml", messageText(kEveryDay));
    const std::string third = "Wednesday 2024-01-03 11:00 +01:00\n";
    const std::string fourth = "Thursday 2024-01-04 11:00 +01:00\n";
    const Words words = {"schedule", "next", file, "--count", "1", "--from"};
    const std::pair<const char*, std::string> rows[] = {
        {"1704275999", third},
        {"1704276000", fourth},
        {"2024-01-03 11:00", fourth},
        {"2024-01-03 09:59:59Z", third},
    };
    for (const auto& [from, next] : rows) {
        EXPECT_EQ(out(joined(words, {from}), {.zone = "Europe/Berlin"}), next) << from;
    }
    for (const std::string from : {"2024-02-30", "2024-01-03 24:00", "2024-01-03  9:00", "2024-01-03 10:00+1",
                                   "1969-12-31Z", "9223372036854775808", ""}) {
        expectFailures({{2, "--from: \"" + from + "\" is no moment since 1970", joined(words, {from})}});
    }
    expectFailures({{2, "--from: \"-5\" is no moment", {"schedule", "next", file, "--from=-5"}}});
}

TEST_F(ProgramTest, ExplainsTheFirstTrigger) {
    const std::string both = write("two.xml", messageText("<a><b/></a>" + kEveryDay + kMondays));
    const Streams streams = {.in = both, .zone = "Europe/Berlin"};
    const Words options = {"-", "--from", "2024-03-31 00:00", "--count", "1"};
    EXPECT_EQ(out(joined({"schedule", "explain"}, options), streams),
              "Every day at 11:00, from Monday 2024-01-01 11:00 +01:00.\n"
              "Sunday 2024-03-31 12:00 +02:00  (at 12:00, 1 hour later than 11:00)\n");
    Json expected = Json::parse(R"({"schema": 1, "runs": [{"time": 1711879200,
        "text": "Sunday 2024-03-31 12:00 +02:00", "note": "at 12:00, 1 hour later than 11:00"}]})");
    EXPECT_EQ(json(joined({"schedule", "next"}, options), streams), expected);
    expected["explanation"] = "Every day at 11:00, from Monday 2024-01-01 11:00 +01:00.";
    expected["trigger"] = Json::parse(R"({"type": "scheduler:daily_trigger", "start_time": 1704103200,
        "end_time": -1, "days_interval": 1, "workdays_only": false, "weekends_only": false})");
    EXPECT_EQ(json(joined({"schedule", "explain"}, options), streams), expected);
    EXPECT_EQ(out({"schedule", "explain", write("spent.xml", messageText(task("once", "")))}),
              "Once, on Monday 2024-01-01 10:00 +00:00.\nno further run: the schedule is over\n");
}

} // namespace
} // namespace HBX
