#include "ProgramTest.h"

namespace HBX {
namespace {

/// A message with one trigger, deep down; 1704103200 is Monday 2024-01-01 10:00 UTC.
std::string trigger(const std::string& type, const std::string& members) {
    return messageText("<task><id>7</id><plan><trigger hbx:tns='scheduler' hbx:type='" + type +
                       "_trigger'><start_time>1704103200</start_time>" + members +
                       "</trigger></plan></task>");
}

const std::string kEvery2Days = trigger("daily", "<days_interval>2</days_interval>");
const std::string kMondays = trigger("weekly", "<weeks_interval>1</weeks_interval><week_day>1</week_day>");

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
        {"until its end", trigger("daily", "<end_time>1704189600</end_time><days_interval>1</days_interval>"),
         "2024-01-01 10:00", "Tuesday 2024-01-02 10:00 +00:00\nno further run: the schedule is over\n"},
        {"over a clock change", kEvery2Days, "2024-03-29 12:00",
         "Sunday 2024-03-31 12:00 +02:00  (at 12:00, 1 hour later than 11:00)\n"
         "Tuesday 2024-04-02 12:00 +02:00  (at 12:00, 1 hour later than 11:00)\n",
         "Europe/Berlin"},
    };
    for (const auto& row : rows) {
        const std::string file = write("trigger.xml", row.message);
        const Words words = {"schedule", "next", file, "--from", row.from, "--count", "2"};
        EXPECT_EQ(out(words, {.zone = row.zone}), row.out) << row.name;
    }
}

TEST_F(ProgramTest, SaysWhyThereIsNoRun) {
    const struct {
        int code;
        const char* reason;
        std::string message;
    } rows[] = {
        {1, "no run: the schedule is over", trigger("once", "")},
        {3, "no run: the trigger's numbers name no run",
         trigger("weekly", "<weeks_interval>0</weeks_interval>")},
        {3, "no run: the calendar refuses: ",
         trigger("weekly", "<weeks_interval>1</weeks_interval><week_day>7</week_day>")},
        {3, "/task/plan/trigger: this scheduler:weekly_trigger lacks something", trigger("weekly", "")},
        {1, "there is no trigger in it", trigger("hourly", "")},
        {3, "line 1, column ", "<message"},
    };
    for (const auto& row : rows) {
        const std::string file = write("trigger.xml", row.message);
        const Words words = {"schedule", "next", file, "--from", "2024-06-01"};
        expectFailures({{words, row.code, file + ": " + row.reason}});
    }
}

TEST_F(ProgramTest, ReadsMoments) {
    const std::string file = write("trigger.xml", trigger("daily", "<days_interval>1</days_interval>"));
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
    for (const char* from : {"2024-02-30", "2024-01-03 24:00", "2024-01-03  9:00", "2024-01-03 10:00+1",
                             "1969-12-31Z", "9223372036854775808", ""}) {
        expectFailures({{joined(words, {from}), 2, ""}});
    }
}

TEST_F(ProgramTest, ExplainsTheFirstTrigger) {
    const auto task = [](const std::string& message) {
        const std::size_t begin = message.find("<task>");
        return message.substr(begin, message.find("</message>") - begin);
    };
    const std::string both =
        write("two.xml", messageText("<a><b/></a>" + task(kEvery2Days) + task(kMondays)));
    const Streams streams = {.in = both, .zone = "Europe/Berlin"};
    const Words options = {"-", "--from", "2024-03-31 00:00", "--count", "1"};
    EXPECT_EQ(out(joined({"schedule", "explain"}, options), streams),
              "Every 2 days at 11:00, from Monday 2024-01-01 11:00 +01:00.\n"
              "Sunday 2024-03-31 12:00 +02:00  (at 12:00, 1 hour later than 11:00)\n");
    Json expected = Json::parse(R"({"schema": 1, "runs": [{"time": 1711879200,
        "text": "Sunday 2024-03-31 12:00 +02:00", "note": "at 12:00, 1 hour later than 11:00"}]})");
    EXPECT_EQ(json(joined({"schedule", "next"}, options), streams), expected);
    expected["explanation"] = "Every 2 days at 11:00, from Monday 2024-01-01 11:00 +01:00.";
    expected["trigger"] = Json::parse(R"({"type": "scheduler:daily_trigger", "start_time": 1704103200,
        "end_time": -1, "days_interval": 2, "workdays_only": false, "weekends_only": false})");
    EXPECT_EQ(json(joined({"schedule", "explain"}, options), streams), expected);
    EXPECT_EQ(out({"schedule", "explain", write("spent.xml", trigger("once", ""))}),
              "Once, on Monday 2024-01-01 10:00 +00:00.\nno further run: the schedule is over\n");
}

} // namespace
} // namespace HBX
