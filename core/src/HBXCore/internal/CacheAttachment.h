#pragma once

#include <atomic>
#include <bitset>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>

#include <boost/shared_ptr.hpp>

#include <HBXCore/internal/FaultGuard.h>
#include <HBXCore/internal/ForkGuard.h>
#include <HBXCore/internal/Sidecar.h>

struct stat;

namespace HBX::internal {

/// This process among those that share one cache: the mapped lock file with its lock and its tables. One for
/// each lock file, shared by all that the process has open.
class CacheAttachment {
public:
    using Patience = std::chrono::milliseconds;
    /// A shorter one would let a busy machine destroy a healthy cache.
    static constexpr Patience kPatience{60'000};

    /// Attaches to the lock file of a cache file, which is made when there is none.
    /// @return null with the error message when it cannot be used; it is then untouched.
    static boost::shared_ptr<CacheAttachment> attach(const std::string& cacheName, Patience patience);
    ~CacheAttachment();
    CacheAttachment(const CacheAttachment&) = delete;
    CacheAttachment& operator=(const CacheAttachment&) = delete;

    /// Held while a process opens or removes files, so that no two do it at once. Taken before the lock,
    /// never the other way round.
    class Opening {
    public:
        Opening(CacheAttachment& attachment, Patience patience);
        ~Opening();
        Opening(const Opening&) = delete;
        Opening& operator=(const Opening&) = delete;
        bool isHeld() const { return held_; }

    private:
        CacheAttachment& attachment_;
        std::unique_lock<std::timed_mutex> threads_;
        bool held_ = false;
    };

    /// Takes the lock that all processes share. A holder that was killed leaves it to the next, which finds
    /// `rebuild` set in the head. @return 0; -1 when it is broken or not free in time (ETIMEDOUT).
    int lock(Patience patience) {
        const int result = pthread_mutex_trylock(&sidecar_->mutex);
        return result == 0 && !damaged_.load(std::memory_order_relaxed) ? 0 : finishLock(result, patience);
    }
    void unlock() { pthread_mutex_unlock(&sidecar_->mutex); }

    SidecarHead& head() { return sidecar_->head; }
    std::uint64_t generation() const {
        return std::atomic_ref(sidecar_->head.generation).load(std::memory_order_relaxed);
    }
    /// Sends all processes to look for the cache file anew.
    void raiseGeneration() {
        std::atomic_ref(sidecar_->head.generation).fetch_add(1, std::memory_order_relaxed);
    }
    const Sidecar& tables() const { return *sidecar_; }
    /// Notes, on the disk too, that the cache file may differ from what the disk has. Under the lock.
    void clearCleanMark();
    /// Whether this process attached itself, and not the one that it was forked off.
    bool isOurs() const { return fork_.load(std::memory_order_acquire) == forkNumber(); }
    /// Attaches a forked child in its own name. 0, or -1 with the error message.
    int reattach(Patience patience);
    /// Whether no other process is attached. Under the opening lock.
    bool isAlone() const;

    // --- who holds which snapshot; under the lock ---

    /// Notes one more list over a snapshot. -1 when the table is full.
    int addPin(std::uint64_t generation, std::uint64_t snapshot);
    void dropPin(std::uint64_t generation, std::uint64_t snapshot);
    /// Hands the rows of processes that ended without closing their lists to `release`, then forgets them.
    template <class Release>
    void reclaimDead(Release release) {
        const std::bitset<Sidecar::kAttachments> dead = findDead();
        if (dead.none()) {
            return;
        }
        for (std::uint64_t i = 0; i < usedRows(); ++i) {
            SidecarPin& pin = sidecar_->pins[i];
            if (isInUse(pin) && dead[pin.attachment - 1]) {
                const SidecarPin row = pin;
                clearRow(pin);
                release(row);
            }
        }
        forgetAttachments(dead);
    }
    /// Calls `visit(pin)` for each row in use.
    template <class Visit>
    void forEachPin(Visit visit) const {
        for (std::uint64_t i = 0; i < usedRows(); ++i) {
            if (isInUse(sidecar_->pins[i])) {
                visit(sidecar_->pins[i]);
            }
        }
    }

private:
    CacheAttachment(std::string path, int descriptor, const struct stat& status);
    int finishLock(int result, Patience patience);
    int open(Patience patience);
    int prepareFile(bool first);
    void initialise();
    int checkShared() const;
    int claimSlot();
    int attachAgain(Patience patience);
    std::uint64_t usedRows() const;
    static bool isInUse(const SidecarPin& pin) {
        return pin.attachment != 0 && pin.attachment <= Sidecar::kAttachments;
    }
    std::bitset<Sidecar::kAttachments> findDead() const;
    void forgetAttachments(const std::bitset<Sidecar::kAttachments>& dead);
    static void clearRow(SidecarPin& pin);
    SidecarPin* findPin(std::uint64_t generation, std::uint64_t snapshot);
    SidecarPin* findFreeRow();
    bool isRowOf(const SidecarPin& pin, std::uint64_t generation, std::uint64_t snapshot) const;

    /// No process has it: nothing is attached yet.
    static constexpr std::uint64_t kNoFork = ~std::uint64_t{0};

    std::string path_;
    std::uint64_t device_;
    std::uint64_t inode_;
    ForkGuardedDescriptor descriptor_;
    Sidecar* sidecar_ = nullptr;
    std::atomic<bool> damaged_{false}; ///< The lock file was cut off.
    std::unique_ptr<GuardedRange> range_;
    std::uint32_t slot_ = 0;
    std::atomic<std::uint64_t> fork_{kNoFork};
    std::uint64_t lastRow_ = 0; ///< Where the last pin was found; under the lock.
    /// Among the threads of this process, which share the descriptor's locks.
    std::timed_mutex opening_;
};

} // namespace HBX::internal
