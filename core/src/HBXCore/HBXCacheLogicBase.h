#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <HBXCommon/HBXExport.h>
#include <HBXCore/HBXCacheFile.h>
#include <HBXCore/HBXCacheStatus.h>
#include <HBXCore/HBXMappedMemoryManager.h>

namespace HBX {

namespace internal {
class CacheView;
struct CacheDamage;
struct SidecarHead;
struct SidecarPin;
} // namespace internal

/// What a writer is about to do with a snapshot.
enum eSnapshotHint {
    shGrow = 0, ///< An entry may be added.
    shKeep = 1  ///< Entries are replaced or removed.
};

/// Sizes of one cache. The first is kept and not used.
struct HBXCacheSizes {
    std::size_t unused = 0;
    std::size_t maximumLists = 0;    ///< Lists that one object has open at a time.
    std::size_t maximumFileSize = 0; ///< Bytes.
};

class HBXCacheList;

/// A map from keys of 16 bytes to value records of any length inside one file that several processes have
/// mapped. Readers hold snapshots; writers change the current one in place while nobody else holds it, else a
/// copy. Every change takes effect by one aligned store of 8 bytes, for which all was prepared before; all
/// else in the file is derived from what such stores left, so a process may be killed at any instruction.
///
/// Results: 0; -1 no memory, file at its maximum, or not accessible; -2 cannot be mapped; -8 no snapshot, or
/// the file was cut off; -9 the lock cannot be taken; -10 cannot be mapped again; -11 to -13, -15, -16 a
/// field of the header is wrong; -14 the file is abandoned. After -8 and -14 `isAccessible` is false: open it
/// anew.
///
/// All operations may be called from any thread, but for `initialize`.
class HBX_EXPORT HBXCacheLogicBase {
public:
    virtual ~HBXCacheLogicBase();
    HBXCacheLogicBase(const HBXCacheLogicBase&) = delete;
    HBXCacheLogicBase& operator=(const HBXCacheLogicBase&) = delete;

    /// Opens the file, which is built when it is new.
    /// @param keepWritable         false: the mapping is read-only while no operation runs.
    /// @param invalidateOnFailure  a file that is refused is marked, so that the next creator replaces it.
    int initialize(bool keepWritable, bool invalidateOnFailure);

    /// The name given at construction, which is the file's.
    const std::string& getID() const { return name_; }
    /// Whether the file is mapped and the cache can be used.
    bool isAccessible() const { return memory_.load(std::memory_order_acquire) != nullptr; }
    /// Forgets the mapping. @return 0.
    int reinit();
    /// What this cache and its file agree on.
    const HBXCacheFormat& format() const { return format_; }
    /// Whether the file still stands under its name; one system call.
    bool isLinked();

    /// Bytes that the live data need: a file of this size could hold them. 0 when not accessible.
    std::size_t getAchiveableSize();
    /// Bytes of all blocks in use. 0 when not accessible.
    std::size_t getTotalAllocatedSize();
    /// Who does what with the cache.
    int getStatus(HBXCacheStatus& status);
    /// Changes that any process committed so far; to be polled, costs no lock. 0 when not accessible.
    std::uint64_t getChangeCount();

    /// Removes the entry of a key; 0 also when there is none.
    int removeKey(const void* key);

    friend void intrusive_ptr_add_ref(const HBXCacheLogicBase* cache) {
        cache->references_.fetch_add(1, std::memory_order_relaxed);
    }
    friend void intrusive_ptr_release(HBXCacheLogicBase* cache) {
        if (cache->references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            cache->endUnlessListed();
        }
    }

protected:
    /// What every operation asks of a mapping, each several steps away from its manager.
    struct Mapping {
        internal::SidecarHead* agreed = nullptr; ///< With the other processes.
        char* base = nullptr;
        std::uint64_t size = 0; ///< Of what may be read from `base`, a multiple of 16.
        std::uint64_t generation = 0;
    };
    /// One locked operation. Keeps a mapping that the operation had to replace until it ends.
    struct Storage {
        HBXMappedMemoryManager* manager = nullptr;
        boost::intrusive_ptr<HBXMappedMemoryManager> retired;
    };

    HBXCacheLogicBase(std::string name, const HBXCacheFormat& format, const HBXCacheSizes& sizes);

    /// A mapping that is not made yet; never null.
    virtual boost::intrusive_ptr<HBXMappedMemoryManager> newManager() const = 0;
    /// Bytes.
    std::size_t maximumFileSize() const { return sizes_.maximumFileSize; }

