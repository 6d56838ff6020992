#include "Workers.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <system_error>
#include <thread>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace HBX::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPrepareLimit = std::chrono::seconds(10);

void* sharedMemory(std::size_t size) {
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::system_error(errno, std::generic_category(), "mmap");
    }
    return memory;
}

} // namespace

Workers::Workers() : board(new(sharedMemory(sizeof(Board))) Board{}) {}

Workers::~Workers() {
    for (const pid_t process : processes) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    munmap(board, sizeof(Board));
}

void Workers::add(const std::function<Operation()>& prepare) {
    const std::size_t number = processes.size();
    const pid_t process = fork();
    if (process < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (process > 0) {
        processes.push_back(process);
        return;
    }
    // The child leaves without destructors: everything but its own work belongs to the parent.
    try {
        work(number, prepare);
        _exit(0);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "worker: %s\n", error.what());
        _exit(1);
    }
}

void Workers::work(std::size_t number, const std::function<Operation()>& prepare) {
    const Operation operation = prepare();
    ++board->prepared;
    while (board->phase.load(std::memory_order_relaxed) == Phase::warmUp) {
        operation();
    }
    std::uint64_t count = 0;
    for (; board->phase.load(std::memory_order_relaxed) == Phase::count; ++count) {
        operation();
    }
    board->operations.at(number) = count;
}

double Workers::run(double seconds) {
    if (!allPrepared()) {
        return -1;
    }
    const std::chrono::duration<double> time(seconds);
    std::this_thread::sleep_for(time);
    const auto start = Clock::now();
    board->phase = Phase::count;
    std::this_thread::sleep_for(time);
    board->phase = Phase::end;
    const std::chrono::duration<double> counted = Clock::now() - start;
    return allEndWell() ? counted.count() : -1;
}

/// A process that fails beforehand is noticed by the time that passes.
bool Workers::allPrepared() const {
    const auto limit = Clock::now() + kPrepareLimit;
    while (board->prepared != processes.size()) {
        if (Clock::now() > limit) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

bool Workers::allEndWell() {
    bool good = true;
    for (const pid_t process : processes) {
        int status = 0;
        good = waitpid(process, &status, 0) == process && status == 0 && good;
    }
    processes.clear();
    return good;
}

} // namespace HBX::bench
