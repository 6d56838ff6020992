#pragma once

#include <cstdint>

namespace HBX {

using int64 = std::int64_t;

#ifndef _MSC_VER
/// The name that record members and getters use for 64 bits, for compilers that do not bring it along. It is
/// the same type as int64: on 64-bit Linux that is `long`, to which a `long long&` would not bind.
using __int64 = std::int64_t;
#endif

} // namespace HBX
