#include <HBXFunctionalityCore/environment/HBXVtVersion.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr HBXRow kVtVersion[] = {
    member<&HBXVtVersion::platform>(1846),
    member<&HBXVtVersion::architecture>(1276),
    member<&HBXVtVersion::technology>(2103),
};

} // namespace

constinit const HBXRecordTable HBXVtVersion::table =
    recordTable<HBXVtVersion>("HBXVtVersion", 0, 0, kVtVersion);

} // namespace HBX
