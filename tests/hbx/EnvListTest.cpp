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
    EXPECT_EQ(env({"list"}).out, heading + bare + host + kHost + '\n' + web + kWeb + '\n');
    const std::pair<Words, Words> rows[] = {
        {{}, {kBare, kHost, kWeb}}, // by title
        {{"--type", "lab"}, {kWeb}},
        {{"--parent", kHost}, {kWeb}},
        {{"--parent", kNull}, {kHost}},
        {{"--state", "3"}, {kWeb}},
        {{"--state", "running", "--parent", kWeb}, {kBare}},
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
    EXPECT_EQ(listed()[2], Json({{"eid", kWeb},
                                 {"title", "web \t[2J\xC2\x9B"},
                                 {"type", "lab"},
                                 {"state", "down"},
                                 {"transition", 0},
                                 {"alert", "red"},
                                 {"parent", kHost}}));
    EXPECT_NE(env({"list", "--type", "lab"}).out.find("  node  "), std::string::npos)
        << "a parent that is not listed is shown by its title too";
}

std::string eidOf(int number) {
    const std::string digits = std::to_string(number);
    return "00000000-0000-0000-0000-" + std::string(12 - digits.size(), '0') + digits;
}

/// The lines below the heading, without what stands between title and identifier.
std::string shapeOf(const std::string& tree) {
    std::istringstream lines(tree.substr(tree.find('\n') + 1));
    std::string shape;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t eid = line.find("00000000-");
        const std::string title = line.substr(0, line.find("  generic"));
        shape += title.substr(0, title.find_last_not_of(' ') + 1) + line.substr(eid + kNull.size()) + '\n';
    }
    return shape;
}

TEST_F(EnvCommandTest, ATreeHoldsEveryEnvironmentOnce) {
    const std::pair<std::vector<Sample>, std::string> rows[] = {
        {{{kHost, kNull, 6, "a"},
          {eidOf(2), kHost, 6, "c"},
          {eidOf(3), kHost, 6, "b"},
          {eidOf(4), eidOf(3), 6, "d"}},
         "a\n├─ b\n│  └─ d\n└─ c\n"},
        {{{eidOf(1), eidOf(9), 6, "orphan"}, {eidOf(2), eidOf(1), 6, "child"}},
         "orphan  parent " + eidOf(9) + " is not listed\n└─ child\n"},
        {{{eidOf(1), eidOf(1), 6, "own parent"}}, "own parent  parents go round in a circle\n"},
        {{{kHost, eidOf(3), 6, "b"},
          {eidOf(2), kHost, 6, "bb"},
          {eidOf(3), kHost, 6, "c"},
          {eidOf(4), eidOf(3), 6, "a"}},
         "c  parents go round in a circle\n├─ a\n└─ b\n   └─ bb\n"},
    };
    for (const auto& [envs, shape] : rows) {
        std::filesystem::remove(cache_);
        put(envs);
        EXPECT_EQ(shapeOf(env({"list", "--tree"}).out), shape);
    }
}

TEST_F(EnvCommandTest, ADeepTreeStaysNarrow) {
    constexpr int kDepth = 3000;
    std::vector<Sample> chain;
    for (int number = 1; number <= kDepth; ++number) {
        chain.push_back({eidOf(number), number == 1 ? kNull : eidOf(number - 1), 6, "x"});
    }
    put(chain);
    const std::string tree = env({"list", "--tree"}).out;
    EXPECT_EQ(linesOf(tree), kDepth + 1U);
    EXPECT_LT(tree.size(), kDepth * 300U);
}

TEST_F(EnvCommandTest, AlertsAreColouredOnATerminalOnly) {
    put({{kHost, kNull, 6, "node"}});
    const auto onTerminal = [this](const char* noColor, const char* terminalKind) {
        const Terminal terminal;
        setenv("NO_COLOR", noColor, 1);
        setenv("TERM", terminalKind, 1);
        EXPECT_EQ(run({"env", "list", "--cache", cache_}, {.out = terminal.name()}).code, 0);
        unsetenv("NO_COLOR");
        return terminal.shown();
    };
    const std::string coloured = "running  \x1b[31mred\x1b[0m    -       " + kHost;
    const std::string plain = "running  red    -       " + kHost;
    EXPECT_NE(onTerminal("", "xterm").find(coloured), std::string::npos);
    EXPECT_NE(onTerminal("1", "xterm").find(plain), std::string::npos);
    EXPECT_NE(onTerminal("", "dumb").find(plain), std::string::npos);
    EXPECT_NE(env({"list"}).out.find(plain), std::string::npos);
}

TEST_F(EnvCommandTest, TheSampleWorldIsOneTree) {
    const std::string world = path("world.xml");
    ASSERT_EQ(std::system(("bash " + sample("world.sh") + " >" + world).c_str()), 0);
    ASSERT_EQ(env({"put", world}).code, 0);
    const std::string shape = env({"list", "--tree"}).out;
    EXPECT_EQ(linesOf(shape), 201U);
    EXPECT_EQ(shape.find("not listed"), std::string::npos);
    EXPECT_EQ(listed({"--type", "host"}).size(), 8U);
}

} // namespace
} // namespace HBX
