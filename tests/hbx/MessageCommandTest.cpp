#include "ProgramTest.h"

#include <nlohmann/json.hpp>

namespace HBX {
namespace {

const std::string kDaily = sample("requests/schedule-daily-every-2-days.xml");
const std::string kDailyBinary = sample("requests/schedule-daily-every-2-days.bin");

TEST_F(ProgramTest, ShowsBothEncodingsAlikeAndOneElement) {
    const Ended text = run({"message", "show", kDaily});
    EXPECT_EQ(text.code, 0) << text.err;
    EXPECT_EQ(text.out, contentOf(kDaily));
    EXPECT_EQ(run({"message", "show", kDailyBinary}).out, text.out);

    const std::string days = "/data/schedule/next/trigger/days_interval";
    const Ended shown = run({"message", "show", "--indent", "0", "--path", days, kDailyBinary});
    EXPECT_NE(shown.out.find("<days_interval xmlns:hbx=\"urn:hbx:message\">2</days_interval>\n"),
              std::string::npos);
    EXPECT_EQ(linesOf(shown.out), 1U);
    const Ended missing = run({"message", "show", "--path", days + "/x", kDaily});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err, "hbx: " + kDaily + ": " + days + "/x: there is no such element\n");
}

TEST_F(ProgramTest, ShowsAsJsonAllThatAnElementHolds) {
    const std::string file =
        write("all.xml", messageText(R"(<data hbx:ns="common" name="n" hbx:a4711="by number">)"
                                     R"(<value hbx:kind="text"/><value>a &lt; b</value>)"
                                     R"(<value hbx:enc="base64">AAE=</value><run/></data>)"));
    const Ended shown = run({"message", "show", "--json", "--path", "/data", file});
    EXPECT_EQ(nlohmann::json::parse(shown.out), nlohmann::json::parse(R"({
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
    EXPECT_EQ(run({"message", "convert", kDailyBinary}).out, contentOf(kDaily));
    EXPECT_EQ(run({"message", "convert", "--to", "text", kDaily}).out, contentOf(kDaily));
    EXPECT_EQ(run({"message", "convert", "--to", "binary", "-"}, {.in = kDaily}).out,
              contentOf(kDailyBinary));

    const std::string target = write("target", "old");
    EXPECT_EQ(run({"message", "convert", write("bad", "<message>"), "-o", target}).code, 3);
    EXPECT_EQ(contentOf(target), "old");
    EXPECT_EQ(run({"message", "convert", kDaily, "-o", target}).code, 0);
    EXPECT_EQ(contentOf(target), contentOf(kDailyBinary));
    for (const std::string& output : {path(), path("no/such/folder"), std::string("/dev/full")}) {
        const Ended ended = run({"message", "convert", kDaily, "-o", output});
        EXPECT_EQ(ended.code, 7) << output;
        EXPECT_EQ(ended.err.rfind("hbx: " + output + ": ", 0), 0U) << ended.err;
    }
}

TEST_F(ProgramTest, ChecksNameFilePlaceAndReason) {
    const struct {
        std::string file;
        std::string reason;
    } rows[] = {
        {write("empty", ""), "there is nothing in it"},
        {write("zero", std::string("<message\0/>", 11)), "offset 8: a zero byte"},
        {sample("bad/mismatched-tags.xml"), "line 6, column 7, /data/schedule/next: mismatched tag"},
        {write("tail", contentOf(kDailyBinary) + "x"), "offset "},
        {path("."), "Is a directory"},
        {path("missing"), "No such file or directory"},
    };
    for (const auto& row : rows) {
        const Ended ended = run({"message", "check", row.file});
        EXPECT_EQ(ended.code, 3) << row.file;
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err.rfind("hbx: " + row.file + ": " + row.reason, 0), 0U) << ended.err;
        EXPECT_EQ(linesOf(ended.err), 1U) << ended.err;
    }
    EXPECT_EQ(run({"message", "check", kDaily, kDailyBinary}).code, 0);
    for (const std::string& whole : {kDaily, kDailyBinary}) {
        const std::string bytes = contentOf(whole);
        const Words cuts = writeBeginnings(bytes.substr(0, bytes.find_last_of('>')));
        const Ended ended = run(joined({"message", "check"}, cuts));
        EXPECT_EQ(ended.code, 3);
        EXPECT_EQ(linesOf(ended.err), cuts.size());
    }
}

TEST_F(ProgramTest, NamesWhatDiffers) {
    const struct {
        const char* left;
        const char* right;
        const char* lines;
    } rows[] = {
        {"<a> </a>", "<a/>", ""},
        {"<a>1</a>", "<a>2</a>", "~ /a: value \"1\" -> \"2\"\n"},
        {"<a/>", "<a hbx:kind='text'/>", "~ /a: hbx:kind none -> \"text\"\n~ /a: value none -> \"\"\n"},
        {"<a x='1' y='2'/>", "<a y='3' x='1'/>", "~ /a: y \"2\" -> \"3\"\n"},
        {"<a/><b/>", "<b/><a/>", "+ /b\n- /b\n"},
        {"<l><i>1</i><i>2</i><i>3</i></l>", "<l><i>1</i><i>3</i></l>", "- /l/i[2]\n"},
        {"<l><i><v>1</v></i><i><v>2</v></i></l>", "<l><i><v>1</v></i><i><v>9</v></i></l>",
         "~ /l/i[2]/v: value \"2\" -> \"9\"\n"},
        {"<hbx:envelope id='1'/>", "<hbx:envelope id='2'/>", "~ /hbx:envelope: id \"1\" -> \"2\"\n"},
        {"<a/>", "", "- /a\n"},
    };
    for (const auto& row : rows) {
        const std::string left = write("left", messageText(row.left));
        const Ended ended = run({"message", "diff", left, write("right", messageText(row.right))});
        EXPECT_EQ(ended.out, row.lines) << row.left << " " << row.right << ended.err;
        EXPECT_EQ(ended.code, *row.lines == '\0' ? 0 : 1);
    }
    EXPECT_EQ(run({"message", "diff", kDaily, kDailyBinary}).code, 0);
    EXPECT_EQ(run({"message", "diff", kDaily, path("missing")}).code, 3);
    const std::string left = write("left", messageText("<a>1</a><b/>"));
    const Ended ended = run({"message", "diff", "--json", left, write("right", messageText("<a/>"))});
    EXPECT_EQ(nlohmann::json::parse(ended.out), nlohmann::json::parse(R"({"schema": 1, "differences": [
        {"path": "/a", "change": "value", "left": "1"}, {"path": "/b", "change": "removed"}]})"));
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
