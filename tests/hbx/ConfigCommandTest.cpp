#include "ProgramTest.h"

#include <nlohmann/json.hpp>

namespace HBX {
namespace {

const std::string kTree =
    "<data><s><configuration><a>1</a><group><b>two</b><none/></group></configuration></s>"
    "<bare/></data>";

TEST_F(ProgramTest, ConfigListsWhatLiesBelowAPath) {
    const std::string file = write("c.xml", messageText(kTree));
    const struct {
        Words path;
        const char* out;
    } rows[] = {
        {{}, "/s/a = 1\n/s/group/b = two\n/s/group/none\n"},
        {{"/s/a"}, "/s/a = 1\n"},
        {{"/bare"}, ""},
    };
    for (const auto& row : rows) {
        const Ended ended = run(joined({"config", "list", file}, row.path));
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(ended.out, row.out);
    }
    const nlohmann::json expected = {{{"path", "/s/group/b"}, {"value", "two"}},
                                     {{"path", "/s/group/none"}, {"value", nullptr}}};
    EXPECT_EQ(nlohmann::json::parse(run({"config", "list", "--json", file, "/s/group"}).out)["settings"],
              expected);
    EXPECT_GE(linesOf(run({"config", "list", sample("agent.xml")}).out), 400U);
}

TEST_F(ProgramTest, ConfigGetsWhatItSet) {
    const std::string file = write("c.xml", messageText(kTree));
    const struct {
        const char* path;
        const char* value;
    } rows[] = {{"/s/a", "2"}, {"/s/group/b", ""}, {"/fresh/x/y", "a b\n<c>"}, {"/s/a", "-3"}};
    for (const auto& row : rows) {
        const Ended set = run({"config", "set", file, "--", row.path, row.value});
        EXPECT_EQ(set.code, 0) << set.err;
        EXPECT_EQ(set.out, "");
        EXPECT_EQ(run({"config", "get", file, row.path}).out, row.value + std::string("\n"));
        const nlohmann::json expected = {{"schema", 1}, {"path", row.path}, {"value", row.value}};
        EXPECT_EQ(nlohmann::json::parse(run({"config", "get", file, row.path, "--json"}).out), expected);
    }
    EXPECT_EQ(run({"config", "list", file}).out,
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
    EXPECT_EQ(linesOf(run({"config", "list", file, "/s/many"}).out), std::size_t{kPrograms});
}

TEST_F(ProgramTest, ConfigSaysInOneLineWhatIsWrong) {
    const std::string file = write("c.xml", messageText(kTree));
    const std::string bytes = contentOf(file);
    const std::string cut = sample("bad/configuration-cut-off.xml");
    const struct {
        Words words;
        int code;
        std::string error; ///< its beginning
    } rows[] = {
        {{"get", file, "/s/x"}, 1, "hbx: " + file + ": there is no value at /s/x\n"},
        {{"get", file, "/s/group"}, 1, "hbx: " + file + ": there is no value at /s/group\n"},
        {{"list", file, "/x"}, 1, "hbx: " + file + ": there is no /x\n"},
        {{"get", file, "s/a"}, 2, "hbx: PATH begins with \"/\"\n"},
        {{"set", file, "/s//a", "1"}, 3, "hbx: /s//a: no setting can be there\n"},
        {{"set", cut, "/s/a", "1"}, 3, "hbx: " + cut + ": line 120, column "},
        {{"list", path("none")}, 3, "hbx: Cannot open \"" + path("none") + "\": No such file or directory\n"},
        {{"list", path()}, 3, "hbx: Cannot read \"" + path() + "\": Is a directory\n"},
    };
    for (const auto& row : rows) {
        const Ended ended = run(joined({"config"}, row.words));
        EXPECT_EQ(ended.code, row.code) << ended.err;
        EXPECT_EQ(ended.err.rfind(row.error, 0), 0U) << ended.err;
        EXPECT_EQ(linesOf(ended.err), 1U);
        EXPECT_EQ(ended.out, "");
    }
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
    const Ended listed = call("list", "<path>/security/realms</path>");
    EXPECT_NE(listed.out.find("<path>/security/realms/realm/realm_type</path>"), std::string::npos)
        << listed.out;

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
