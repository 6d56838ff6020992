#include <HBXFunctionalityCore/modules/HBXSnapshotMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kSnapshot[] = {
    member<&HBXSnapshot::id>(1010),          member<&HBXSnapshot::name>(1026),
    member<&HBXSnapshot::description>(1496), member<&HBXSnapshot::eid>(1870),
    member<&HBXSnapshot::parentId>(3135),    memberAs<&HBXSnapshot::time>(HBXKind::Time, 1004),
    member<&HBXSnapshot::size>(3056),        member<&HBXSnapshot::withMemory>(3314),
};

} // namespace

constinit const HBXRecordTable HBXSnapshot::table =
    recordTable<HBXSnapshot>("HBXSnapshot", 421, 5143, kSnapshot);

HBXSnapshotMBase::~HBXSnapshotMBase() = default;

} // namespace HBX
