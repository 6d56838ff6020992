#include <HBXFunctionalityCore/security/HBXAuthName.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kAuthName[] = {
    member<&HBXAuthName::domain>(1374),
    member<&HBXAuthName::name>(1026),
    member<&HBXAuthName::realmId>(1957),
};

} // namespace

constinit const HBXRecordTable HBXAuthName::table = recordTable<HBXAuthName>("HBXAuthName", 0, 0, kAuthName);

} // namespace HBX
