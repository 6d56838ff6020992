// Files of values by key that processes share, ours beside its peers (Peers.h); here one process is alone.
//
//   get/STORE/N       a private copy of the value under a random key
//   view/STORE/N      what a reader opens and closes around its reading, nothing read
//   walk/STORE/N      the first and last 8 bytes of every value, read in place; time an entry
//   replace/STORE/N   a value of the same size under a random key, committed
//   insert/STORE/N    a value under a key that was never there, committed; time an entry
//
// N entries of 600 bytes under 16-byte keys, put in random order: 1,000, 10,000 and 100,000. Files lie in
// memory. Several processes at once are in SharedBench.cpp. Every store first shows that it gives back what
// was put.
//
// A trap in walk: where one value ends and the next begins in the same cache line, 100,000 entries need fewer
// lines. flat_map's values all happen to lie so, flat_map_sharable's only every second time.

#include <map>
#include <string>

#include "Draws.h"
#include "Peers.h"
#include "ScratchFolder.h"

namespace HBX::bench {
namespace {

constexpr std::uint64_t kSizes[] = {1'000, 10'000, 100'000};
/// Large enough that what a store puts off until some insertions have come is done while the clock runs.
constexpr std::uint64_t kBatch = 1'000;

struct Filled {
    std::unique_ptr<Store> store;
    std::uint64_t entries;
    bool keepsValues;
    std::uint64_t unusedEntry;
};

/// Whether the freshly filled store behaves as one. Leaves it with the same entries.
bool keepsValues(Store& store, std::uint64_t entries) {
    std::uint64_t sum = 0;
    for (std::uint64_t entry = 0; entry < entries; ++entry) {
        sum += keyOf(entry)[0] + 1;
        if (store.get(keyOf(entry)) != 1) {
            return false;
        }
    }
    const Key other = keyOf(entries);
    if (store.walk() != sum || store.get(other) != 0 || store.remove(other)) {
        return false;
    }
    store.put(other, 1);
    store.put(other, 2);
    const bool replaced = store.get(other) == 2 && store.walk() == sum + other[0] + 2;
    return replaced && store.remove(other) && store.walk() == sum;
}

/// Filling takes longer than measuring, so a store stays for all its benchmarks.
Filled& filledStore(const Peer& peer, std::uint64_t entries) {
    static const ScratchFolder folder;
    static std::map<std::string, Filled> stores;
    const std::string name = peer.name + std::to_string(entries);
    auto found = stores.find(name);
    if (found == stores.end()) {
        std::unique_ptr<Store> store = peer.open(folder.file(name).c_str(), Open::create);
        store->fill(entries);
        const bool good = keepsValues(*store, entries);
        found = stores.emplace(name, Filled{std::move(store), entries, good, entries + 1}).first;
    }
    return found->second;
}

void get(benchmark::State& state, Filled& filled) {
    Draws draws(1, filled.entries);
    std::size_t missing = 0;
    for (auto _ : state) {
        missing += filled.store->get(draws.nextKey()) == 0 ? 1 : 0;
    }
    if (missing != 0) {
        state.SkipWithError("a key was not found");
    }
}

void view(benchmark::State& state, Filled& filled) {
    for (auto _ : state) {
        filled.store->openAndCloseView();
    }
}

void walk(benchmark::State& state, Filled& filled) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(filled.store->walk());
    }
    state.counters["items"] = static_cast<double>(filled.entries);
}

void replace(benchmark::State& state, Filled& filled) {
    Draws draws(2, filled.entries);
    std::uint64_t version = 1;
    for (auto _ : state) {
        filled.store->put(draws.nextKey(), ++version);
    }
}

/// Every key is new, as some store may remember a removed one. They are removed again off the clock.
void insert(benchmark::State& state, Filled& filled) {
    for (auto _ : state) {
        const std::uint64_t first = filled.unusedEntry;
        filled.unusedEntry += kBatch;
        for (std::uint64_t entry = first; entry < filled.unusedEntry; ++entry) {
            filled.store->put(keyOf(entry), 1);
        }
        state.PauseTiming();
        for (std::uint64_t entry = first; entry < filled.unusedEntry; ++entry) {
            filled.store->remove(keyOf(entry));
        }
        state.ResumeTiming();
    }
    state.counters["items"] = kBatch;
}

struct Work {
    const char* name;
    void (*run)(benchmark::State& state, Filled& filled);
};

constexpr Work kWorks[] = {
    {"get", get}, {"view", view}, {"walk", walk}, {"replace", replace}, {"insert", insert}};

void add(const Work& work, const Peer& peer, std::uint64_t entries) {
    const std::string name = std::string(work.name) + "/" + peer.name + "/" + std::to_string(entries);
    benchmark::RegisterBenchmark(name.c_str(), [&work, &peer, entries](benchmark::State& state) {
        Filled& filled = filledStore(peer, entries);
        if (filled.keepsValues) {
            work.run(state, filled);
        } else {
            state.SkipWithError("gives back something else");
        }
    });
}

bool registerAll() {
    for (const Work& work : kWorks) {
        for (const Peer& peer : kPeers) {
            for (const std::uint64_t entries : kSizes) {
                add(work, peer, entries);
            }
        }
    }
    return true;
}

const bool registered = registerAll();

} // namespace
} // namespace HBX::bench
