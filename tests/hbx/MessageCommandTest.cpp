#include "ProgramTest.h"

namespace HBX {
namespace {

const std::string kDaily = sample("requests/schedule-daily-every-2-days.xml");
const std::string kDailyBinary = sample("requests/schedule-daily-every-2-days.bin");

TEST_F(ProgramTest, ShowsBothEncodingsAlikeAndOneElement) {
    EXPECT_EQ(out({"message", "show", kDaily}), contentOf(kDaily));
    EXPECT_EQ(out({"message", "show", kDailyBinary}), contentOf(kDaily));
    const std::string days = "/data/schedule/next/trigger/days_interval";
    const std::string shown = out({"message", "show", "--indent", "0", "--path", days, kDailyBinary});
    EXPECT_NE(shown.find("<days_interval xmlns:hbx=\"urn:hbx:message\">2</days_interval>\n"),
              std::string::npos);
    EXPECT_EQ(linesOf(shown), 1U);
    const std::string complaint = kDaily + ": /data/x: there is no such element\n";
    expectFailures({{1, complaint, {"message", "show", "--path", "/data/x", kDaily}}});

    const std::string file =
        write("all.xml", messageText(R"(<data hbx:ns="common" name="n" hbx:a4711="by number">)"
                                     R"(<value hbx:kind="text"/><value>a &lt; b</value>)"
                                     R"(<value hbx:enc="base64">AAE=</value><run/></data>)"));
    EXPECT_EQ(json({"message", "show", "--path", "/data", file}), Json::parse(R"({
        "schema": 1,
        "name": "data",
        "attributes": {"hbx:ns": "common", "name": "n", "hbx:a4711": "by number"},
        "children": [
            {"name": "value", "attributes": {"hbx:kind": "text"}, "value": ""},
            {"name": "value", "value": "a < b"},
            {"name": "value", "attributes": {"hbx:enc": "base64"}, "value": "AAE="},
            {"name": "run"}
        ]})"));
}

TEST_F(ProgramTest, ConvertsThereAndBackOrLeavesTheOldFile) {
    EXPECT_EQ(out({"message", "convert", kDailyBinary}), contentOf(kDaily));
    EXPECT_EQ(out({"message", "convert", "--to", "text", kDaily}), contentOf(kDaily));
    EXPECT_EQ(out({"message", "convert", "--to", "binary", "-"}, {.in = kDaily}), contentOf(kDailyBinary));

    const std::string target = write("target", "old");
    expectFailures({{3, "", {"message", "convert", write("bad", "<message>"), "-o", target}}});
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(out({"message", "convert", kDaily, "-o", target}), "");
    EXPECT_EQ(contentOf(target), contentOf(kDailyBinary));
    for (const std::string& output : {path(), path("no/such/folder"), std::string("/dev/full")}) {
        expectFailures({{7, output + ": ", {"message", "convert", kDaily, "-o", output}}});
    }
}

TEST_F(ProgramTest, ChecksNameFilePlaceAndReason) {
    const std::pair<std::string, std::string> rows[] = {
        {write("empty", ""), "there is nothing in it"},
        {write("zero", std::string("<message\0/>", 11)), "offset 8: a zero byte"},
        {sample("bad/mismatched-tags.xml"), "line 6, column 5, /data/schedule/next: mismatched tag"},
        {write("tail", contentOf(kDailyBinary) + "x"), "offset "},
        {path("."), "Is a directory"},
        {path("missing"), "No such file or directory"},
    };
    Words files = {"message", "check", kDaily, kDailyBinary};
    EXPECT_EQ(out(files), "");
    for (const auto& [file, reason] : rows) {
        expectFailures({{3, file + ": " + reason, {"message", "check", file}}});
        files.push_back(file);
    }
    EXPECT_EQ(linesOf(run(files).err), std::size(rows));
}

TEST_F(ProgramTest, NamesWhatDiffers) {
    const struct {
        std::string left, right, lines;
    } rows[] = {
        {"<a> </a>", "<a/>", ""},
        {"<a>1</a>", "<a>2</a>", "~ /a: value \"1\" -> \"2\"\n"},
        {"<a/>", "<a hbx:kind='text'/>", "~ /a: hbx:kind none -> \"text\"\n~ /a: value none -> \"\"\n"},
        {"<a/><b/>", "<b/><a/>", "+ /b\n- /b\n"},
        {"<l><i>1</i><i>2</i><i>3</i></l>", "<l><i>1</i><i>3</i></l>", "- /l/i[2]\n"},
        {"<l><i/><i><v>2</v></i></l>", "<l><i/><i><v>9</v></i></l>", "~ /l/i[2]/v: value \"2\" -> \"9\"\n"},
        {"<hbx:envelope id='1'/>", "<hbx:envelope id='2'/>", "~ /hbx:envelope: id \"1\" -> \"2\"\n"},
        {"<a>1</a><b/>", "<a/>", "~ /a: value \"1\" -> none\n- /b\n"},
    };
    const Words diff = {"message", "diff", path("left"), path("right")};
    for (const auto& row : rows) {
        write("left", messageText(row.left));
        write("right", messageText(row.right));
        const Ended ended = run(diff);
        EXPECT_EQ(ended.out, row.lines) << row.left << " " << row.right << ended.err;
        EXPECT_EQ(ended.code, row.lines.empty() ? 0 : 1);
    }
    EXPECT_EQ(Json::parse(run(joined(diff, {"--json"})).out), Json::parse(R"({"schema": 1, "differences": [
        {"path": "/a", "change": "value", "left": "1"}, {"path": "/b", "change": "removed"}]})"));
    EXPECT_EQ(out({"message", "diff", kDaily, kDailyBinary}), "");
    expectFailures({{3, path("missing"), {"message", "diff", kDaily, path("missing")}}});
}

TEST_F(ProgramTest, SaysWhatItMayNotRead) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "nothing is forbidden to root";
    }
    const std::string secret = write("secret", "x");
    std::filesystem::permissions(secret, std::filesystem::perms::none);
    EXPECT_EQ(run({"message", "show", secret}).code, 6);
}

} // namespace
} // namespace HBX
