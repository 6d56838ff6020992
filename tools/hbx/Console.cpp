#include "Console.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <iostream>

#include <fcntl.h>
#include <unistd.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>

namespace HBX::tool {

namespace {

constexpr std::size_t kMaxInput = std::size_t{256} << 20; // what a message may have at most

[[noreturn]] void failOn(const std::string& path, int error) {
    throw Failure(exitCodeOf(error), path + ": " + errnoText(error));
}

class InputFile {
public:
    explicit InputFile(const std::string& path)
        : path_(path), descriptor_(path == "-" ? STDIN_FILENO : openU(path, O_RDONLY, 0)) {
        if (descriptor_ < 0) {
            failOn(path_, errno);
        }
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile() {
        if (descriptor_ != STDIN_FILENO) {
            ::close(descriptor_);
        }
    }

    /// At the end 0.
    std::size_t read(char* bytes, std::size_t size) const {
        ssize_t count = -1;
        do {
            count = ::read(descriptor_, bytes, size);
        } while (count < 0 && errno == EINTR);
        if (count < 0) {
            failOn(path_, errno);
        }
        return static_cast<std::size_t>(count);
    }

private:
    const std::string& path_;
    int descriptor_;
};

} // namespace

void print(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            throw Failure(ExitCode::OutputFailed, "standard output: " + errnoText(errno));
        }
    }
}

bool isColourWanted() {
    // NOLINTBEGIN(concurrency-mt-unsafe): the program has one thread
    const char* refusal = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    // NOLINTEND(concurrency-mt-unsafe)
    const bool isRefused = refusal != nullptr && *refusal != '\0';
    return !isRefused && ::isatty(STDOUT_FILENO) == 1 && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}

void complain(std::string_view line) { std::cerr << "hbx: " << line << '\n'; }

std::string readInput(const std::string& path) {
    const InputFile file(path);
    std::string bytes;
    std::array<char, 65536> piece{};
    while (const std::size_t count = file.read(piece.data(), piece.size())) {
        bytes.append(piece.data(), count);
        if (bytes.size() > kMaxInput) {
            failOn(path, EFBIG);
        }
    }
    if (bytes.empty()) {
        throw Failure(ExitCode::InvalidInput, path + ": there is nothing in it");
    }
    return bytes;
}

ExitCode exitCodeOf(int error) {
    return error == EACCES || error == EPERM ? ExitCode::NotPermitted : ExitCode::InvalidInput;
}

} // namespace HBX::tool
