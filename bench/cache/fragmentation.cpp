// How much larger than its content a cache file becomes: 10 million times one of 1,000 values is replaced by
// one of another size, 200 to 6,000 bytes. Prints the file's size and what the values would need.

#include <cstdio>
#include <stdexcept>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

#include "ScratchFolder.h"
#include "Store.h"

namespace HBX::bench {
namespace {

using Cache = HBXCacheLogic<HBXEID, HBXEnvCoreBasic, HBXMappedMemoryManager>;

constexpr std::uint64_t kReplacements = 10'000'000;
constexpr std::uint64_t kLines = 10;
constexpr std::uint64_t kValues = 1'000;
constexpr std::uint64_t kSmallest = 200;
constexpr std::uint64_t kLargest = 6'000;
constexpr double kGoal = 1.5;

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

/// @return the ratio of the two sizes.
double show(Cache& cache, std::uint64_t replacements) {
    HBXCacheStatus status;
    if (cache.getStatus(status) != 0 || status.entries != kValues) {
        throw std::runtime_error("values are missing");
    }
    const double ratio = static_cast<double>(status.fileSize) / static_cast<double>(status.achievableSize);
    std::printf("%10llu replacements: file %8.1f KiB, content %8.1f KiB, ratio %.2f\n",
                static_cast<unsigned long long>(replacements), static_cast<double>(status.fileSize) / 1024,
                static_cast<double>(status.achievableSize) / 1024, ratio);
    std::fflush(stdout);
    return ratio;
}

int run() {
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
    double ratio = show(*cache, 0);
    for (std::uint64_t number = 1; number <= kReplacements; ++number) {
        const std::uint64_t random = scramble(kValues + number);
        put(*cache, record, (random >> 32) % kValues, random & 0xffffffff);
        if (number % (kReplacements / kLines) == 0) {
            ratio = show(*cache, number);
        }
    }
    std::printf("goal %.2f: %s\n", kGoal, ratio <= kGoal ? "met" : "MISSED");
    return 0;
}

} // namespace
} // namespace HBX::bench

int main() {
    try {
        return HBX::bench::run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "fragmentation: %s\n", error.what());
        return 1;
    }
}
