#pragma once

#include <atomic>
#include <bitset>
#include <chrono>
#include <ctime>
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

    /// Notes one more list over a snapshot. @return its row; null when the table is full.
    SidecarPin* addPin(std::uint64_t generation, std::uint64_t snapshot);
    /// Takes one list out of its row.
    void dropPin(SidecarPin& pin);
    /// Tells one list's rests from those of others.
    std::uint32_t newTicket() { return ++lastTicket_ & 0x7FFFFFFF; }
    /// Ends the rests of all processes; hands their rows to `release`.
    template <class Release>
    void reclaimResting(Release release) {
        for (std::uint64_t i = 0; i < usedRows(); ++i) {
            SidecarPin& pin = sidecar_->pins[i];
            const SidecarPin row = read(pin);
            if (row.holder.isResting() && exchange(pin, row.holder, SidecarHolder{0})) {
                release(row);
            }
        }
    }
    /// Hands the rows of processes that ended without closing their lists to `release`, then forgets them.
    template <class Release>
    void reclaimDead(Release release) {
        const std::bitset<Sidecar::kAttachments> dead = findDead();
        if (dead.none()) {
            return;
        }
        for (std::uint64_t i = 0; i < usedRows(); ++i) {
            SidecarPin& pin = sidecar_->pins[i];
            const SidecarPin row = read(pin);
            if (isInUse(row) && dead[row.holder.attachment() - 1]) {
                exchange(pin, row.holder, SidecarHolder{0});
                release(row);
            }
        }
        forgetAttachments(dead);
    }
    /// Calls `visit(pin)` for each row in use.
    template <class Visit>
    void forEachPin(Visit visit) const {
        for (std::uint64_t i = 0; i < usedRows(); ++i) {
            if (const SidecarPin row = read(sidecar_->pins[i]); isInUse(row)) {
                visit(row);
            }
        }
    }

    // --- without the lock ---

    /// Brings the only list of a row to rest. false: others are in the row, or it is not ours.
    bool rest(SidecarPin& pin, std::uint32_t ticket) {
        return exchange(pin, SidecarHolder::ofLists(slot_ + 1, 1),
                        SidecarHolder::ofResting(slot_ + 1, ticket));
    }
    /// Takes a resting list up again. false: its rest was ended, and the row is not its own any more.
    bool takeUp(SidecarPin& pin, std::uint32_t ticket) {
        return exchange(pin, SidecarHolder::ofResting(slot_ + 1, ticket),
                        SidecarHolder::ofLists(slot_ + 1, 1));
    }
    /// A list of the row was opened now.
    static void notePinTime(SidecarPin& pin) {
        std::atomic_ref(pin.since).store(std::time(nullptr), std::memory_order_relaxed);
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
        return pin.holder.attachment() != 0 && pin.holder.attachment() <= Sidecar::kAttachments;
    }
    static SidecarPin read(const SidecarPin& pin) {
        return {{std::atomic_ref(const_cast<std::uint64_t&>(pin.holder.word)).load()},
                pin.generation,
                pin.snapshot,
                std::atomic_ref(const_cast<std::int64_t&>(pin.since)).load(std::memory_order_relaxed)};
    }
    static bool exchange(SidecarPin& pin, SidecarHolder from, SidecarHolder to) {
        return std::atomic_ref(pin.holder.word).compare_exchange_strong(from.word, to.word);
    }
    std::bitset<Sidecar::kAttachments> findDead() const;
    void forgetAttachments(const std::bitset<Sidecar::kAttachments>& dead);
    SidecarPin* findFreeRow();
    bool joinRow(SidecarPin& pin, std::uint64_t generation, std::uint64_t snapshot);

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
    std::uint64_t lastRow_ = 0;    ///< Where the last pin was put; under the lock.
    std::uint32_t lastTicket_ = 0; ///< Under the lock.
    /// Among the threads of this process, which share the descriptor's locks.
    std::timed_mutex opening_;
};

} // namespace HBX::internal
