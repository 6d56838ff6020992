// One store of 10,000 entries, three processes at once, each as fast as it can: two take copies of values
// under random keys, one replaces values under random keys.
//
//   shared/STORE   counters, nanoseconds of time passed: read_ns for each copy that the two took together,
//                  write_ns for each replacement

#include <stdexcept>
#include <string>

#include "Draws.h"
#include "Peers.h"
#include "ScratchFolder.h"
#include "Workers.h"

namespace HBX::bench {
namespace {

constexpr std::uint64_t kEntries = 10'000;
constexpr std::uint64_t kReaders = 2;
constexpr double kSeconds = 0.5;

Workers::Operation reader(const Peer& peer, const std::string& path, std::uint64_t sequence) {
    const std::shared_ptr<Store> store = peer.open(path.c_str(), Open::existing);
    return [store, draws = Draws(sequence, kEntries)]() mutable {
        if (store->get(draws.nextKey()) == 0) {
            throw std::runtime_error("a key was not found");
        }
    };
}

Workers::Operation writer(const Peer& peer, const std::string& path) {
    const std::shared_ptr<Store> store = peer.open(path.c_str(), Open::existing);
    return [store, draws = Draws(0, kEntries), version = std::uint64_t{1}]() mutable {
        store->put(draws.nextKey(), ++version);
    };
}

void share(benchmark::State& state, const Peer& peer, const std::string& path) {
    Workers workers;
    for (std::uint64_t number = 0; number < kReaders; ++number) {
        workers.add([&, sequence = number + 1] { return reader(peer, path, sequence); });
    }
    workers.add([&] { return writer(peer, path); });
    const double seconds = workers.run(kSeconds);
    std::uint64_t reads = 0;
    for (std::size_t number = 0; number < kReaders; ++number) {
        reads += workers.operations(number);
    }
    const std::uint64_t writes = workers.operations(kReaders);
    if (seconds < 0 || reads == 0 || writes == 0) {
        state.SkipWithError("a process failed");
        return;
    }
    state.counters["read_ns"] = seconds * 1e9 / static_cast<double>(reads);
    state.counters["write_ns"] = seconds * 1e9 / static_cast<double>(writes);
}

bool registerAll() {
    for (const Peer& peer : kPeers) {
        const std::string name = std::string("shared/") + peer.name;
        const auto run = [&peer](benchmark::State& state) {
            const ScratchFolder folder;
            const std::string path = folder.file(peer.name);
            peer.open(path.c_str(), Open::create)->fill(kEntries);
            for (auto _ : state) {
                share(state, peer, path);
            }
        };
        benchmark::RegisterBenchmark(name.c_str(), run)->Iterations(1);
    }
    return true;
}

const bool registered = registerAll();

} // namespace
} // namespace HBX::bench
