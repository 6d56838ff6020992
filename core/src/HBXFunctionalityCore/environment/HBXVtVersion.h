#pragma once

#include <string>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A virtualization technology, and what it runs on.
struct HBX_EXPORT HBXVtVersion {
    std::string platform;
    std::string architecture;
    std::string technology;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXVtVersion>;
    using Writer = HBXTableWriter<HBXVtVersion>;
};

} // namespace HBX
