#include "ProgramTest.h"

namespace HBX {
namespace {

TEST_F(ProgramTest, PageOfRecordsIsWhatTheCatalogueSays) {
    EXPECT_TRUE(out({"record", "list", "--markdown"}) == contentOf(HBX_SOURCE_DIR "/docs/records.md"))
        << "make it anew: hbx record list --markdown > docs/records.md";
}

TEST_F(ProgramTest, DescribesRecordsWithTheirBase) {
    const std::string text = out({"record", "describe", "HBXDirRealm"});
    EXPECT_NE(text.find("family  HBXRealm\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\nserver        string       mandatory  address (1687)\n"), std::string::npos);
    EXPECT_LT(text.find("\nid "), text.find("\nauthName ")) << "the base record's members come first";
    const Json members = json({"record", "describe", "HBXToken"})["members"];
    EXPECT_EQ(members.size(), 3U);
    EXPECT_EQ(members[0], Json::parse(R"({"name": "sid", "kind": "HBXSID", "presence": "unless empty",
        "id": 3265, "element": "sid", "record": "HBXSID"})"));
    EXPECT_EQ(members[1], Json::parse(R"({"name": "groups", "kind": "HBXSID", "presence": "list", "id": 3266,
        "element": "groups", "item_id": 3267, "item_element": "group_sid", "record": "HBXSID"})"));
}

TEST_F(ProgramTest, EveryTemplateIsTheRecordThatItIsMadeOf) {
    const Json list = json({"record", "list"})["records"];
    EXPECT_GT(list.size(), 180U);
    for (const Json& record : list) {
        const std::string name = record["name"];
        const std::string file = write("template", out({"record", "template", name}));
        EXPECT_EQ(out({"record", "check", "--as", name, file}), "");
        EXPECT_EQ(run({"record", "check", file}).code, record.contains("type") ? 0 : 3) << name;
    }
    const std::string binary = write("nic", out({"record", "template", "--binary", "HBXNetNIC"}));
    EXPECT_EQ(out({"record", "check", binary}), "");
    EXPECT_EQ(out({"message", "show", binary}), out({"record", "template", "HBXNetNIC"}));
}

TEST_F(ProgramTest, ChecksNameTheFirstElementThatDoesNotFit) {
    const std::string nic = "<device_id>d</device_id><name>n</name>";
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"HBXCheck", "<a/>", "/name: expected string, found no such element"},
        {"HBXNetVLAN", nic + "<mtu>x&#10;y</mtu>", "/mtu: expected int, found \"x?y\""},
        {"HBXNetNIC", nic + "<mtu/>", "/mtu: expected int, found no value"},
        {"HBXNetNIC", nic + "<mtu><a/></mtu>", "/mtu: expected int, found elements"},
        {"HBXNetNIC", "<name>n</name><address><entry><ip_address>1</ip_address></entry><entry/></address>",
         "/address/entry[2]/ip_address: expected string, found no such element"},
        {"HBXScheduleTask", "<trigger><start_time>1</start_time></trigger>",
         "/trigger: expected one of \"scheduler:daily_trigger\", "},
        {"HBXDate", "<a/>", "/: expected HBXDate, found values that its own rules refuse"},
    };
    for (const auto& [type, content, complaint] : rows) {
        const std::string file = write("message", messageText(content));
        expectFailures({{3, file + ": " + complaint, {"record", "check", "--as", type, file}}});
    }
    const std::string good = write("message", messageText(nic + "<own/><mtu>1</mtu><mtu>x</mtu>"));
    EXPECT_EQ(out({"record", "check", "--as", "HBXNetNIC", good}), "");
}

TEST_F(ProgramTest, ChecksTheElementOfAPathByItsMarkAndKnowsSimilarNames) {
    const std::string trigger = "/data/schedule/next/trigger";
    const std::string daily = sample("requests/schedule-daily-every-2-days.xml");
    EXPECT_EQ(out({"record", "check", "--path", trigger, daily}), "");
    const std::string text = std::regex_replace(contentOf(daily), std::regex("<start_time>"), "$&noon");
    const std::string damaged = write("damaged", text);
    const std::string unknown = write("unknown", messageText("<data hbx:tns='env' hbx:type='mars'/>"));
    const std::string absurd(100000, 'x');
    expectFailures({
        {1,
         "there is no record \"HBXEnvConfg\"; similar: HBXEnvConfig, HBXVEnvConfig\n",
         {"record", "describe", "HBXEnvConfg"}},
        {1, "there is no record \"" + absurd + "\"\n", {"record", "template", absurd}},
        {1, "there is no record \"HBXMars\"", {"record", "check", "--as", "HBXMars", daily}},
        {2, "--path begins", {"record", "check", "--path", "trigger", daily}},
        {1, daily + ": /data/x: there is no ", {"record", "check", "--path", "/data/x", daily}},
        {3,
         damaged + ": " + trigger + "/start_time: expected time, found \"noon",
         {"record", "check", "--path", trigger, damaged}},
        {3, daily + ": /: the element has no complex type, say --as NAME", {"record", "check", daily}},
        {3,
         unknown + ": /data: there is no record of type \"env:mars\"",
         {"record", "check", "--path", "/data", unknown}},
    });
}

} // namespace
} // namespace HBX
