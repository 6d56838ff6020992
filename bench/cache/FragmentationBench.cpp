// How much larger than its content a cache file becomes: 10 million times one of 1,000 values is replaced by
// one of another size, 200 to 6,000 bytes.
//
//   fragmentation   counter ratio: the file's size to that of one which could just hold the values

#include <stdexcept>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

#include "ScratchFolder.h"
#include "Store.h"

namespace HBX::bench {
namespace {

using Cache = HBXCacheLogic<HBXEID, HBXEnvCoreBasic, HBXMappedMemoryManager>;

constexpr std::uint64_t kReplacements = 10'000'000;
constexpr std::uint64_t kValues = 1'000;
constexpr std::uint64_t kSmallest = 200;
constexpr std::uint64_t kLargest = 6'000;

/// A record of any length up to the largest.
class Record {
public:
    Record() : bytes(kLargest / sizeof(std::uint64_t)) {
        const HBXEnvCoreBasic::pointer empty = HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG);
        std::memcpy(bytes.data(), empty.get(), HBXEnvCoreBasic::kFixedSize);
    }

    const HBXEnvCoreBasic& with(const HBXEID& eid, std::uint64_t length) {
        auto& record = *reinterpret_cast<HBXEnvCoreBasic*>(bytes.data());
        record.eid = eid;
        record.configSize = length - HBXEnvCoreBasic::kFixedSize;
        return record;
    }

private:
    std::vector<std::uint64_t> bytes;
};

void put(Cache& cache, Record& record, std::uint64_t entry, std::uint64_t random) {
    const HBXEID eid(HBXGUID(keyOf(entry).data()));
    const std::uint64_t length = kSmallest + random % (kLargest - kSmallest + 1);
    if (cache.put(eid, record.with(eid, length)) != 0) {
        throw std::runtime_error("a value was not stored");
    }
}

double sizeRatio(Cache& cache) {
    HBXCacheStatus status;
    if (cache.getStatus(status) != 0 || status.entries != kValues) {
        throw std::runtime_error("values are missing");
    }
    return static_cast<double>(status.fileSize) / static_cast<double>(status.achievableSize);
}

void replaceOften(benchmark::State& state) {
    const ScratchFolder folder;
    const auto cache = Cache::createInstance(folder.file("cache"), false, true, 0, HBXEnvCache::kMaximumLists,
                                             HBXEnvCache::kMaximumFileSize);
    if (cache == nullptr) {
        throw std::runtime_error("the cache cannot be opened");
    }
    Record record;
    for (std::uint64_t entry = 0; entry < kValues; ++entry) {
        put(*cache, record, entry, scramble(entry));
    }
    for (auto _ : state) {
        for (std::uint64_t number = 1; number <= kReplacements; ++number) {
            const std::uint64_t random = scramble(kValues + number);
            put(*cache, record, (random >> 32) % kValues, random & 0xffffffff);
        }
    }
    state.counters["ratio"] = sizeRatio(*cache);
}

BENCHMARK(replaceOften)->Name("fragmentation")->Iterations(1)->Repetitions(1);

} // namespace
} // namespace HBX::bench
