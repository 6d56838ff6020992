#pragma once

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <regex>
#include <string>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/ChildProcess.h"
#include "support/ScratchFolder.h"
#include "support/TextMessage.h"

namespace HBX {

using Words = std::vector<std::string>;
using Json = nlohmann::json;

/// What one run of the program left behind.
struct Ended {
    int code; ///< exit code, 1000 + signal when it was killed
    std::string out;
    std::string err;
};

/// A call that does not succeed.
struct Failure {
    int code;
    std::string error; ///< the beginning of its complaint, behind "hbx: "
    Words words;
};

/// Files that are the streams of a run: in the folder of the test, unless their names are absolute.
struct Streams {
    std::string in = "/dev/null";
    std::string out = "stdout";
    std::string err = "stderr";
    std::string zone = "UTC";
};

using test::contentOf;
using test::messageText;

inline std::string sample(const std::string& name) { return std::string(HBX_SOURCE_DIR "/samples/") + name; }

/// Files of a folder, in order.
inline Words filesIn(const std::string& folder) {
    Words files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

inline std::size_t linesOf(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// What the first group of a pattern matches, everywhere in a text.
inline Words matches(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    return {std::sregex_token_iterator(text.begin(), text.end(), expression, 1), {}};
}

inline Words joined(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// Runs the real program in a folder of its own, with the sample configuration as the agent's.
class ProgramTest : public testing::Test, protected test::ScratchFolder {
protected:
    ProgramTest() {
        std::filesystem::create_directory(path("home"));
        std::filesystem::copy_file(sample("agent.xml"), path("home/agent.xml"));
    }
    Ended run(const Words& words, const Streams& streams = {}) const {
        const int code = test::inChild([&] { return execute(words, streams); });
        return {code, caught(streams.out), caught(streams.err)};
    }

    /// What a call that succeeds prints.
    std::string out(const Words& words, const Streams& streams = {}) const {
        const Ended ended = run(words, streams);
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(ended.err, "");
        return ended.out;
    }
    /// The same as a document, which begins with its schema.
    Json json(const Words& words, const Streams& streams = {}) const {
        const std::string text = out(joined(words, {"--json"}), streams);
        EXPECT_EQ(text.rfind("{\n  \"schema\": 1,\n", 0), 0U) << text;
        return Json::parse(text, nullptr, false);
    }

    /// Each says why in one line, a wrong call the usage after it, and prints nothing.
    void expectFailures(const std::vector<Failure>& rows) const {
        for (const Failure& row : rows) {
            const Ended ended = run(row.words);
            EXPECT_EQ(ended.code, row.code) << ended.err;
            EXPECT_EQ(ended.err.rfind("hbx: " + row.error, 0), 0U) << ended.err;
            EXPECT_TRUE(row.code == 2 || linesOf(ended.err) == 1) << ended.err;
            EXPECT_EQ(ended.out, "");
        }
    }

    /// Makes this process a run of the program. The streams of two at a time must not be the same.
    int execute(Words words, const Streams& streams) const {
        dup2(open(path(streams.in).c_str(), O_RDONLY), STDIN_FILENO);
        dup2(open(path(streams.out).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        dup2(open(path(streams.err).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY, 0600), STDERR_FILENO);
        setenv("TZ", streams.zone.c_str(), 1);
        setenv("HBX_HOME", path("home").c_str(), 1); // the user's own files are not for tests
        std::vector<char*> arguments = {const_cast<char*>("hbx")};
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        return execv(HBX_PROGRAM, arguments.data());
    }

private:
    /// "" of a terminal.
    std::string caught(const std::string& file) const {
        return std::filesystem::is_regular_file(path(file)) ? contentOf(path(file)) : "";
    }
};

} // namespace HBX
