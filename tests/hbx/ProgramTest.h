#pragma once

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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
    Words words;
    int code;
    std::string error; ///< the beginning of its complaint, behind "hbx: "
};

/// Where a run finds its streams; no input when none is given, output and complaints are caught when no file
/// is given.
struct Streams {
    std::string in = "/dev/null";
    std::string out = "";
    std::string zone = "UTC";
    std::string err = "";
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
    Ended run(Words words, const Streams& streams = {}) const {
        return end(start(std::move(words), streams), streams);
    }

    /// What a call that succeeds prints.
    std::string out(const Words& words, const Streams& streams = {}) const {
        const Ended ended = run(words, streams);
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(ended.err, "");
        return ended.out;
    }
    Json json(const Words& words, const Streams& streams = {}) const {
        return Json::parse(out(joined(words, {"--json"}), streams), nullptr, false);
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

    /// A run that goes on beside the test. Its streams must not be those of another.
    pid_t start(Words words, const Streams& streams) const {
        const std::string out = streams.out.empty() ? path("stdout") : streams.out;
        const pid_t child = fork();
        if (child == 0) {
            redirect(streams.in, O_RDONLY, STDIN_FILENO);
            redirect(out, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
            redirect(errorFile(streams), O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY, STDERR_FILENO);
            setenv("TZ", streams.zone.c_str(), 1);
            setenv("HBX_HOME", path("home").c_str(), 1); // the user's own files are not for tests
            words.insert(words.begin(), "hbx");
            std::vector<char*> arguments;
            for (std::string& word : words) {
                arguments.push_back(word.data());
            }
            arguments.push_back(nullptr);
            execv(HBX_PROGRAM, arguments.data());
            _exit(127);
        }
        return child;
    }

    Ended end(pid_t child, const Streams& streams) const {
        int status = 0;
        waitpid(child, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status),
                streams.out.empty() ? contentOf(path("stdout")) : "",
                std::filesystem::is_regular_file(errorFile(streams)) ? contentOf(errorFile(streams)) : ""};
    }

private:
    std::string errorFile(const Streams& streams) const {
        return streams.err.empty() ? path("stderr") : streams.err;
    }
    static void redirect(const std::string& file, int flags, int stream) {
        const int descriptor = open(file.c_str(), flags, 0600);
        if (descriptor < 0 || dup2(descriptor, stream) < 0) {
            _exit(126);
        }
        close(descriptor);
    }
};

} // namespace HBX
