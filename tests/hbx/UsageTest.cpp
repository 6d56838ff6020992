#include "ProgramTest.h"

namespace HBX {
namespace {

TEST_F(ProgramTest, HelpGoesToStandardOutput) {
    const struct {
        Words words;
        const char* fragment;
    } rows[] = {
        {{"--help"}, "\n  schedule "},       {{"-h"}, "usage: hbx AREA VERB"},
        {{"message", "--help"}, "--indent"}, {{"schedule", "--help"}, "YYYY-MM-DD"},
        {{"call", "--help"}, "--binary"},    {{"message", "convert", "--help"}, "--output"},
        {{"env", "--help"}, "--timeout"},
    };
    for (const auto& row : rows) {
        const Ended ended = run(row.words);
        EXPECT_EQ(ended.code, 0) << row.words[0];
        EXPECT_NE(ended.out.find(row.fragment), std::string::npos) << ended.out;
        EXPECT_EQ(ended.err, "");
    }
}

TEST_F(ProgramTest, WrongCallsSayWhyAndHow) {
    const std::string file = sample("requests/schedule-once.xml");
    const struct {
        Words words;
        const char* firstLine;
    } rows[] = {
        {{}, "hbx: which area?"},
        {{"massage"}, "hbx: there is no area \"massage\""},
        {{"message"}, "hbx: which verb?"},
        {{"message", "eat"}, "hbx: there is no verb \"eat\""},
        {{"message", "show"}, "hbx: wrong number of operands"},
        {{"message", "show", file, file}, "hbx: wrong number of operands"},
        {{"message", "diff", file}, "hbx: wrong number of operands"},
        {{"call"}, "hbx: wrong number of operands"},
        {{"message", "show", "--what", file}, "hbx: unrecognised option '--what'"},
        {{"message", "show", "--inde", "3", file}, "hbx: unrecognised option '--inde'"},
        {{"message", "show", "--indent", "two", file},
         "hbx: the argument ('two') for option '--indent' is invalid"},
        {{"message", "show", "--indent", "17", file}, "hbx: --indent is 0 to 16"},
        {{"message", "show", "--indent=-1", file}, "hbx: --indent is 0 to 16"},
        {{"message", "show", "--path", "data", file}, "hbx: --path begins with \"/\""},
        {{"message", "convert", "--to", "json", file}, "hbx: --to is \"text\" or \"binary\""},
        {{"env", "list", "--parent", "web"}, "hbx: --parent: \"web\" is no identifier"},
        {{"env", "list", "--state", "dead"}, "hbx: --state is absent, down, "},
        {{"env", "get", "00000000-0000-0000-0000-000000000000"}, "hbx: \"00000000-0000"},
        {{"schedule", "next", "--count", "0", file}, "hbx: --count is 1 to 1000"},
        {{"schedule", "next", "--count", "1001", file}, "hbx: --count is 1 to 1000"},
        {{"schedule", "explain", "--count", "1", "--count", "2", file},
         "hbx: option '--count' cannot be specified"},
    };
    for (const auto& row : rows) {
        const Ended ended = run(row.words);
        EXPECT_EQ(ended.code, 2) << row.firstLine;
        EXPECT_EQ(ended.err.rfind(row.firstLine, 0), 0U) << ended.err;
        EXPECT_EQ(ended.out, "");
    }
}

} // namespace
} // namespace HBX
