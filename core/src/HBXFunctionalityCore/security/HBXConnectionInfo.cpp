#include <HBXFunctionalityCore/security/HBXConnectionInfo.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kConnectionInfo[] = {
    member<&HBXConnectionInfo::address>(1687), member<&HBXConnectionInfo::port>(1704),
    member<&HBXConnectionInfo::login>(1630),   member<&HBXConnectionInfo::password>(3040),
    member<&HBXConnectionInfo::scheme>(3046),  member<&HBXConnectionInfo::useTls>(3021),
    member<&HBXConnectionInfo::timeout>(3047),
};

} // namespace

constinit const HBXRecordTable HBXConnectionInfo::table =
    recordTable<HBXConnectionInfo>("HBXConnectionInfo", 402, 5019, kConnectionInfo);

} // namespace HBX
