#include "ProgramTest.h"

#include <gmock/gmock.h>

namespace HBX {
namespace {

using testing::HasSubstr;

TEST_F(ProgramTest, PageOfRecordsIsWhatTheCatalogueSays) {
    EXPECT_TRUE(out({"record", "list", "--markdown"}) == contentOf(HBX_SOURCE_DIR "/docs/records.md"))
        << "make it anew: hbx record list --markdown > docs/records.md";
}

TEST_F(ProgramTest, DescribesRecordsWithTheirBase) {
    const std::string text = out({"record", "describe", "HBXDirRealm"});
    EXPECT_THAT(text, HasSubstr("family  HBXRealm\n"));
    EXPECT_THAT(text, HasSubstr("\nserver        string       mandatory  address (1687)\n"));
    EXPECT_LT(text.find("\nid "), text.find("\nauthName ")) << "the base record's members come first";

    const Json members = json({"record", "describe", "HBXToken"})["members"];
    ASSERT_EQ(members.size(), 3U);
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
    const struct {
        const char *type, *content;
        std::string complaint; ///< behind the file; "": it fits
    } rows[] = {
        {"HBXCheck", "<a/>", ": expected string, found no such element"},
        {"HBXNetVLAN", "<device_id>d</device_id><name>n</name><mtu>x&#10;y</mtu>",
         "/mtu: expected int, found \"x?y\""},
        {"HBXNetNIC", "<device_id>d</device_id><name>n</name><own/><mtu>1</mtu><mtu>x</mtu>", ""},
        {"HBXNetNIC",
         "<name>n</name><address><entry><ip_address>1.2.3.4</ip_address></entry><entry/></address>",
         "/address/entry[2]/ip_address: expected string, found no such element"},
        {"HBXScheduleTask", "<trigger><start_time>1</start_time></trigger>",
         "/trigger: expected one of \"scheduler:daily_trigger\", "},
        {"HBXDate", "<a/>", "/: expected HBXDate, found values that its own rules refuse"},
    };
    for (const auto& row : rows) {
        const std::string file = write("message", messageText(row.content));
        const Ended ended = run({"record", "check", "--as", row.type, file});
        EXPECT_EQ(ended.code, row.complaint.empty() ? 0 : 3) << row.type << ended.err;
        EXPECT_EQ(linesOf(ended.err), row.complaint.empty() ? 0U : 1U) << ended.err;
        EXPECT_THAT(ended.err, HasSubstr(row.complaint));
    }
}

TEST_F(ProgramTest, ChecksTheElementOfAPathByItsMarkAndKnowsSimilarNames) {
    const std::string trigger = "/data/schedule/next/trigger";
    const std::string daily = sample("requests/schedule-daily-every-2-days.xml");
    for (const std::string& file : {daily, sample("requests/schedule-daily-every-2-days.bin")}) {
        EXPECT_EQ(out({"record", "check", "--path", trigger, file}), "");
    }
    std::string text = contentOf(daily);
    const std::size_t start = text.find('>', text.find("<start_time")) + 1;
    const std::string damaged = write("damaged", text.replace(start, 1, "noon"));
    const std::string unknown = write("unknown", messageText("<data hbx:tns='env' hbx:type='mars'/>"));
    const std::string empty = write("empty", "");
    const std::string absurd(100000, 'x');
    expectFailures({
        {{"record", "describe", "HBXEnvConfg"},
         1,
         "there is no record \"HBXEnvConfg\"; similar: HBXEnvConfig, HBXVEnvConfig\n"},
        {{"record", "template", absurd}, 1, "there is no record \"" + absurd + "\"\n"},
        {{"record", "check", "--path", trigger, damaged},
         3,
         damaged + ": " + trigger + "/start_time: expected time, found \"noon"},
        {{"record", "check", "--path", trigger + "/x", daily},
         1,
         daily + ": " + trigger + "/x: there is no "},
        {{"record", "check", "--path", "trigger", daily}, 2, "--path begins"},
        {{"record", "check", "--as", "HBXMars", daily}, 1, "there is no record"},
        {{"record", "check", daily}, 3, daily + ": /: the element has no complex type, say --as NAME"},
        {{"record", "check", "--path", "/data", unknown},
         3,
         unknown + ": /data: there is no record of type \"env:mars\""},
        {{"record", "check", empty}, 3, empty + ": there is nothing in it"},
    });
}

} // namespace
} // namespace HBX
