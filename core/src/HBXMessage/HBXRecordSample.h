#pragma once

#include <random>

#include <HBXCommon/HBXExport.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

/// Fills all members of a record with random values: optional members are set, lists get a few items,
/// pointers a member of their family. Times are not negative, and records within records end after a few
/// levels. For tests, benchmarks and examples of messages.
HBX_EXPORT void fillSample(void* record, const HBXRecordTable& table, std::mt19937_64& random);

/// A new record, filled likewise.
template <HBXRecord T>
T makeSample(std::mt19937_64& random) {
    T record;
    fillSample(&record, T::table, random);
    return record;
}

} // namespace HBX
