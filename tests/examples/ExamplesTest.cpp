#include <cstdlib>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "support/ScratchFolder.h"

namespace HBX {
namespace {

using test::contentOf;

class ExamplesTest : public testing::Test, protected test::ScratchFolder {
protected:
    /// What a command of the shell prints; the test fails when it does.
    std::string printed(const std::string& command) const {
        EXPECT_EQ(std::system((command + " > '" + path("out") + "'").c_str()), 0) << command;
        return contentOf(path("out"));
    }

    std::string outputOf(const std::string& example, const std::string& arguments) const {
        return printed(HBX_EXAMPLES "/" + example + " " + arguments);
    }
};

TEST_F(ExamplesTest, PageOnTheCacheFileShowsTheRealBytes) {
    outputOf("cache_file", path("envs.cache"));
    const std::string page = contentOf(HBX_SOURCE_DIR "/docs/cache-file.md");
    std::istringstream dump(printed("od -A d -t x1 -v '" + path("envs.cache") + "'"));
    std::ptrdiff_t shown = 0;
    for (std::string line; std::getline(dump, line);) {
        const bool isShown = page.find('\n' + line) != std::string::npos;
        EXPECT_TRUE(isShown || line.find_first_not_of("0 ", 7) == std::string::npos) << "not shown: " << line;
        shown += isShown ? 1 : 0;
    }
    const std::regex lineOfDump("\n[0-9]{7} ");
    EXPECT_EQ(std::distance(std::sregex_iterator(page.begin(), page.end(), lineOfDump), {}), shown)
        << "what else the page shows is not in the file";
}

TEST_F(ExamplesTest, ProgramsSayWhatTheyDid) {
    std::filesystem::copy_file(HBX_SOURCE_DIR "/samples/agent.xml", path("agent.xml"));
    // What the whole output matches.
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"share_cache", path("envs.cache"), "(.{36} (web: running|mail: not running)\n){2}"},
        {"one_environment", path("envs.cache"), "(.{36} (web|mail)\n){3}"}, // finds them, and adds its own
        {"new_environment_type", path("types.cache"),
         "oven: 0\nkiln: 1\nfreezer: 0\n(lab oven\n|lab freezer\n){2}"},
        {"client", HBX_EXAMPLES "/operator_module " + path(""), "overdue: backup\n"},
        {"new_record", "", "page 7 at 7 with 2 tags\nwithout a name: -1\n"},
        {"next_run", "", "Every 2 days at .*\nnext run: .*\n"},
        {"read_configuration", path("agent.xml"), "log level 2, from now on 3\n"},
        {"read_configuration", path("agent.xml"), "log level 3, from now on 4\n"},
        {"list_features", HBX_SOURCE_DIR "/samples/vocabulary/hbagent.voc.windows",
         "network.offline_management\n"},
    };
    for (const auto& [name, arguments, pattern] : rows) {
        const std::string output = outputOf(name, arguments);
        EXPECT_TRUE(std::regex_match(output, std::regex(pattern))) << name << ": " << output;
    }
}

/// The words of a text, one blank between them: a quote may be indented and broken in another way.
std::string words(const std::string& text) {
    return std::regex_replace(' ' + text + ' ', std::regex("\\s+"), " ");
}

TEST_F(ExamplesTest, PagesQuoteThePrograms) {
    std::string programs;
    for (const auto& file : std::filesystem::directory_iterator(HBX_SOURCE_DIR "/examples")) {
        programs += words(contentOf(file.path()));
    }
    std::string pages = contentOf(HBX_SOURCE_DIR "/README.md");
    for (const auto& file : std::filesystem::directory_iterator(HBX_SOURCE_DIR "/docs")) {
        pages += contentOf(file.path());
    }
    const std::string opening = "\n```cpp\n";
    int quotes = 0;
    for (std::size_t at = pages.find(opening); at != std::string::npos; at = pages.find(opening, at)) {
        at += opening.size();
        const std::string quote = pages.substr(at, pages.find("```", at) - at);
        EXPECT_NE(programs.find(words(quote)), std::string::npos) << "in no program: " << quote;
        ++quotes;
    }
    EXPECT_GT(quotes, 5);
}

} // namespace
} // namespace HBX
