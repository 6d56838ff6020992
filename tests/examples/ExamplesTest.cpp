#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <unistd.h>

namespace HBX {
namespace {

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

/// The lines of a text that begin with seven digits, as od writes them: offset to the 16 bytes behind it.
std::map<std::size_t, std::string> dumpIn(const std::string& text) {
    std::map<std::size_t, std::string> lines;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);) {
        if (line.size() < 55 || line.find_first_not_of("0123456789") != 7) {
            continue;
        }
        std::istringstream numbers(line.substr(7, 48));
        std::string bytes;
        for (unsigned byte = 0; numbers >> std::hex >> byte;) {
            bytes.push_back(static_cast<char>(byte));
        }
        lines[std::stoul(line)] = bytes;
    }
    return lines;
}

class ExamplesTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "hbx-examples-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return folder_ / name; }

    /// What an example prints; the test fails when the example does.
    std::string outputOf(const std::string& example, const std::string& arguments) const {
        const std::string command = HBX_EXAMPLES "/" + example + " " + arguments + " > '" + path("out") + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return contentOf(path("out"));
    }

    std::filesystem::path folder_;
};

TEST_F(ExamplesTest, ChildListsWhatTheParentInserted) {
    const std::string first = outputOf("share_cache", path("envs.cache"));
    EXPECT_NE(first.find(" web: running\n"), std::string::npos) << first;
    EXPECT_NE(first.find(" mail: not running\n"), std::string::npos) << first;

    const std::string all =
        outputOf("one_environment", path("envs.cache")); // another program finds them, and adds its own
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 3) << all;
}

TEST_F(ExamplesTest, PageOnTheCacheFileShowsTheRealBytes) {
    outputOf("cache_file", path("envs.cache"));
    const std::string file = contentOf(path("envs.cache"));
    const auto shown = dumpIn(contentOf(HBX_SOURCE_DIR "/docs/cache-file.md"));
    ASSERT_EQ(file.size(), 4096U);
    for (const auto& [offset, bytes] : shown) {
        EXPECT_EQ(file.substr(offset, 16), bytes) << "at " << offset;
    }
    for (std::size_t offset = 0; offset < file.size(); offset += 16) {
        EXPECT_TRUE(shown.count(offset) == 1 || file.substr(offset, 16) == std::string(16, '\0'))
            << "no line for " << offset;
    }
}

TEST_F(ExamplesTest, ProgramsSayWhatTheyDid) {
    std::filesystem::copy_file(HBX_SOURCE_DIR "/samples/agent.xml", path("agent.xml"));
    const struct {
        std::string name, arguments, output;
    } rows[] = {
        {"client", HBX_EXAMPLES "/operator_module " + path(""), "overdue: backup\n"},
        {"new_record", "", "page 7 at 7 with 2 tags\nwithout a name: -1\n"},
        {"read_configuration", path("agent.xml"), "log level 2, from now on 3\n"},
        {"read_configuration", path("agent.xml"), "log level 3, from now on 4\n"},
        {"list_features", HBX_SOURCE_DIR "/samples/vocabulary/hbagent.voc.windows",
         "network.offline_management\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(outputOf(row.name, row.arguments), row.output) << row.name;
    }
}

TEST_F(ExamplesTest, UpdaterOfANewTypeIsAsked) {
    const std::string output = outputOf("new_environment_type", path("envs.cache"));
    EXPECT_EQ(output.find("oven: 0\nkiln: 1\nfreezer: 0\n"), 0U) << output;
    for (const char* title : {"lab oven\n", "lab freezer\n"}) {
        EXPECT_NE(output.find(title), std::string::npos) << output;
    }
    EXPECT_EQ(output.find("lab kiln"), std::string::npos) << output;
}

TEST_F(ExamplesTest, NextRunIsTold) {
    const std::string output = outputOf("next_run", "");
    EXPECT_EQ(output.find("Every 2 days at "), 0U) << output;
    EXPECT_NE(output.find("\nnext run: "), std::string::npos) << output;
}

/// The words of a text, one blank between them: a quote may be indented and broken in another way.
std::string words(const std::string& text) {
    std::istringstream input(text);
    std::string all = " ";
    for (std::string word; input >> word;) {
        all += word + ' ';
    }
    return all;
}

/// The blocks of C++ that a page shows.
std::vector<std::string> quotesIn(const std::string& page) {
    const std::string opening = "\n```cpp\n";
    std::vector<std::string> quotes;
    for (std::size_t at = page.find(opening); at != std::string::npos; at = page.find(opening, at)) {
        at += opening.size();
        const std::size_t end = page.find("```", at);
        quotes.push_back(page.substr(at, end - at));
        at = end;
    }
    return quotes;
}

TEST_F(ExamplesTest, PagesQuoteThePrograms) {
    std::string programs;
    for (const auto& file : std::filesystem::directory_iterator(HBX_SOURCE_DIR "/examples")) {
        programs += words(contentOf(file.path()));
    }
    std::vector<std::filesystem::path> pages{HBX_SOURCE_DIR "/README.md"};
    for (const auto& file : std::filesystem::directory_iterator(HBX_SOURCE_DIR "/docs")) {
        pages.push_back(file.path());
    }
    std::size_t quotes = 0;
    for (const auto& page : pages) {
        for (const std::string& quote : quotesIn(contentOf(page))) {
            ++quotes;
            EXPECT_NE(programs.find(words(quote)), std::string::npos)
                << page << " shows what no program in examples/ has:\n"
                << quote;
        }
    }
    EXPECT_GT(quotes, 5U);
}

} // namespace
} // namespace HBX
