#include <HBXFunctionalityCore/directory/HBXRealm.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kRealm[] = {
    member<&HBXRealm::id>(1010),
    member<&HBXRealm::name>(1026),
    member<&HBXRealm::type>(3001),
    member<&HBXRealm::description>(1496),
};

} // namespace

constinit const HBXRecordTable HBXRealm::table = recordTable<HBXRealm>("HBXRealm", 407, 5072, kRealm);

HBXRealm::~HBXRealm() = default;

int HBXRealm::set(const HBXRealm& other) {
    id = other.id;
    name = other.name;
    type = other.type;
    description = other.description;
    return 0;
}

} // namespace HBX
