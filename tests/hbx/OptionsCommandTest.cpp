#include "ProgramTest.h"

namespace HBX {
namespace {

TEST_F(ProgramTest, SavedCallIsReplayedWithMoreBehindIt) {
    const std::string trigger = sample("requests/schedule-daily-workdays.xml");
    const std::string config = sample("agent.xml");
    const struct {
        Words saved, more;
    } rows[] = {
        {{"schedule", "next", trigger, "--from=2024-03-28 10:00", "--json"}, {}},
        {{"schedule", "next", "--from", "2024-03-28"}, {"--count", "2", trigger}},
        {{"config", "get", config}, {"/system/log_level", "--json"}},
        {{"call", trigger, "--binary"}, {trigger}},
        {{"message", "show", "-"}, {"--indent", "0"}},
    };
    const std::string file = path("options.xml");
    for (const auto& row : rows) {
        const Ended saved = run(joined({"options", "save", file, "--"}, row.saved));
        ASSERT_EQ(saved.code, 0) << saved.err;
        const Ended expected = run(joined(row.saved, row.more), {.in = trigger});
        const Ended ended = run(joined({"--options", file}, row.more), {.in = trigger});
        EXPECT_EQ(expected.code, 0) << expected.err;
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(ended.out, expected.out);
    }
}

TEST_F(ProgramTest, OnlyCallsAreSaved) {
    const std::string file = write("options.xml", "old");
    const struct {
        Words words;
        const char* error;
    } rows[] = {
        {{"massage", "show"}, "hbx: these words name no area and verb\n"},
        {{"schedule"}, "hbx: these words name no area and verb\n"},
        {{"schedule", "next", "--what"}, "hbx: unrecognised option '--what'\n"},
        {{"schedule", "next", "--count", "two"},
         "hbx: the argument ('two') for option '--count' is invalid\n"},
        {{"config", "set", "f", "/s/a", "--", "-3"},
         "hbx: an operand that looks like an option cannot be kept: -3\n"},
    };
    for (const auto& row : rows) {
        const Ended ended = run(joined({"options", "save", file, "--"}, row.words));
        EXPECT_EQ(ended.code, 2) << ended.err;
        EXPECT_EQ(ended.err, row.error);
        EXPECT_EQ(contentOf(file), "old");
    }
}

TEST_F(ProgramTest, BadOptionFilesAreToldInOneLine) {
    const auto option = [](const std::string& value) {
        return "<option><value>" + value + "</value></option>";
    };
    const std::string bad = sample("bad/options-two-operands-in-one.xml");
    const std::string cut = write("cut.xml", "<message>\n<option");
    const std::string self = path("self.xml");
    (void)write("self.xml", messageText(option("--options") + option(self)));
    const struct {
        Words words;
        int code;
        std::string error; ///< its beginning
    } rows[] = {
        {{"--options"}, 2, "hbx: --options needs a file\n"},
        {{"--options", path("none")}, 3, "hbx: Cannot open \"" + path("none")},
        {{"--options", cut}, 3, "hbx: " + cut + ": line 2, column "},
        {{"--options", bad}, 3, "hbx: " + bad + ": /option: "},
        {{"--options", self}, 2, "hbx: there is no area \"--options\"\n"},
        {{"--options", write("none.xml", messageText(""))}, 2, "hbx: which area?\n"},
    };
    for (const auto& row : rows) {
        const Ended ended = run(row.words);
        EXPECT_EQ(ended.code, row.code) << ended.err;
        EXPECT_EQ(ended.err.rfind(row.error, 0), 0U) << ended.err;
        EXPECT_TRUE(row.code == 2 || linesOf(ended.err) == 1) << ended.err;
    }
}

} // namespace
} // namespace HBX
