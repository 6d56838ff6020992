#include <HBXFunctionalityCore/modules/HBXManagementNodeBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kRegisteredClient[] = {
    member<&HBXRegisteredClient::id>(1010),
    member<&HBXRegisteredClient::name>(1026),
    member<&HBXRegisteredClient::description>(1496),
    member<&HBXRegisteredClient::publicKey>(3044),
    memberAs<&HBXRegisteredClient::lastSeen>(HBXKind::Time, 3045),
    member<&HBXRegisteredClient::disabled>(1705),
};

constexpr HBXRow kHNLookupInfoType[] = {
    member<&HBXHNLookupInfoType::hostname>(1261),
    list<&HBXHNLookupInfoType::addresses>(1687, 1008),
    member<&HBXHNLookupInfoType::found>(3113),
    member<&HBXHNLookupInfoType::eid>(1870),
};

constexpr HBXRow kCheck[] = {
    member<&HBXCheck::name>(1026),
    member<&HBXCheck::passed>(3123),
    member<&HBXCheck::severity>(3124),
    member<&HBXCheck::info>(1134),
};

constexpr HBXRow kCalculateHWNodeNotes[] = {
    member<&HBXCalculateHWNodeNotes::eid>(1870),
    list<&HBXCalculateHWNodeNotes::checks>(3125, 3126),
    member<&HBXCalculateHWNodeNotes::score>(3127),
};

} // namespace

constinit const HBXRecordTable HBXRegisteredClient::table =
    recordTable<HBXRegisteredClient>("HBXRegisteredClient", 402, 5018, kRegisteredClient);
constinit const HBXRecordTable HBXHNLookupInfoType::table =
    recordTable<HBXHNLookupInfoType>("HBXHNLookupInfoType", 404, 5044, kHNLookupInfoType);
constinit const HBXRecordTable HBXCheck::table = recordTable<HBXCheck>("HBXCheck", 404, 5051, kCheck);
constinit const HBXRecordTable HBXCalculateHWNodeNotes::table =
    recordTable<HBXCalculateHWNodeNotes>("HBXCalculateHWNodeNotes", 404, 5052, kCalculateHWNodeNotes);

HBXManagementNodeBase::~HBXManagementNodeBase() = default;

} // namespace HBX
