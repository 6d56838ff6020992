#include <HBXCore/internal/CacheMerge.h>

#include <algorithm>
#include <array>

#include <HBXCore/internal/CacheView.h>

namespace HBX::internal {

namespace {

class Output {
public:
    Output(HBXCacheEntry* to, std::uint32_t capacity) : begin_(to), at_(to), end_(to + capacity) {}

    void copy(const HBXCacheEntry* from, const HBXCacheEntry* to) {
        if (to - from <= end_ - at_ && std::all_of(from, to, isLive)) {
            at_ = std::copy(from, to, at_);
            return;
        }
        for (; from != to; ++from) {
            if (isLive(*from)) {
                demandRoom();
                *at_++ = *from;
            }
        }
    }
    std::uint32_t count() const { return static_cast<std::uint32_t>(at_ - begin_); }

private:
    static bool isLive(const HBXCacheEntry& entry) { return entry.value != 0; }
    void demandRoom() const {
        if (at_ == end_) {
            throw CacheDamage{0, "a snapshot has more entries than it counts"};
        }
    }

    HBXCacheEntry* begin_;
    HBXCacheEntry* at_;
    HBXCacheEntry* end_;
};

using Tail = std::array<HBXCacheEntry, HBXSnapshotHead::kMaximumTail>;

} // namespace

std::uint32_t mergeLiveEntries(HBXSnapshotHead& from, HBXCacheEntry* to, std::uint32_t capacity) {
    const HBXCacheEntry* run = CacheView::entriesOf(from);
    const HBXCacheEntry* runEnd = run + from.sorted();
    Tail tail;
    const auto tailEnd = std::copy(runEnd, runEnd + from.tail(), tail.begin());
    std::sort(tail.begin(), tailEnd, [](const HBXCacheEntry& a, const HBXCacheEntry& b) {
        return HBXCacheKey(a.key) < HBXCacheKey(b.key);
    });
    const HBXFlatSortedArray sorted(run, from.sorted(), 0);
    Output out(to, capacity);
    const HBXCacheEntry* at = run;
    for (auto added = tail.begin(); added != tailEnd; ++added) {
        const HBXCacheEntry* place =
            sorted.lowerBound(HBXCacheKey(added->key), static_cast<std::uint32_t>(at - run));
        out.copy(at, place);
        out.copy(&*added, &*added + 1);
        at = place;
    }
    out.copy(at, runEnd);
    return out.count();
}

} // namespace HBX::internal
