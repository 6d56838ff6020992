#include "ProgramTest.h"

namespace HBX {
namespace {

/// What the real script offers in a real bash, in its folder with "a file" and "b". It is sourced within a
/// function, as it is when bash loads scripts only once they are needed.
constexpr const char* kScript = R"(load() { . ./hbx.bash; }
load
_hbx
[ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}" | sort | tr '\n' ' '
)";

TEST_F(ProgramTest, CompletionOffersWhatCanFollow) {
    const std::pair<const char*, std::string> rows[] = {
        {"--", "--help --options --version "},
        {"--options ''", "a file b hbx.bash "},
        {"sid ''", "--help local parse well-known "},
        {"env list --t", "--tree --type "},
        {"env list --tree --s", "--state "},
        {"env list --state = r", "repairing running "},
        {"env list --state =", "absent down mounted repairing running suspended "},
        {"env list --state down --cache a", "a file "},
        {"env list --type ''", ""},
        {"env get ''", "--cache --help --json "},
        {"message convert -o b", "b "},
        {"message convert --to text b ''", "a file b hbx.bash "},
        {"help ex", "exit-codes "},
        {"help schedule n", "next "},
        {"evn ''", ""},
        {"env lsit --", ""},
    };
    std::filesystem::create_directory(path("folder"));
    write("folder/hbx.bash", out({"completion", "bash"}));
    write("folder/a file", "");
    write("folder/b", "");
    for (const auto& [words, offered] : rows) {
        const std::string script =
            std::string("COMP_WORDS=(hbx ") + words + ") COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n" + kScript;
        const std::string call =
            "cd " + path("folder") + " && bash " + write("script", script) + " >" + path("offered") + " 2>&1";
        EXPECT_EQ(std::system(call.c_str()), 0);
        EXPECT_EQ(contentOf(path("offered")), offered) << words;
    }
}

} // namespace
} // namespace HBX
