#include "Peers.h"

#include <algorithm>
#include <mutex>
#include <type_traits>

#include <boost/container/flat_map.hpp>
#include <boost/container/map.hpp>
#include <boost/container/vector.hpp>
#include <boost/interprocess/allocators/allocator.hpp>
#include <boost/interprocess/managed_mapped_file.hpp>
#include <boost/interprocess/sync/interprocess_mutex.hpp>
#include <boost/interprocess/sync/interprocess_sharable_mutex.hpp>
#include <boost/interprocess/sync/sharable_lock.hpp>

namespace HBX::bench {
namespace {

namespace ipc = boost::interprocess;

// Of the whole file, which takes blocks only where it is written.
constexpr std::size_t kFileSize = std::size_t{512} << 20;

// The allocator's own lock is left out: everything happens under the lock of the content.
using Segment =
    ipc::basic_managed_mapped_file<char, ipc::rbtree_best_fit<ipc::null_mutex_family>, ipc::iset_index>;
template <class T>
using Allocator = ipc::allocator<T, Segment::segment_manager>;
using StoredBytes = boost::container::vector<std::byte, Allocator<std::byte>>;

using FlatMap =
    boost::container::flat_map<Key, StoredBytes, std::less<>, Allocator<std::pair<Key, StoredBytes>>>;
using Map =
    boost::container::map<Key, StoredBytes, std::less<>, Allocator<std::pair<const Key, StoredBytes>>>;

/// How a reader takes the lock.
template <class Mutex>
struct Reading {
    using Lock = std::unique_lock<Mutex>;
};

template <>
struct Reading<ipc::interprocess_sharable_mutex> {
    using Lock = ipc::sharable_lock<ipc::interprocess_sharable_mutex>;
};

template <class Container, class Mutex>
struct Content {
    explicit Content(Segment::segment_manager* manager)
        : values(typename Container::allocator_type(manager)) {}

    Mutex mutex;
    Container values;
};

template <class Container, class Mutex>
class BoostStore : public Store {
    using SharedContent = Content<Container, Mutex>;
    using ReadLock = typename Reading<Mutex>::Lock;

public:
    BoostStore(const char* path, Open how)
        : segment(how == Open::create ? Segment(ipc::create_only, path, kFileSize)
                                      : Segment(ipc::open_only, path)),
          content(*segment.find_or_construct<SharedContent>(ipc::unique_instance)(
              segment.get_segment_manager())) {}

    std::uint64_t get(const Key& key) override {
        ReadLock lock(content.mutex);
        const auto found = content.values.find(key);
        if (found == content.values.end()) {
            return 0;
        }
        const Copy copy(bytesOf(*found));
        lock.unlock();
        return copy.version(key);
    }

    void put(const Key& key, std::uint64_t version) override {
        value.key = key;
        value.version = version;
        const Bytes bytes = value.bytes();
        const std::lock_guard lock(content.mutex);
        const auto place = content.values.try_emplace(key, segment.get_segment_manager()).first;
        place->second.assign(bytes.data(), bytes.data() + bytes.size());
    }

    bool remove(const Key& key) override {
        const std::lock_guard lock(content.mutex);
        return content.values.erase(key) == 1;
    }

    std::uint64_t walk() override {
        const ReadLock lock(content.mutex);
        std::uint64_t sum = 0;
        for (const auto& entry : content.values) {
            sum += touch(bytesOf(entry));
        }
        return sum;
    }

    void openAndCloseView() override { const ReadLock lock(content.mutex); }

    void fill(std::uint64_t entries) override {
        if constexpr (std::is_same_v<Container, FlatMap>) {
            fillAndSort(entries);
        } else {
            Store::fill(entries);
        }
    }

private:
    void fillAndSort(std::uint64_t entries);

    static Bytes bytesOf(const auto& entry) { return {entry.second.data(), entry.second.size()}; }

    Segment segment;
    SharedContent& content;
    Value value;
};

// As if put one by one, but sorted once: moving the entries for each would take long.
template <class Container, class Mutex>
void BoostStore<Container, Mutex>::fillAndSort(std::uint64_t entries) {
    typename Container::sequence_type sequence(content.values.get_allocator());
    sequence.reserve(entries);
    value.version = 1;
    for (std::uint64_t entry = 0; entry < entries; ++entry) {
        value.key = keyOf(entry);
        const Bytes bytes = value.bytes();
        StoredBytes stored(bytes.data(), bytes.data() + bytes.size(), segment.get_segment_manager());
        sequence.emplace_back(value.key, std::move(stored));
    }
    std::sort(sequence.begin(), sequence.end(),
              [](const auto& left, const auto& right) { return left.first < right.first; });
    content.values.adopt_sequence(boost::container::ordered_unique_range, std::move(sequence));
}

} // namespace

std::unique_ptr<Store> openFlatMap(const char* path, Open how) {
    return std::make_unique<BoostStore<FlatMap, ipc::interprocess_mutex>>(path, how);
}

std::unique_ptr<Store> openFlatMapSharable(const char* path, Open how) {
    return std::make_unique<BoostStore<FlatMap, ipc::interprocess_sharable_mutex>>(path, how);
}

std::unique_ptr<Store> openMap(const char* path, Open how) {
    return std::make_unique<BoostStore<Map, ipc::interprocess_mutex>>(path, how);
}

} // namespace HBX::bench
