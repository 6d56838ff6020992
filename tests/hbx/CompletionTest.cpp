#include "ProgramTest.h"

namespace HBX {
namespace {

/// Runs the real script in a real bash.
class CompletionTest : public ProgramTest {
protected:
    CompletionTest() {
        write("hbx.bash", run({"completion", "bash"}).out);
        std::filesystem::create_directory(path("folder"));
        write("folder/a file", "");
        write("folder/b", "");
    }

    /// What bash offers for the last word, one a line.
    std::string offered(const Words& words) const {
        std::string quoted;
        for (const std::string& word : words) {
            quoted += " '" + word + '\'';
        }
        // Sourced within a function, as it is when bash loads scripts only once they are needed.
        const std::string script =
            "cd '" + path("folder") + "'; load() { . ../hbx.bash; }; load\n" + "COMP_WORDS=(hbx" + quoted +
            ") COMP_CWORD=" + std::to_string(words.size()) + "; _hbx; [ ${#COMPREPLY[@]} -eq 0 ] ||" +
            " printf '%s\\n' \"${COMPREPLY[@]}\" | sort | tr '\\n' ' '";
        write("script", script);
        EXPECT_EQ(std::system(("bash " + path("script") + " >" + path("offered") + " 2>&1").c_str()), 0);
        return contentOf(path("offered"));
    }
};

TEST_F(CompletionTest, OffersWhatCanFollow) {
    const std::pair<Words, std::string> rows[] = {
        {{"--"}, "--help --options --version "},
        {{"--options", ""}, "a file b "},
        {{"sid", ""}, "--help local parse well-known "},
        {{"env", "list", "--t"}, "--tree --type "},
        {{"env", "list", "--tree", "--s"}, "--state "},
        {{"env", "list", "--state", "=", "r"}, "repairing running "},
        {{"env", "list", "--state", "="}, "absent down mounted repairing running suspended "},
        {{"env", "list", "--state", "down", "--cache", "a"}, "a file "},
        {{"env", "list", "--type", ""}, ""},
        {{"env", "get", ""}, "--cache --help --json "},
        {{"message", "convert", "b", "--to", "b"}, "binary "},
        {{"message", "convert", "-o", "b"}, "b "},
        {{"message", "convert", "--to", "text", "b", ""}, "a file b "},
        {{"call", "b", ""}, "a file b "},
        {{"help", "ex"}, "exit-codes "},
        {{"help", "schedule", "n"}, "next "},
    };
    for (const auto& [words, expected] : rows) {
        EXPECT_EQ(offered(words), expected) << testing::PrintToString(words);
    }
}

} // namespace
} // namespace HBX
