#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include <sys/types.h>

namespace HBX::bench {

/// Processes that do the same work over and over for the same time, and count.
class Workers {
public:
    using Operation = std::function<void()>;

    Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;
    /// Ends the processes that still run.
    ~Workers();

    /// Starts a process.
    /// @param prepare  called in it once, gives the work. What either throws ends the process as failed.
    void add(const std::function<Operation()>& prepare);

    /// Lets all work for a while, then counts their work for as long, then ends them.
    /// @return seconds that were counted; negative when one of them failed.
    double run(double seconds);

    /// How often the process that was added as the number-th, from 0 on, did its work.
    std::uint64_t operations(std::size_t number) const { return board->operations[number]; }

private:
    enum class Phase { warmUp, count, end };

    /// Lies in memory that all share.
    struct Board {
        std::atomic<Phase> phase;
        std::atomic<std::size_t> prepared;
        std::array<std::atomic<std::uint64_t>, 8> operations; // written once, at the end of the work
    };

    void work(std::size_t number, const std::function<Operation()>& prepare);
    bool allPrepared() const;
    bool allEndWell();

    Board* board;
    std::vector<pid_t> processes;
};

} // namespace HBX::bench
