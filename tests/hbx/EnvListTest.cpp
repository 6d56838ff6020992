#include "EnvCommandTest.h"
#include "Terminal.h"

namespace HBX {
namespace {

TEST_F(EnvCommandTest, ListsWhatWasPut) {
    putThree();
    const std::string heading =
        "TITLE                                 TYPE     STATE    ALERT  PARENT     IDENTIFIER\n";
    const std::string bare = kBare + "  generic  running  red    web ?[2J?  " + kBare + '\n';
    const std::string host = "node                                  host     running  red    -          ";
    const std::string web = "web ?[2J?                             lab      down     red    node       ";
    EXPECT_EQ(out(call({"list"})), heading + bare + host + kHost + '\n' + web + kWeb + '\n');
    const std::pair<Words, Words> rows[] = {
        {{}, {kBare, kHost, kWeb}}, // by title
        {{"--type", "lab"}, {kWeb}},    {{"--parent", kHost}, {kWeb}},
        {{"--parent", kNull}, {kHost}}, {{"--state", "running", "--parent", kWeb}, {kBare}},
        {{"--type", "labs"}, {}},
    };
    for (const auto& [options, expected] : rows) {
        EXPECT_EQ(env(joined({"list"}, options)).code, expected.empty() ? 1 : 0);
        Words eids;
        for (const Json& item : listed(options)) {
            eids.push_back(item["eid"]);
        }
        EXPECT_EQ(eids, expected);
    }
    Json expected = {{"eid", kWeb}, {"title", "web \t[2J\xC2\x9B"}, {"type", "lab"}, {"state", "down"}};
    expected.update({{"transition", 0}, {"alert", "red"}, {"parent", kHost}});
    EXPECT_EQ(listed()[2], expected);
    EXPECT_NE(env({"list", "--type", "lab"}).out.find("  node  "), std::string::npos)
        << "a parent that is not listed is shown by its title too";
}

std::string eidOf(int number) {
    const std::string digits = std::to_string(number);
    return kNull.substr(0, kNull.size() - digits.size()) + digits;
}

/// The lines below the heading, without what stands between title and identifier.
std::string shapeOf(const std::string& tree) {
    return std::regex_replace(tree.substr(tree.find('\n') + 1), std::regex(" +generic.*?00000000-[-0-9]{27}"),
                              "");
}

TEST_F(EnvCommandTest, ATreeHoldsEveryEnvironmentOnceAndStaysNarrow) {
    constexpr int kDepth = 3000;
    std::vector<Sample> chain = {{kHost, kNull, "x"}};
    while (chain.size() < kDepth) {
        chain.push_back({eidOf(static_cast<int>(chain.size()) + 1), chain.back().eid, "x"});
    }
    put(chain);
    const std::string deep = env({"list", "--tree"}).out;
    EXPECT_EQ(linesOf(deep), kDepth + 1U);
    EXPECT_LT(deep.size(), kDepth * 300U);

    const std::string orphan = "orphan  parent " + eidOf(9) + " is not listed\n└─ child\n";
    const std::pair<std::vector<Sample>, std::string> rows[] = {
        {{{kHost, kNull, "a"}, {kWeb, kHost, "c"}, {kBare, kHost, "b"}, {eidOf(4), kBare, "d"}},
         "a\n├─ b\n│  └─ d\n└─ c\n"},
        {{{kHost, eidOf(9), "orphan"}, {kWeb, kHost, "child"}}, orphan},
        {{{kHost, kHost, "own parent"}}, "own parent  parents go round in a circle\n"},
        {{{kHost, kBare, "b"}, {kWeb, kHost, "bb"}, {kBare, kHost, "c"}, {eidOf(4), kBare, "a"}},
         "c  parents go round in a circle\n├─ a\n└─ b\n   └─ bb\n"},
    };
    for (const auto& [envs, shape] : rows) {
        std::filesystem::remove(cache_);
        put(envs);
        EXPECT_EQ(shapeOf(env({"list", "--tree"}).out), shape);
    }
}

TEST_F(EnvCommandTest, AlertsAreColouredOnATerminalOnly) {
    put({{kHost, kNull, "node"}});
    const std::string coloured = "running  \x1b[31mred\x1b[0m    -       " + kHost;
    const std::string plain = "running  red    -       " + kHost;
    const std::tuple<const char*, const char*, std::string> rows[] = {
        {"", "xterm", coloured}, {"1", "xterm", plain}, {"", "dumb", plain}};
    for (const auto& [noColor, kind, line] : rows) {
        setenv("NO_COLOR", noColor, 1);
        setenv("TERM", kind, 1);
        const Terminal terminal;
        EXPECT_EQ(run(call({"list"}), {.out = terminal.name()}).code, 0);
        EXPECT_NE(terminal.shown().find(line), std::string::npos) << noColor << kind;
    }
}

TEST_F(EnvCommandTest, TheSampleWorldIsOneTree) {
    const std::string world = path("world.xml");
    ASSERT_EQ(std::system(("bash " + sample("world.sh") + " >" + world).c_str()), 0);
    EXPECT_EQ(out(call({"put", world})), "");
    const std::string tree = out(call({"list", "--tree"}));
    EXPECT_EQ(linesOf(tree), 201U);
    EXPECT_EQ(tree.find("not listed"), std::string::npos);
    EXPECT_EQ(listed({"--type", "host"}).size(), 8U);
}

} // namespace
} // namespace HBX
