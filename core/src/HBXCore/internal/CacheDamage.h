#pragma once

#include <cstdint>

namespace HBX::internal {

/// Thrown where the content of a cache file contradicts itself; never leaves a public operation.
struct CacheDamage {
    std::uint64_t offset; ///< Where in the file, in bytes.
    const char* what;     ///< For people; a literal.
};

} // namespace HBX::internal
