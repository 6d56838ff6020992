#pragma once

#include <mutex>

namespace HBX {

/// Guards process-wide state against other threads. Not recursive: no operation may take it twice.
/// Used with a guard: `const HBXLockGuard guard(lock);`
class HBXLock {
public:
    /// As std::mutex; not to be taken twice by one thread.
    void lock() { mutex_.lock(); }
    bool try_lock() { return mutex_.try_lock(); }
    void unlock() { mutex_.unlock(); }

private:
    std::mutex mutex_;
};

using HBXLockGuard = std::lock_guard<HBXLock>;

} // namespace HBX
