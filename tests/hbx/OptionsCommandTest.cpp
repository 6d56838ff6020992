#include "ProgramTest.h"

namespace HBX {
namespace {

TEST_F(ProgramTest, SavedCallIsReplayedWithMoreBehindIt) {
    const std::string trigger = sample("requests/schedule-daily-workdays.xml");
    const struct {
        Words saved, more;
    } rows[] = {
        {{"schedule", "next", trigger, "--from=2024-03-28 10:00", "--json"}, {}},
        {{"schedule", "next", "--from", "2024-03-28"}, {"--count", "2", trigger}},
        {{"call", trigger, "--binary"}, {trigger}},
        {{"message", "show", "-"}, {"--indent", "0"}},
    };
    const std::string file = path("options.xml");
    for (const auto& row : rows) {
        (void)out(joined({"options", "save", file, "--"}, row.saved));
        EXPECT_EQ(out(joined({"--options", file}, row.more), {.in = trigger}),
                  out(joined(row.saved, row.more), {.in = trigger}));
    }
}

TEST_F(ProgramTest, OnlyCallsAreSavedAndBadOptionFilesAreTold) {
    const std::string old = write("options.xml", "old");
    const std::string bad = sample("bad/options-two-operands-in-one.xml");
    const std::string cut = write("cut.xml", "<message>\n<option");
    const auto option = [](const std::string& value) {
        return "<option><value>" + value + "</value></option>";
    };
    const std::string self = write("self.xml", messageText(option("--options") + option(path("self.xml"))));
    expectFailures({
        {{"options", "save", old, "--", "schedule"}, 2, "these words name no area and verb\n"},
        {{"options", "save", old, "--", "schedule", "next", "--what"}, 2, "unrecognised option '--what'\n"},
        {{"options", "save", old, "--", "schedule", "next", "--count", "two"},
         2,
         "the argument ('two') for option '--count' is invalid\n"},
        {{"options", "save", old, "--", "config", "set", "f", "/s/a", "--", "-3"},
         2,
         "an operand that looks like an option cannot be kept: -3\n"},
        {{"--options"}, 2, "--options needs a file\n"},
        {{"--options", path("none")}, 3, "Cannot open \"" + path("none")},
        {{"--options", cut}, 3, cut + ": line 2, column "},
        {{"--options", bad}, 3, bad + ": /option: "},
        {{"--options", self}, 2, "there is no area \"--options\"\n"},
        {{"--options", write("none.xml", messageText(""))}, 2, "which area?\n"},
    });
    EXPECT_EQ(contentOf(old), "old");
}

} // namespace
} // namespace HBX
