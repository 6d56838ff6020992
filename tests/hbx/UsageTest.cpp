#include "ProgramTest.h"

namespace HBX {
namespace {

TEST_F(ProgramTest, WrongCallsSayWhyAndHow) {
    const std::string file = sample("requests/schedule-once.xml");
    expectFailures({
        {{}, 2, "which area?\n" + out({"help"})},
        {{"massage"}, 2, "there is no area \"massage\""},
        {{"help", "massage"}, 2, ""},
        {{"help", "env", "eat"}, 2, ""},
        {{"message"}, 2, "which verb?"},
        {{"message", "eat"}, 2, "there is no verb \"eat\""},
        {{"message", "show"}, 2, "wrong number of operands"},
        {{"message", "show", file, file}, 2, "wrong number of operands"},
        {{"call"}, 2, "wrong number of operands"},
        {{"message", "show", "--inde", "3", file}, 2, "unrecognised option '--inde'"},
        {{"message", "show", "--indent", "two", file}, 2, "the argument ('two') for option '--indent' is "},
        {{"message", "show", "--indent=-1", file}, 2, "--indent is 0 to 16"},
        {{"message", "show", "--path", "data", file}, 2, "--path begins with \"/\""},
        {{"message", "convert", "--to", "json", file}, 2, "--to is \"text\" or \"binary\""},
        {{"env", "list", "--parent", "web"}, 2, "--parent: \"web\" is no identifier"},
        {{"env", "list", "--state", "dead"}, 2, "--state is absent, down, "},
        {{"env", "get", "00000000-0000-0000-0000-000000000000"}, 2, "\"00000000-0000"},
        {{"schedule", "next", "--count", "1001", file}, 2, "--count is 1 to 1000"},
        {{"schedule", "next", "--count", "1", "--count", "2", file},
         2,
         "option '--count' cannot be specified"},
    });
}

} // namespace
} // namespace HBX
