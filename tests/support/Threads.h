#pragma once

#include <functional>
#include <thread>
#include <vector>

namespace HBX::test {

/// Runs all at the same time and waits for the last.
inline void runThreads(const std::vector<std::function<void()>>& works) {
    std::vector<std::jthread> threads;
    for (const auto& work : works) {
        threads.emplace_back(work);
    }
}

} // namespace HBX::test
