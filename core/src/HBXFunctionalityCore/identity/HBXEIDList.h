#pragma once

#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// A list of environment identifiers, directly below its element.
struct HBX_EXPORT HBXEIDList {
    std::vector<HBXEID> eids;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXEIDList>;
    using Writer = HBXTableWriter<HBXEIDList>;
};

} // namespace HBX
