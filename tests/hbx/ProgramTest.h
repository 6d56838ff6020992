#pragma once

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace HBX {

using Words = std::vector<std::string>;

/// What one run of the program left behind.
struct Ended {
    int code; ///< exit code, 1000 + signal when it was killed
    std::string out;
    std::string err;
};

/// Where a run finds its streams; no input when none is given, output is caught when no file is given.
struct Streams {
    std::string in = "/dev/null";
    std::string out = "";
    std::string zone = "UTC";
    std::string err = "stderr"; ///< name in the test's folder
};

inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

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

/// A message around the content of its root.
inline std::string messageText(const std::string& content) {
    return R"(<message xmlns:hbx="urn:hbx:message" hbx:v="1">)" + content + "</message>";
}

/// Runs the real program in a folder of its own, with the sample configuration as the agent's.
class ProgramTest : public testing::Test {
protected:
    ProgramTest() {
        std::string pattern = testing::TempDir() + "hbx-program-XXXXXX";
        folder_ = mkdtemp(pattern.data());
        std::filesystem::create_directory(path("home"));
        std::filesystem::copy_file(sample("agent.xml"), path("home/agent.xml"));
    }
    ~ProgramTest() override { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return folder_ / name; }

    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    Ended run(Words words, const Streams& streams = {}) const {
        return end(start(std::move(words), streams), streams);
    }

    /// A run that goes on beside the test. Its streams must not be those of another.
    pid_t start(Words words, const Streams& streams) const {
        const std::string out = streams.out.empty() ? path("stdout") : streams.out;
        const pid_t child = fork();
        if (child == 0) {
            redirect(streams.in, O_RDONLY, STDIN_FILENO);
            redirect(out, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
            redirect(path(streams.err), O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
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
                streams.out.empty() ? contentOf(path("stdout")) : "", contentOf(path(streams.err))};
    }

    /// Every beginning of some bytes, each in a file.
    Words writeBeginnings(const std::string& bytes) const {
        Words files;
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            files.push_back(write("cut-" + std::to_string(length), bytes.substr(0, length)));
        }
        return files;
    }

private:
    static void redirect(const std::string& file, int flags, int stream) {
        const int descriptor = open(file.c_str(), flags, 0600);
        if (descriptor < 0 || dup2(descriptor, stream) < 0) {
            _exit(126);
        }
        close(descriptor);
    }

    std::filesystem::path folder_;
};

} // namespace HBX
