#include <HBXFunctionalityCore/modules/HBXPolicyMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kPolicy[] = {
    member<&HBXPolicy::id>(1010),          member<&HBXPolicy::name>(1026),
    member<&HBXPolicy::description>(1496), member<&HBXPolicy::category>(1264),
    list<&HBXPolicy::rules>(3238, 3239),   member<&HBXPolicy::disabled>(1705),
};

constexpr HBXRow kObjectToPolicyAssignment[] = {
    member<&HBXObjectToPolicyAssignment::policyId>(3240),
    member<&HBXObjectToPolicyAssignment::eid>(1870),
    member<&HBXObjectToPolicyAssignment::priority>(3241),
    member<&HBXObjectToPolicyAssignment::inherited>(3242),
};

constexpr HBXRow kEffectivePolicyAssignment[] = {
    member<&HBXEffectivePolicyAssignment::eid>(1870),
    member<&HBXEffectivePolicyAssignment::policyId>(3240),
    member<&HBXEffectivePolicyAssignment::sourceEid>(3243),
    memberAs<&HBXEffectivePolicyAssignment::time>(HBXKind::Time, 1004),
};

} // namespace

constinit const HBXRecordTable HBXPolicy::table = recordTable<HBXPolicy>("HBXPolicy", 414, 5109, kPolicy);
constinit const HBXRecordTable HBXObjectToPolicyAssignment::table = recordTable<HBXObjectToPolicyAssignment>(
    "HBXObjectToPolicyAssignment", 414, 5110, kObjectToPolicyAssignment);
constinit const HBXRecordTable HBXEffectivePolicyAssignment::table =
    recordTable<HBXEffectivePolicyAssignment>("HBXEffectivePolicyAssignment", 414, 5111,
                                              kEffectivePolicyAssignment);

HBXPolicyMBase::~HBXPolicyMBase() = default;

} // namespace HBX
