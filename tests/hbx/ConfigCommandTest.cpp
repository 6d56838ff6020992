#include "ProgramTest.h"

namespace HBX {
namespace {

const std::string kTree =
    "<data><s><configuration><a>1</a><group><b>two</b><none/></group></configuration></s>"
    "<bare/></data>";

TEST_F(ProgramTest, ConfigListsWhatLiesBelowAPath) {
    const std::string file = write("c.xml", messageText(kTree));
    EXPECT_EQ(out({"config", "list", file}), "/s/a = 1\n/s/group/b = two\n/s/group/none\n");
    EXPECT_EQ(out({"config", "list", file, "/s/a"}), "/s/a = 1\n");
    EXPECT_EQ(out({"config", "list", file, "/bare"}), "");
    const Json expected = {{{"path", "/s/group/b"}, {"value", "two"}},
                           {{"path", "/s/group/none"}, {"value", nullptr}}};
    EXPECT_EQ(json({"config", "list", file, "/s/group"})["settings"], expected);
    EXPECT_GE(linesOf(out({"config", "list", sample("agent.xml")})), 400U);
}

TEST_F(ProgramTest, ConfigGetsWhatItSet) {
    const std::string file = write("c.xml", messageText(kTree));
    const struct {
        const char* path;
        const char* value;
    } rows[] = {{"/s/a", "2"}, {"/s/group/b", ""}, {"/fresh/x/y", "a b\n<c>"}, {"/s/a", "-3"}};
    for (const auto& row : rows) {
        EXPECT_EQ(out({"config", "set", file, "--", row.path, row.value}), "");
        EXPECT_EQ(out({"config", "get", file, row.path}), row.value + std::string("\n"));
        const Json expected = {{"schema", 1}, {"path", row.path}, {"value", row.value}};
        EXPECT_EQ(json({"config", "get", file, row.path}), expected);
    }
    EXPECT_EQ(out({"config", "list", file}),
              "/s/a = -3\n/s/group/b = \n/s/group/none\n/fresh/x/y = a b\n<c>\n");
}

TEST_F(ProgramTest, ConfigSetsOfManyProgramsAtOnceAllCount) {
    const std::string file = write("c.xml", messageText(kTree));
    constexpr int kPrograms = 12;
    std::vector<pid_t> programs;
    for (int i = 0; i < kPrograms; ++i) {
        programs.push_back(start({"config", "set", file, "/s/many/n" + std::to_string(i), "1"}, {}));
    }
    for (const pid_t program : programs) {
        int status = 0;
        EXPECT_EQ(waitpid(program, &status, 0), program);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(linesOf(out({"config", "list", file, "/s/many"})), std::size_t{kPrograms});
}

TEST_F(ProgramTest, ConfigSaysInOneLineWhatIsWrong) {
    const std::string file = write("c.xml", messageText(kTree));
    const std::string bytes = contentOf(file);
    const std::string cut = sample("bad/configuration-cut-off.xml");
    const std::string none = path("none");
    expectFailures({
        {{"config", "get", file, "/s/x"}, 1, file + ": there is no value at /s/x\n"},
        {{"config", "get", file, "/s/group"}, 1, file + ": there is no value at /s/group\n"},
        {{"config", "list", file, "/x"}, 1, file + ": there is no /x\n"},
        {{"config", "get", file, "s/a"}, 2, "PATH begins with \"/\"\n"},
        {{"config", "set", file, "/s//a", "1"}, 3, "/s//a: no setting can be there\n"},
        {{"config", "set", cut, "/s/a", "1"}, 3, cut + ": line 120, column "},
        {{"config", "list", none}, 3, "Cannot open \"" + none + "\": No such file or directory\n"},
        {{"config", "list", path()}, 3, "Cannot read \"" + path() + "\": Is a directory\n"},
    });
    EXPECT_EQ(contentOf(file), bytes);
}

TEST_F(ProgramTest, ConfigRequestsWorkOnTheFileInTheHome) {
    const auto call = [&](const std::string& verb, const std::string& arguments) {
        return run({"call", write("request", messageText("<data><config><" + verb + ">" + arguments + "</" +
                                                         verb + "></config></data>"))});
    };
    EXPECT_NE(call("get", "<path>/console/rows</path>").out.find("<value>50</value>"), std::string::npos);
    EXPECT_EQ(run({"call", sample("requests/config-set.xml")}).code, 0);
    EXPECT_NE(call("get", "<path>/console/rows</path>").out.find("<value>60</value>"), std::string::npos);
    std::filesystem::remove_all(path("home"));
    EXPECT_EQ(call("get", "<path>/console/rows</path>").code, 3);
    EXPECT_EQ(call("list", "<path>/</path>").code, 0) << "without a file there are no settings";
    EXPECT_EQ(call("set", "<path>/console/rows</path><value>1</value>").code, 0);
    EXPECT_EQ(run({"config", "list", path("home/agent.xml")}).out, "/console/rows = 1\n");
    (void)write("home/agent.xml", "<message");
    EXPECT_NE(call("list", "<path>/</path>").out.find("agent.xml: line 1, column "), std::string::npos);
}

} // namespace
} // namespace HBX
