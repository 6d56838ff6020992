#include "ProgramTest.h"

#include <list>

namespace HBX {
namespace {

const std::string kTree =
    "<data><s><configuration><a>1</a><group><b>two</b><none/></group></configuration></s>"
    "<bare/></data>";

TEST_F(ProgramTest, ConfigListsAndGetsWhatItSet) {
    const std::string file = write("c.xml", messageText(kTree));
    EXPECT_EQ(out({"config", "list", file}), "/s/a = 1\n/s/group/b = two\n/s/group/none\n");
    EXPECT_EQ(out({"config", "list", file, "/s/a"}), "/s/a = 1\n");
    EXPECT_EQ(out({"config", "list", file, "/bare"}), "");
    EXPECT_EQ(
        json({"config", "list", file, "/s/group"})["settings"],
        Json::parse(R"([{"path": "/s/group/b", "value": "two"}, {"path": "/s/group/none", "value": null}])"));
    EXPECT_GE(linesOf(out({"config", "list", sample("agent.xml")})), 400U);

    const std::pair<std::string, std::string> rows[] = {
        {"/s/a", "2"}, {"/s/group/b", ""}, {"/fresh/x/y", "a b\n<c>"}, {"/s/a", "-3"}};
    for (const auto& [path, value] : rows) {
        EXPECT_EQ(out({"config", "set", file, "--", path, value}), "");
        EXPECT_EQ(out({"config", "get", file, path}), value + '\n');
        EXPECT_EQ(json({"config", "get", file, path}),
                  (Json{{"schema", 1}, {"path", path}, {"value", value}}));
    }
    EXPECT_EQ(out({"config", "list", file}),
              "/s/a = -3\n/s/group/b = \n/s/group/none\n/fresh/x/y = a b\n<c>\n");
}

TEST_F(ProgramTest, ConfigSetsOfManyProgramsAtOnceAllCount) {
    const std::string file = write("c.xml", messageText(kTree));
    std::list<test::ChildProcess> programs;
    for (int number = 0; number < 12; ++number) {
        const std::string setting = "/s/many/n" + std::to_string(number);
        programs.emplace_back([&] { return execute({"config", "set", file, setting, "1"}, {}); });
    }
    for (test::ChildProcess& program : programs) {
        EXPECT_EQ(program.wait(), 0);
    }
    EXPECT_EQ(linesOf(out({"config", "list", file, "/s/many"})), programs.size());
}

TEST_F(ProgramTest, ConfigSaysInOneLineWhatIsWrong) {
    const std::string file = write("c.xml", messageText(kTree));
    const std::string bytes = contentOf(file);
    const std::string cut = sample("bad/configuration-cut-off.xml");
    const std::string none = path("none");
    expectFailures({
        {1, file + ": there is no value at /s/x\n", {"config", "get", file, "/s/x"}},
        {1, file + ": there is no value at /s/group\n", {"config", "get", file, "/s/group"}},
        {1, file + ": there is no /x\n", {"config", "list", file, "/x"}},
        {2, "PATH begins with \"/\"\n", {"config", "get", file, "s/a"}},
        {3, "/s//a: no setting can be there\n", {"config", "set", file, "/s//a", "1"}},
        {3, cut + ": line 120, column ", {"config", "set", cut, "/s/a", "1"}},
        {3, "Cannot open \"" + none + "\": No such file or directory\n", {"config", "list", none}},
        {3, "Cannot read \"" + path() + "\": Is a directory\n", {"config", "list", path()}},
    });
    EXPECT_EQ(contentOf(file), bytes);
}

TEST_F(ProgramTest, ConfigRequestsWorkOnTheFileInTheHome) {
    const auto call = [&](const std::string& verb) {
        return run({"call", write("request", messageText("<data><config>" + verb + "</config></data>"))});
    };
    const std::string get = "<get><path>/console/rows</path></get>";
    const std::string list = "<list><path>/</path></list>";
    EXPECT_NE(call(get).out.find("<value>50</value>"), std::string::npos);
    EXPECT_EQ(run({"call", sample("requests/config-set.xml")}).code, 0);
    EXPECT_NE(call(get).out.find("<value>60</value>"), std::string::npos);
    std::filesystem::remove_all(path("home"));
    EXPECT_EQ(call(get).code, 3);
    EXPECT_EQ(call(list).code, 0) << "without a file there are no settings";
    EXPECT_EQ(call("<set><path>/console/rows</path><value>1</value></set>").code, 0);
    EXPECT_EQ(out({"config", "list", path("home/agent.xml")}), "/console/rows = 1\n");
    write("home/agent.xml", "<message");
    EXPECT_NE(call(list).out.find("agent.xml: line 1, column "), std::string::npos);
}

} // namespace
} // namespace HBX
