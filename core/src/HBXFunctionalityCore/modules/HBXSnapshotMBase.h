#pragma once

#include <cstdint>
#include <string>

#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// The agent's module for snapshots.
class HBX_EXPORT HBXSnapshotMBase {
public:
    virtual ~HBXSnapshotMBase();
};

/// The state of an environment at one moment, to which it can go back.
struct HBX_EXPORT HBXSnapshot {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    HBXEID eid;
    HBXOptionalProperty<HBXGUID> parentId; ///< the snapshot that this one holds the changes to
    std::int64_t time = 0;
    HBXOptionalProperty<std::int64_t> size; ///< bytes
    HBXOptionalProperty<bool> withMemory;   ///< it was running, and can go on running

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSnapshot>;
    using Writer = HBXTableWriter<HBXSnapshot>;
};

} // namespace HBX
