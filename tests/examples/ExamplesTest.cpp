#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

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

    /// What an example prints when its cache is `envs.cache`; the test fails when the example does.
    std::string outputOf(const std::string& example) const {
        const std::string command =
            HBX_EXAMPLES "/" + example + " '" + path("envs.cache") + "' > '" + path("out") + "'";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return contentOf(path("out"));
    }

    std::filesystem::path folder_;
};

TEST_F(ExamplesTest, ChildListsWhatTheParentInserted) {
    const std::string first = outputOf("share_cache");
    EXPECT_NE(first.find(" web: running\n"), std::string::npos) << first;
    EXPECT_NE(first.find(" mail: not running\n"), std::string::npos) << first;

    const std::string all = outputOf("one_environment"); // another program finds them, and adds its own
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 3) << all;
}

TEST_F(ExamplesTest, PageOnTheCacheFileShowsTheRealBytes) {
    outputOf("cache_file");
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

TEST_F(ExamplesTest, PageForCallersQuotesTheProgram) {
    const std::string program = contentOf(HBX_SOURCE_DIR "/examples/one_environment.cpp");
    const std::string page = contentOf(HBX_SOURCE_DIR "/docs/environment-cache.md");
    EXPECT_NE(page.find("```cpp\n" + program + "```\n"), std::string::npos);
}

} // namespace
} // namespace HBX
