#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace HBX {

/// A process-wide value that is replaced rarely and read from any thread. A reader keeps the value that it
/// got for as long as it needs it; no lock is held meanwhile.
template <class T>
class HBXSetting {
public:
    explicit HBXSetting(T value) : value_(std::make_shared<const T>(std::move(value))) {}

    std::shared_ptr<const T> get() const {
        const std::lock_guard guard(lock_);
        return value_;
    }

    /// Returns the value that was in force.
    T set(T value) {
        auto next = std::make_shared<const T>(std::move(value));
        const std::lock_guard guard(lock_);
        value_.swap(next);
        return *next;
    }

private:
    mutable std::mutex lock_;
    std::shared_ptr<const T> value_;
};

} // namespace HBX
