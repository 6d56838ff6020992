#pragma once

#include "Environment.h"

/// The reader and the writer of an environment as one would write them without a table: getters and putters
/// for the members, combinators for the lists.
namespace HBX::bench {

int writeByHand(HBXMessageIterator& it, const Environment& value);
int readByHand(const HBXMessageIterator& it, Environment& value);

} // namespace HBX::bench
