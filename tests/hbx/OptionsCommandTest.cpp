#include "ProgramTest.h"

namespace HBX {
namespace {

TEST_F(ProgramTest, SavedCallIsReplayedWithMoreBehindIt) {
    const std::string trigger = sample("requests/schedule-daily-workdays.xml");
    const std::pair<Words, Words> rows[] = {
        {{"schedule", "next", trigger, "--from=2024-03-28 10:00", "--json"}, {}},
        {{"schedule", "next", "--from", "2024-03-28"}, {"--count", "2", trigger}},
        {{"call", trigger, "--binary"}, {trigger}},
        {{"message", "show", "-"}, {"--indent", "0"}},
    };
    const std::string file = path("options.xml");
    for (const auto& [saved, more] : rows) {
        EXPECT_EQ(out(joined({"options", "save", file, "--"}, saved)), "");
        EXPECT_EQ(out(joined({"--options", file}, more), {.in = trigger}),
                  out(joined(saved, more), {.in = trigger}));
    }
}

TEST_F(ProgramTest, OnlyCallsAreSavedAndBadOptionFilesAreTold) {
    const std::string old = write("options.xml", "old");
    const Words save = {"options", "save", old, "--"};
    expectFailures({
        {2, "these words name no area and verb\n", joined(save, {"schedule"})},
        {2, "unrecognised option '--what'\n", joined(save, {"schedule", "next", "--what"})},
        {2, "an operand that looks like an option cannot be kept: -3\n",
         joined(save, {"config", "get", "--", "-3"})},
    });
    EXPECT_EQ(contentOf(old), "old");

    const std::string option = "<option><value>--options</value></option><option><value>f</value></option>";
    const std::string cut = write("cut.xml", "<message>\n<option");
    const std::string bad = sample("bad/options-two-operands-in-one.xml");
    expectFailures({
        {2, "--options needs a file\n", {"--options"}},
        {3, "Cannot open \"" + path("none"), {"--options", path("none")}},
        {3, cut + ": line 2, column ", {"--options", cut}},
        {3, bad + ": /option: ", {"--options", bad}},
        {2, "there is no area \"--options\"\n", {"--options", write("self.xml", messageText(option))}},
        {2, "which area?\n", {"--options", write("none.xml", messageText(""))}},
    });
}

} // namespace
} // namespace HBX
