#pragma once

#include <string>
#include <vector>

#include <HBXFunctionalityCore/property/HBXNamedOpStrListProperty.h>

namespace HBX {

/// One entry of a directory, or what of it was asked for.
struct HBX_EXPORT HBXDirEntry {
    std::string dn; ///< distinguished name
    std::vector<HBXNamedOpStrListProperty> attributes;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDirEntry>;
    using Writer = HBXTableWriter<HBXDirEntry>;
};

} // namespace HBX
