#pragma once

#include <cstdint>
#include <cstdlib>

namespace HBX {

/// What every value record of a shared cache begins with. Plain memory: it is part of the storage format.
struct HBXCachedItem {
    /// In the file: how many snapshots hold the value, changed only under the file lock. In a private copy:
    /// 0.
    std::int32_t references = 0;
    /// 0 in the file, where everybody reads the record; 1 in a private copy, which its owner may write to.
    std::uint32_t isPrivate = 1;

    /// Frees what was copied out of a cache, which is memory as from malloc.
    struct deleter_free {
        void operator()(void* copy) const { std::free(copy); }
    };
};

static_assert(sizeof(HBXCachedItem) == 8);

} // namespace HBX
