#include <HBXFunctionalityCore/modules/HBXSecurityMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kAce[] = {
    unlessEmpty<&HBXAce::principal>(3265),
    member<&HBXAce::allow>(3269),
    member<&HBXAce::mask>(3270),
    member<&HBXAce::inherited>(3242),
};

constexpr HBXRow kSecurityAttributes[] = {
    member<&HBXSecurityAttributes::owner>(3132),
    member<&HBXSecurityAttributes::group>(3271),
    member<&HBXSecurityAttributes::mode>(3272),
    list<&HBXSecurityAttributes::entries>(3273, 3274),
};

constexpr HBXRow kSecurityPrincipal[] = {
    unlessEmpty<&HBXSecurityPrincipal::sid>(3265), member<&HBXSecurityPrincipal::name>(1630),
    member<&HBXSecurityPrincipal::type>(3275),     member<&HBXSecurityPrincipal::description>(1496),
    member<&HBXSecurityPrincipal::disabled>(1705),
};

constexpr HBXRow kRole[] = {
    member<&HBXRole::id>(1010),   member<&HBXRole::name>(1026),    member<&HBXRole::description>(1496),
    member<&HBXRole::mask>(3270), member<&HBXRole::builtin>(3276),
};

constexpr HBXRow kRoleAssignment[] = {
    member<&HBXRoleAssignment::roleId>(3277),
    unlessEmpty<&HBXRoleAssignment::principal>(3265),
    member<&HBXRoleAssignment::eid>(1870),
    member<&HBXRoleAssignment::inherited>(3242),
};

} // namespace

constinit const HBXRecordTable HBXAce::table = recordTable<HBXAce>("HBXAce", 418, 5124, kAce);
constinit const HBXRecordTable HBXSecurityAttributes::table =
    recordTable<HBXSecurityAttributes>("HBXSecurityAttributes", 418, 5125, kSecurityAttributes);
constinit const HBXRecordTable HBXSecurityPrincipal::table =
    recordTable<HBXSecurityPrincipal>("HBXSecurityPrincipal", 418, 5126, kSecurityPrincipal);
constinit const HBXRecordTable HBXRole::table = recordTable<HBXRole>("HBXRole", 418, 5127, kRole);
constinit const HBXRecordTable HBXRoleAssignment::table =
    recordTable<HBXRoleAssignment>("HBXRoleAssignment", 418, 5128, kRoleAssignment);

HBXSecurityMBase::~HBXSecurityMBase() = default;

} // namespace HBX
