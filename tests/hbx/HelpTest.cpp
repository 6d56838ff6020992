#include "ProgramTest.h"

namespace HBX {
namespace {

class HelpTest : public ProgramTest {
protected:
    Words areas() const { return matches(out({"help"}), "\n  ([a-z-]+) "); }
    /// The page of every area.
    std::string allHelp() const {
        std::string text;
        for (const std::string& area : areas()) {
            text += out({"help", area});
        }
        return text;
    }
};

TEST_F(HelpTest, EveryRoadLeadsToTheSameHelp) {
    EXPECT_EQ(out({"help"}), out({"--help"}));
    EXPECT_EQ(out({"help"}), out({"-h"}));
    for (const std::string& area : areas()) {
        EXPECT_EQ(out({"help", area}), out({area, "--help"}));
    }
    EXPECT_EQ(out({"help", "env", "list"}), out({"env", "list", "--help"}));
    EXPECT_EQ(out({"help", "env", "list"}).find("hbx env get"), std::string::npos);
}

TEST_F(HelpTest, WrongCallsSayWhyAndHow) {
    const std::string file = sample("requests/schedule-once.xml");
    expectFailures({
        {2, "which area?\n" + out({"help"}), {}},
        {2, "there is no area \"massage\"", {"massage"}},
        {2, "there is no area \"massage\"", {"help", "massage"}},
        {2, "there is no verb \"eat\"", {"help", "env", "eat"}},
        {2, "which verb?", {"message"}},
        {2, "there is no verb \"eat\"", {"message", "eat"}},
        {2, "wrong number of operands", {"message", "show"}},
        {2, "unrecognised option '--inde'", {"message", "show", "--inde", "3", file}},
        {2, "the argument ('two') for option '--indent' is", {"message", "show", "--indent", "two", file}},
        {2, "--indent is 0 to 16", {"message", "show", "--indent=-1", file}},
        {2, "--path begins with \"/\"", {"message", "show", "--path", "data", file}},
        {2, "--to is \"text\" or \"binary\"", {"message", "convert", "--to", "json", file}},
        {2, "--parent: \"web\" is no identifier", {"env", "list", "--parent", "web"}},
        {2, "--state is absent, down, ", {"env", "list", "--state", "dead"}},
        {2, "\"00000000-0000", {"env", "get", "00000000-0000-0000-0000-000000000000"}},
        {2, "--count is 1 to 1000", {"schedule", "next", "--count", "1001", file}},
        {2, "option '--count' cannot be", {"schedule", "next", "--count", "1", "--count", "2", file}},
    });
}

TEST_F(HelpTest, ThePageHoldsEveryCallAndExitCodeThatThereIs) {
    const std::string page = contentOf(HBX_SOURCE_DIR "/docs/hbx.md");
    const Words calls = matches(allHelp(), "usage: (hbx [^\\[]*[^ \\[])");
    EXPECT_GE(calls.size(), 30U);
    for (const std::string& call : calls) {
        EXPECT_TRUE(std::regex_search(page, std::regex("`" + call + "[ `]"))) << call;
    }
    std::string table = "| Code | Meaning |\n|---|---|\n";
    const std::string codes = out({"help", "exit-codes"});
    table += std::regex_replace(codes, std::regex(" *([0-9]+)  (.+)\n"), "| $1 | $2 |\n");
    EXPECT_NE(std::regex_replace(page, std::regex("`"), "").find(table + '\n'), std::string::npos) << table;
}

TEST_F(HelpTest, TheManualHoldsEveryVerbAndOption) {
    const std::string page = out({"help", "--man"});
    const std::string plain = std::regex_replace(page, std::regex(R"(\\-)"), "-");
    EXPECT_EQ(plain.rfind(".TH HBX 1 ", 0), 0U);
    const std::string help = allHelp();
    for (const std::string& call : matches(help, "usage: (.+)\n")) {
        EXPECT_NE(plain.find("\n.SS " + call + '\n'), std::string::npos) << call;
    }
    for (const std::string& option : matches(help, "\n  (?:-. \\[ )?(--[a-z-]+)")) {
        EXPECT_TRUE(std::regex_search(plain, std::regex("fB(-., )?" + option + "[ \\\\]"))) << option;
    }
    for (const std::string& line : matches(page, "\n([.'].*)")) {
        EXPECT_TRUE(std::regex_match(line, std::regex(R"(\.(SH|SS|TP|B|br)( .*)?)"))) << line;
    }
    EXPECT_EQ(page.find("\n\n"), std::string::npos);
}

TEST_F(HelpTest, TheVersionsAreThoseOfWhatIsWritten) {
    const Json formats = json({"--version"})["formats"];
    const auto mark = [&](const char* format) { return "hbx:v=\"" + to_string(formats[format]) + '"'; };
    const std::string request = sample("requests/environments-1-insert-host.xml");
    EXPECT_NE(out({"message", "show", request}).find(mark("message_text")), std::string::npos);
    EXPECT_EQ(out({"message", "convert", request})[4], formats["message_binary"].get<char>());
    EXPECT_EQ(out({"env", "put", request}), "");
    EXPECT_EQ(contentOf(path("home/environments.cache"))[32], formats["cache_file"].get<char>());
    EXPECT_EQ(out({"options", "save", path("kept"), "--", "sid", "well-known"}), "");
    EXPECT_NE(contentOf(path("kept")).find(mark("options_file")), std::string::npos);
    EXPECT_NE(out({"version"}).find("cache file            " + to_string(formats["cache_file"]) + '\n'),
              std::string::npos);
}

TEST_F(HelpTest, OneBadFileDoesNotKeepTheOthersFromBeingAnswered) {
    const std::string good = sample("requests/schedule-once.xml");
    const std::string bad = sample("bad/mismatched-tags.xml");
    const Ended called = run({"call", "--json", good, path("missing"), bad, good});
    EXPECT_EQ(called.code, 3);
    EXPECT_EQ(linesOf(called.err), 2U);
    const Json replies = Json::parse(called.out)["replies"];
    ASSERT_EQ(replies.size(), 2U);
    EXPECT_EQ(replies[1]["file"], good);
    EXPECT_EQ(replies[1]["reply"]["name"], "message");
    expectFailures({{2, "", {"call", "--json", "--binary", good}}});

    const Ended checked = run({"message", "check", "--json", good, bad});
    const Json files = Json::parse(checked.out)["files"];
    EXPECT_EQ(files[0], Json({{"file", good}, {"message", true}}));
    EXPECT_EQ(files[1]["message"], false);
    EXPECT_EQ("hbx: " + files[1]["reason"].get<std::string>() + '\n', checked.err);
}

} // namespace
} // namespace HBX
