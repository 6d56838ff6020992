#include "ProgramTest.h"

#include <regex>

namespace HBX {
namespace {

/// What the first group of a pattern matches, everywhere in a text.
Words matches(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    Words found;
    for (std::sregex_iterator it(text.begin(), text.end(), expression); it != std::sregex_iterator(); ++it) {
        found.push_back((*it)[1]);
    }
    return found;
}

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
    const std::string request = sample("requests/environments-1-insert-host.xml");
    EXPECT_EQ(out({"message", "convert", request})[4], formats["message_binary"].get<char>());
    (void)out({"env", "put", request});
    EXPECT_EQ(contentOf(path("home/environments.cache"))[32], formats["cache_file"].get<char>());
    EXPECT_NE(out({"version"}).find("cache file            " + to_string(formats["cache_file"]) + '\n'),
              std::string::npos);
}

TEST_F(HelpTest, EveryDocumentBeginsWithItsSchema) {
    const std::string config = sample("agent.xml");
    const std::string request = sample("requests/environments-1-insert-host.xml");
    const std::string trigger = sample("requests/schedule-once.xml");
    const std::string voc = sample("vocabulary/hbagent.voc.windows");
    ASSERT_EQ(run({"env", "put", request}).code, 0);
    const std::pair<std::string, Words> rows[] = {
        {"backup-uri parse", {"backup://a/b/c"}},
        {"backup-uri make", {"a/b"}},
        {"call", {trigger, request}},
        {"config list", {config, "/console"}},
        {"config get", {config, "/console/port"}},
        {"env list", {}},
        {"env get", {"4b7e0a91-52c3-4f0d-8d1e-2a9c6f3b7e10"}},
        {"env stat", {}},
        {"env readers", {}},
        {"env check", {}},
        {"env watch", {"--timeout", "0"}},
        {"message show", {trigger}},
        {"message check", {trigger}},
        {"message diff", {trigger, trigger}},
        {"record list", {}},
        {"record describe", {"HBXToken"}},
        {"schedule next", {trigger, "--from", "2000-01-01"}},
        {"schedule explain", {trigger, "--from", "2000-01-01"}},
        {"sid parse", {"S-1-5-7"}},
        {"sid local", {"7", "--eid", "00000000-0000-0000-0000-000000000001"}},
        {"sid well-known", {}},
        {"voc features", {voc}},
        {"voc categories", {voc}},
        {"voc has", {"vocversion", voc}},
        {"version", {}},
    };
    Words tried;
    for (const auto& [call, arguments] : rows) {
        tried.push_back("hbx " + call);
        const std::string text = out(joined(joined(matches(call, "([^ ]+)"), arguments), {"--json"}));
        const auto document = nlohmann::ordered_json::parse(text, nullptr, false);
        EXPECT_TRUE(text.empty() || (document.begin().key() == "schema" && document["schema"] == 1)) << text;
    }
    Words offered;
    for (const std::string& call : matches(allHelp(), "usage: (hbx [^\\[]*[^ \\[])")) {
        const std::string help = out(joined(matches(call.substr(3), "([^ ]+)"), {"--help"}));
        offered.insert(offered.end(), help.find("--json") != std::string::npos ? 1 : 0, call);
    }
    EXPECT_EQ(tried, offered) << "a verb that has --json is missing above";
}

TEST_F(HelpTest, RepliesAndChecksAreGivenAsJson) {
    const std::string good = sample("requests/schedule-once.xml");
    const std::string bad = sample("bad/mismatched-tags.xml");
    const Ended called = run({"call", "--json", good, path("missing"), bad, good});
    EXPECT_EQ(called.code, 3);
    EXPECT_EQ(linesOf(called.err), 2U) << "the others are answered";
    const Json replies = Json::parse(called.out)["replies"];
    ASSERT_EQ(replies.size(), 2U);
    EXPECT_EQ(replies[1]["file"], good);
    EXPECT_EQ(replies[1]["reply"]["name"], "message");
    expectFailures({{{"call", "--json", "--binary", good}, 2, ""}});

    const Ended checked = run({"message", "check", "--json", good, bad});
    const Json files = Json::parse(checked.out)["files"];
    EXPECT_EQ(files[0], Json({{"file", good}, {"message", true}}));
    EXPECT_EQ(files[1]["message"], false);
    EXPECT_EQ("hbx: " + files[1]["reason"].get<std::string>() + '\n', checked.err);
}

} // namespace
} // namespace HBX
