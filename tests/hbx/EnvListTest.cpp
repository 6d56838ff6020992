#include "EnvCommandTest.h"
#include "Terminal.h"

namespace HBX {
namespace {

TEST_F(EnvCommandTest, ListsWhatWasPut) {
    putThree();
    EXPECT_EQ(env({"list"}).out,
              "TITLE                                 TYPE     STATE    ALERT  PARENT     IDENTIFIER\n" +
                  kBare + "  generic  running  red    web ?[2J?  " + kBare +
                  "\n"
                  "node                                  host     running  red    -          " +
                  kHost +
                  "\n"
                  "web ?[2J?                             lab      down     red    node       " +
                  kWeb + "\n");
    const struct {
        Words options;
        Words eids;
    } rows[] = {
        {{}, {kBare, kHost, kWeb}}, // by title
        {{"--tree"}, {kBare, kHost, kWeb}},
        {{"--type", "lab"}, {kWeb}},
        {{"--parent", kHost}, {kWeb}},
        {{"--parent", kNull}, {kHost}},
        {{"--state", "running"}, {kBare, kHost}},
        {{"--state", "3"}, {kWeb}},
        {{"--state", "running", "--parent", kWeb}, {kBare}},
        {{"--type", "labs"}, {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(env(joined({"list"}, row.options)).code, row.eids.empty() ? 1 : 0);
        Words eids;
        for (const Json& item : listed(row.options)) {
            eids.push_back(item["eid"]);
        }
        EXPECT_EQ(eids, row.eids);
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
    const struct {
        std::vector<Sample> envs;
        std::string shape;
    } rows[] = {
        {{{eidOf(1), kNull, 6, "a"},
          {eidOf(2), eidOf(1), 6, "c"},
          {eidOf(3), eidOf(1), 6, "b"},
          {eidOf(4), eidOf(3), 6, "d"}},
         "a\n├─ b\n│  └─ d\n└─ c\n"},
        {{{eidOf(1), eidOf(9), 6, "orphan"}, {eidOf(2), eidOf(1), 6, "child"}},
         "orphan  parent " + eidOf(9) + " is not listed\n└─ child\n"},
        {{{eidOf(1), eidOf(1), 6, "own parent"}}, "own parent  parents go round in a circle\n"},
        {{{eidOf(1), eidOf(3), 6, "b"}, {eidOf(2), eidOf(1), 6, "a below"}, {eidOf(3), eidOf(1), 6, "c"}},
         "b  parents go round in a circle\n├─ a below\n└─ c\n"},
    };
    for (const auto& row : rows) {
        std::filesystem::remove(cache_);
        put(row.envs);
        EXPECT_EQ(shapeOf(env({"list", "--tree"}).out), row.shape);
    }
}

TEST_F(EnvCommandTest, ADeepTreeStaysNarrow) {
    constexpr int kDepth = 3000;
    std::vector<Sample> chain;
    for (int number = 1; number <= kDepth; ++number) {
        chain.push_back({eidOf(number), number == 1 ? kNull : eidOf(number - 1), 6, "x"});
    }
    put(chain);
    const Ended ended = env({"list", "--tree"});
    EXPECT_EQ(linesOf(ended.out), kDepth + 1U);
    EXPECT_LT(ended.out.size(), kDepth * 300U);
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
    const struct {
        const char* noColor;
        const char* terminal;
        const std::string& line;
    } rows[] = {{"", "xterm", coloured}, {"1", "xterm", plain}, {"", "dumb", plain}};
    for (const auto& row : rows) {
        const std::string shown = onTerminal(row.noColor, row.terminal);
        EXPECT_NE(shown.find(row.line), std::string::npos) << shown;
    }
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
    for (const char* state : {"down", "suspended", "mounted", "repairing"}) {
        EXPECT_EQ(env({"list", "--state", state}).code, 0) << state;
    }
}

} // namespace
} // namespace HBX
