#include <HBXCore/internal/ForkGuard.h>

#include <set>
#include <vector>

#include <pthread.h>
#include <unistd.h>

namespace HBX::internal {

constinit std::atomic<std::uint64_t> forkCount{0};

/// Everything that a fork must change, and its handlers. Never destroyed, as descriptors may outlive it.
struct ForkRegistry {
    HBXLock lock;
    std::set<ForkGuardedDescriptor*> guarded;
    std::vector<HBXLock*> outerLocks; ///< Taken before ours.

    static ForkRegistry& instance() {
        static auto* registry = new ForkRegistry;
        return *registry;
    }

private:
    ForkRegistry() {
        pthread_atfork([] { instance().lockAll(); }, [] { instance().unlockAll(); },
                       [] { instance().inChild(); });
    }
    void lockAll() {
        for (HBXLock* outer : outerLocks) {
            outer->lock();
        }
        lock.lock();
    }
    void unlockAll() {
        lock.unlock();
        for (HBXLock* outer : outerLocks) {
            outer->unlock();
        }
    }
    void inChild() {
        forkCount.fetch_add(1, std::memory_order_relaxed);
        for (ForkGuardedDescriptor* descriptor : guarded) {
            if (descriptor->descriptor_ >= 0) {
                ::close(descriptor->descriptor_);
                descriptor->descriptor_ = -1;
            }
        }
        unlockAll();
    }
};

void keepOutOfForks(HBXLock& lock) {
    ForkRegistry& registry = ForkRegistry::instance();
    const HBXLockGuard guard(registry.lock);
    registry.outerLocks.push_back(&lock);
}

ForkGuardedDescriptor::ForkGuardedDescriptor(int descriptor) : descriptor_(descriptor) {
    ForkRegistry& registry = ForkRegistry::instance();
    const HBXLockGuard guard(registry.lock);
    registry.guarded.insert(this);
}

ForkGuardedDescriptor::~ForkGuardedDescriptor() {
    ForkRegistry& registry = ForkRegistry::instance();
    const HBXLockGuard guard(registry.lock);
    registry.guarded.erase(this);
    replace(-1);
}

void ForkGuardedDescriptor::replace(int descriptor) {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
    descriptor_ = descriptor;
}

} // namespace HBX::internal
