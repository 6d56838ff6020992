#include "ProgramTest.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace HBX {
namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST_F(ProgramTest, PageOfRecordsIsWhatTheCatalogueSays) {
    EXPECT_TRUE(run({"record", "list", "--markdown"}).out == contentOf(HBX_SOURCE_DIR "/docs/records.md"))
        << "make it anew: hbx record list --markdown > docs/records.md";
}

TEST_F(ProgramTest, DescribesRecordsWithTheirBase) {
    const Ended text = run({"record", "describe", "HBXDirRealm"});
    EXPECT_EQ(text.code, 0) << text.err;
    EXPECT_THAT(text.out, HasSubstr("family  HBXRealm\n"));
    EXPECT_THAT(text.out, HasSubstr("\nserver        string       mandatory  address (1687)\n"));
    EXPECT_LT(text.out.find("\nid "), text.out.find("\nauthName ")) << "the base record's members come first";

    const json token = json::parse(run({"record", "describe", "--json", "HBXToken"}).out);
    EXPECT_EQ(token["members"], json::parse(R"([
        {"name": "sid", "kind": "HBXSID", "presence": "unless empty", "id": 3265, "element": "sid",
         "record": "HBXSID"},
        {"name": "groups", "kind": "HBXSID", "presence": "list", "id": 3266, "element": "groups",
         "item_id": 3267, "item_element": "group_sid", "record": "HBXSID"},
        {"name": "restricted", "kind": "HBXSID", "presence": "list", "id": 3268, "element": "restricted_groups",
         "item_id": 3267, "item_element": "group_sid", "record": "HBXSID"}])"));
}

TEST_F(ProgramTest, UnknownRecordsAreAnsweredWithSimilarNames) {
    const struct {
        std::string name;
        const char* rest;
    } rows[] = {
        {"HBXEnvConfg", "; similar: HBXEnvConfig, HBXVEnvConfig\n"},
        {"nettransfer", "; similar: HBXNetTransfer, HBXNetTransferStat\n"},
        {"", "\n"},
        {std::string(100000, 'x'), "\n"},
    };
    for (const auto& row : rows) {
        for (const char* verb : {"describe", "template"}) {
            const Ended ended = run({"record", verb, row.name});
            EXPECT_EQ(ended.code, 1);
            EXPECT_EQ(ended.err, "hbx: there is no record \"" + row.name + '"' + row.rest);
        }
    }
}

TEST_F(ProgramTest, EveryTemplateIsTheRecordThatItIsMadeOf) {
    const json list = json::parse(run({"record", "list", "--json"}).out)["records"];
    EXPECT_GT(list.size(), 180U);
    for (const json& record : list) {
        const std::string name = record["name"];
        const Ended text = run({"record", "template", name});
        const std::string file = write("template", text.out);
        const Ended checked = run({"record", "check", "--as", name, file});
        EXPECT_EQ(checked.code, 0) << checked.err;
        EXPECT_EQ(run({"record", "check", file}).code, record.contains("type") ? 0 : 3) << name;
    }
    const Ended binary = run({"record", "template", "--binary", "HBXNetNIC"});
    EXPECT_EQ(run({"record", "check", write("nic", binary.out)}).code, 0);
    EXPECT_EQ(run({"message", "show", path("nic")}).out, run({"record", "template", "HBXNetNIC"}).out);
}

TEST_F(ProgramTest, ChecksNameTheFirstElementThatDoesNotFit) {
    const std::string pool = "<id>00000000-0000-0000-0000-000000000001</id>";
    const struct {
        const char* type;
        std::string content;
        const char* complaint; ///< behind the file; none: it fits
    } rows[] = {
        {"HBXCheck", "<a/>", ": expected string, found no such element"},
        {"HBXNetVLAN", "<device_id>d</device_id><name>n</name><mtu>x&#10;y</mtu>",
         "/mtu: expected int, found \"x?y\""},
        {"HBXNetNIC", "<device_id>d</device_id><name>n</name><mtu/>", "/mtu: expected int, found no value"},
        {"HBXNetNIC", "<device_id>d</device_id><name>n</name><mtu><a/></mtu>",
         "/mtu: expected int, found elements"},
        {"HBXNetNIC", "<device_id>d</device_id><name>n</name><own/><mtu>1</mtu><mtu>x</mtu>", nullptr},
        {"HBXNetNIC",
         "<name>n</name><address><entry><ip_address>1.2.3.4</ip_address></entry><entry/></address>",
         "/address/entry[2]/ip_address: expected string, found no such element"},
        {"HBXScheduleTask", "<trigger><start_time>1</start_time></trigger>",
         "/trigger: expected one of \"scheduler:daily_trigger\", "},
        {"HBXDate", "<a/>", "/: expected HBXDate, found values that its own rules refuse"},
        {"HBXGUID", "<a/>", "/: expected HBXGUID, found elements"},
    };
    for (const auto& row : rows) {
        const std::string file = write("message", messageText(row.content));
        const Ended ended = run({"record", "check", "--as", row.type, file});
        EXPECT_EQ(ended.code, row.complaint == nullptr ? 0 : 3) << row.type << ended.err;
        EXPECT_EQ(linesOf(ended.err), row.complaint == nullptr ? 0U : 1U) << ended.err;
        EXPECT_THAT(ended.err, HasSubstr(row.complaint == nullptr ? "" : row.complaint));
        EXPECT_EQ(ended.out, "");
    }
}

TEST_F(ProgramTest, ChecksTheElementOfAPathByItsMark) {
    const std::string trigger = "/data/schedule/next/trigger";
    const std::string daily = sample("requests/schedule-daily-every-2-days.xml");
    std::string text = contentOf(daily);
    const std::size_t start = text.find('>', text.find("<start_time")) + 1;
    const std::string damaged = write("damaged", text.replace(start, 1, "noon"));
    const std::string unknown = write("unknown", messageText("<data hbx:tns='env' hbx:type='mars'/>"));
    const struct {
        Words words;
        int code;
        std::string complaint;
    } rows[] = {
        {{"--path", trigger, daily}, 0, ""},
        {{"--path", trigger, sample("requests/schedule-daily-every-2-days.bin")}, 0, ""},
        {{"--path", trigger, damaged},
         3,
         damaged + ": " + trigger + "/start_time: expected time, found \"noon"},
        {{"--path", trigger + "/x", daily}, 1, ": there is no such element"},
        {{"--path", "trigger", daily}, 2, "--path begins"},
        {{"--as", "HBXMars", daily}, 1, "there is no record"},
        {{daily}, 3, ": /: the element has no complex type, say --as NAME"},
        {{"--path", "/data", unknown}, 3, ": /data: there is no record of type \"env:mars\""},
        {{write("empty", "")}, 3, "there is nothing in it"},
        {{write("cut", contentOf(daily).substr(0, 300))}, 3, "line "},
        {{path("missing")}, 3, "No such file"},
    };
    for (const auto& row : rows) {
        const Ended ended = run(joined({"record", "check"}, row.words));
        EXPECT_EQ(ended.code, row.code) << ended.err;
        EXPECT_THAT(ended.err, HasSubstr(row.complaint));
        EXPECT_EQ(linesOf(ended.err), row.code == 0 ? 0U : 1U);
    }
}

} // namespace
} // namespace HBX