    /// Begins a locked operation, with the mapping as it is now: 0 or a code. `unlock` ends it, after 0 only.
    int lock(Storage& storage);
    void unlock(Storage& storage);
    void enterFork(Storage& storage);

    /// Stores a copy of a value record of `length` bytes, in place of the key's present one.
    int putBytes(const void* key, const void* record, std::size_t length);
    /// A private copy of a value record, to be freed by the caller; null when absent or on failure.
    void* copyBytes(const void* key);
    /// The list that was closed last, when it still shows the present; null otherwise. Costs no lock.
    HBXCacheList* takeUpList();

private:
    friend class HBXCacheList;

    // --- opening ---
    int openMapping();
    int prepare(Storage& storage);
    int buildFile(Storage& storage);
    int tryCurrentSnapshot(Storage& storage);
    int unsafe_checkSize(Storage& storage);
    int checkState(Storage& storage);
    int remapTo(Storage& storage, std::size_t size, bool protectOld);
    void forget(Storage& storage);
    void retire(Storage& storage);
    int giveUp(Storage& storage, int code);

    // --- operations ---
    template <class Work>
    int locked(Work work);
    template <class Work>
    int repairing(Storage& storage, Work work);
    int recover(Storage& storage);
    bool needsRecovery() const;

    void appendEntry(HBXSnapshotHead& snapshot, const void* key, std::uint64_t value);
    int put(Storage& storage, const void* key, const void* record, std::size_t length);
    int remove(Storage& storage, const void* key);
    void commit(std::uint64_t& word, std::uint64_t value);
    void countChange();

    // --- space ---
    std::uint64_t allocate(Storage& storage, std::size_t size);
    bool growFor(Storage& storage, std::size_t size);
    std::uint64_t storeValue(Storage& storage, const void* record, std::size_t length);
    void releaseValue(Storage& storage, std::uint64_t offset);

    // --- snapshots ---
    std::uint64_t getWritableSnapshot(eSnapshotHint hint, Storage& storage);
    std::uint64_t replaceSnapshot(Storage& storage);
    void fillSnapshot(std::uint64_t from, std::uint64_t to, std::uint32_t capacity);
    void raiseValueCounts(std::uint64_t snapshot);
    std::uint64_t acquireSnapshot(Storage& storage, internal::SidecarPin*& pin);
    void releaseSnapshot(std::uint64_t snapshot, Storage& storage, std::uint32_t lists);
    static bool isSnapshotMemoryAccessible(std::uint64_t snapshot, const Storage& storage);
    void freeSnapshot(Storage& storage, std::uint64_t snapshot);
    void releasePin(Storage& storage, const internal::SidecarPin& pin);
    void reclaimResting(Storage& storage);
    void reclaimDead(Storage& storage);
    void reclaimIfHeld(Storage& storage);
    void openList(HBXCacheList& list);
    int fillList(Storage& storage, HBXCacheList& list);
    void closeList(HBXCacheList& list);
    bool restList(HBXCacheList& list);
    bool wakeList(HBXCacheList& list);
    static bool showsPresent(const HBXCacheList& list);
    HBXCacheList* noList() { return reinterpret_cast<HBXCacheList*>(this); }
    static void dropPin(HBXCacheList& list);
    void giveBack(Storage& storage, HBXCacheList& list);
    void endUnlessListed();
    static void logUnableToLock();

    int describe(Storage& storage, HBXCacheStatus& status);

    internal::CacheView view() const;
    HBXCacheHead& head() const;
    void look(Storage& storage);
    int repairState(Storage& storage);
    void logDamage(const internal::CacheDamage& damage) const;

    const std::string name_;
    const HBXCacheFormat format_;
    const HBXCacheSizes sizes_;
    bool protect_ = true;
    /// The first mapping. Its lock serves all later ones, so it must not go away while somebody waits for it.
    boost::intrusive_ptr<HBXMappedMemoryManager> gate_;
    /// The current mapping; null when not accessible. Changed under the lock only.
    boost::intrusive_ptr<HBXMappedMemoryManager> manager_;
    std::atomic<char*> memory_{nullptr};
    /// The current mapping as it was looked at last; under the lock.
    Mapping known_;
    mutable std::atomic<int> references_{0};
    /// A closed list for the next who wants one; noList() once nobody can want one.
    std::atomic<HBXCacheList*> resting_{nullptr};
    // Under the lock. Lists are counted here, as one needs no further locked instruction for that.
    std::size_t openLists_ = 0;
    std::uint64_t fork_;     ///< In which process they were opened.
    bool onlyLists_ = false; ///< Nobody but lists keeps us alive.
};

} // namespace HBX
