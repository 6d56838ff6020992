#pragma once

#include <string>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// An operating system.
struct HBX_EXPORT HBXOS {
    HBXOptionalProperty<std::string> platform;
    HBXOptionalProperty<std::string> kernel;
    HBXOptionalProperty<std::string> version;
    std::string name;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXOS>;
    using Writer = HBXTableWriter<HBXOS>;
};

} // namespace HBX
