#pragma once

#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXPolymorphic.h>

namespace HBX {

/// What an event tells: the base of the event data family. A kind that this library does not know reads as
/// HBXAnyEventData.
struct HBX_EXPORT HBXEventData : HBXPolymorphic {
    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXEventData>;
    using Writer = HBXTableWriter<HBXEventData>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXEventData>;

} // namespace HBX
