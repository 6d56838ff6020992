#include "EnvVerbs.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <thread>

#include "CacheFile.h"
#include "Console.h"
#include "EnvChanges.h"
#include "JsonText.h"

namespace HBX::tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause{50};

volatile std::sig_atomic_t interrupted = 0;

void endOnInterrupt() {
    struct sigaction action {};
    action.sa_handler = [](int) { interrupted = 1; };
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

/// A cache that somebody may replace or remove while it is watched.
class WatchedCache {
public:
    explicit WatchedCache(std::string path) : path_(std::move(path)), cache_(openCache({path_})) {
        memory_.look(*listOf(*cache_));
    }

    /// What changed since the last look; nothing while there is no file.
    std::vector<EnvChange> changes() {
        if (!cache_->isAccessible() || !cache_->isLinked()) {
            if (!std::filesystem::exists(path_)) {
                return {};
            }
            cache_ = openCache({path_});
            count_.reset();
        }
        // Asked for before the list is made: what comes in between is looked at twice, and not missed.
        const std::uint64_t count = cache_->getChangeCount();
        if (count_ == count) {
            return {};
        }
        count_ = count;
        return memory_.look(*listOf(*cache_));
    }

private:
    const std::string path_;
    EnvCache cache_;
    EnvMemory memory_;
    std::optional<std::uint64_t> count_;
};

void printChange(const EnvChange& change, bool json) {
    print(json ? jsonLine(toJson(change)) : describe(change) + '\n');
}

int countOf(const Arguments& arguments) {
    const int count = arguments.has("count") ? arguments.get<int>("count") : 0;
    if (arguments.has("count") && count < 1) {
        throw Failure(ExitCode::Usage, "--count is at least 1");
    }
    return count;
}

Clock::time_point deadlineOf(const Arguments& arguments) {
    constexpr double kLongest = 1e9;
    const double seconds = arguments.has("timeout") ? arguments.get<double>("timeout") : kLongest;
    if (!(seconds >= 0 && seconds <= kLongest)) {
        throw Failure(ExitCode::Usage, "--timeout is 0 to 1000000000 seconds");
    }
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

} // namespace

ExitCode watchCache(const Arguments& arguments) {
    const int count = countOf(arguments);
    const Clock::time_point deadline = deadlineOf(arguments);
    const std::string path = cachePath(arguments);
    endOnInterrupt();
    WatchedCache cache(path);
    int printed = 0;
    while (interrupted == 0) {
        for (const EnvChange& change : cache.changes()) {
            printChange(change, arguments.has("json"));
            if (++printed == count) {
                return ExitCode::Ok;
            }
        }
        const auto left = deadline - Clock::now();
        if (left <= Clock::duration::zero()) {
            if (count == 0) {
                return ExitCode::Ok;
            }
            throw Failure(ExitCode::LockedOrTimedOut, path + ": only " + std::to_string(printed) + " of " +
                                                          std::to_string(count) + " changes came in time");
        }
        std::this_thread::sleep_for(std::min<Clock::duration>(left, kPause));
    }
    return ExitCode::Ok;
}

} // namespace HBX::tool
