#include "FileTurn.h"

#include <chrono>
#include <thread>

#include <sys/file.h>
#include <sys/stat.h>

#include "Failure.h"

namespace HBX::tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{10};

/// Whoever had the turn before may have put another file in place of the one that we have opened.
bool isStillThere(std::FILE* opened, const std::string& file) {
    struct stat ours {};
    struct stat present {};
    return fstat(fileno(opened), &ours) == 0 && stat(file.c_str(), &present) == 0 &&
           ours.st_dev == present.st_dev && ours.st_ino == present.st_ino;
}

} // namespace

FileTurn::FileTurn(const std::string& file) {
    const Clock::time_point deadline = Clock::now() + kPatience;
    while (Clock::now() < deadline) {
        held_.reset(std::fopen(file.c_str(), "re"));
        if (held_ == nullptr) {
            return;
        }
        if (flock(fileno(held_.get()), LOCK_EX | LOCK_NB) == 0 && isStillThere(held_.get(), file)) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    throw Failure(ExitCode::LockedOrTimedOut, file + ": another program is changing it");
}

} // namespace HBX::tool
