#pragma once

#include <atomic>
#include <cstdint>

#include <HBXCommon/HBXLock.h>

namespace HBX::internal {

/// How often this process has been forked off since the program started: what was attached under another
/// number belongs to the parent.
extern std::atomic<std::uint64_t> forkCount;
inline std::uint64_t forkNumber() { return forkCount.load(std::memory_order_relaxed); }

/// Closes a descriptor in every child that is forked off, as the locks that it holds would otherwise live on
/// there. The destructor closes it here.
class ForkGuardedDescriptor {
public:
    explicit ForkGuardedDescriptor(int descriptor);
    ~ForkGuardedDescriptor();
    ForkGuardedDescriptor(const ForkGuardedDescriptor&) = delete;
    ForkGuardedDescriptor& operator=(const ForkGuardedDescriptor&) = delete;

    int get() const { return descriptor_; }
    /// Takes another one in place of that which the fork closed.
    void replace(int descriptor);

private:
    friend struct ForkRegistry;
    int descriptor_;
};

/// From now on no fork happens while another thread has the lock, as nobody would ever release it in the
/// child.
/// @param lock  lives as long as the program; whoever has it may make and destroy guarded descriptors.
void keepOutOfForks(HBXLock& lock);

} // namespace HBX::internal
