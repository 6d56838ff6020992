#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// The agent's module for policies.
class HBX_EXPORT HBXPolicyMBase {
public:
    virtual ~HBXPolicyMBase();
};

/// Rules that hold for the environments that the policy is assigned to.
struct HBX_EXPORT HBXPolicy {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<std::string> category;
    std::vector<std::string> rules; ///< one text each
    HBXOptionalProperty<bool> disabled;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPolicy>;
    using Writer = HBXTableWriter<HBXPolicy>;
};

/// A policy assigned to an environment.
struct HBX_EXPORT HBXObjectToPolicyAssignment {
    HBXGUID policyId;
    HBXEID eid;
    HBXOptionalProperty<int> priority;   ///< the highest wins where policies differ
    HBXOptionalProperty<bool> inherited; ///< holds for all below the environment too

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXObjectToPolicyAssignment>;
    using Writer = HBXTableWriter<HBXObjectToPolicyAssignment>;
};

/// A policy that holds for an environment, and where that comes from.
struct HBX_EXPORT HBXEffectivePolicyAssignment {
    HBXEID eid;
    HBXGUID policyId;
    HBXEID sourceEid;                       ///< the environment that it is assigned to
    HBXOptionalProperty<std::int64_t> time; ///< since when

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXEffectivePolicyAssignment>;
    using Writer = HBXTableWriter<HBXEffectivePolicyAssignment>;
};

} // namespace HBX
