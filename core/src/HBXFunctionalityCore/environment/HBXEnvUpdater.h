#pragma once

#include <set>

#include <HBXFunctionalityCore/environment/HBXEnv.h>

namespace HBX {

/// What a module that knows one type of environments does before the environment cache changes. All results:
/// 0 on success.
class HBX_EXPORT HBXEnvUpdater {
public:
    HBXEnvUpdater() = default;
    HBXEnvUpdater(const HBXEnvUpdater&) = default;
    HBXEnvUpdater(HBXEnvUpdater&&) noexcept = default;
    HBXEnvUpdater& operator=(const HBXEnvUpdater&) = default;
    HBXEnvUpdater& operator=(HBXEnvUpdater&&) noexcept = default;
    virtual ~HBXEnvUpdater();

    /// What is not 0 is the result of the change, which is not made then.
    virtual int insert(const HBXEnv& env) = 0;
    virtual int update(const HBXEnv& env) = 0;
    virtual int remove(const HBXEnv& env) = 0;
    /// Comes before insert and update, which are left out when it does not give 0.
    virtual int check(const HBXEnv& env) = 0;
    /// Brings these environments up to date. Does nothing by itself.
    virtual int sync(const std::set<HBXEID, HBXEnvIDComparator>& eids);
};

} // namespace HBX
