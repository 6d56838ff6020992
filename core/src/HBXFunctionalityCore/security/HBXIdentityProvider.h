#pragma once

#include <functional>

#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// Answers which environments stand for this agent and for the master of its server group; the null
/// identifier where there is none, and where a function is left empty. Called from any thread.
struct HBXIdentityProvider {
    std::function<HBXEID()> local;
    std::function<HBXEID()> master;
};

/// Replaces the provider of the process and returns the previous one.
HBX_EXPORT HBXIdentityProvider setIdentityProvider(HBXIdentityProvider provider);

HBX_EXPORT HBXEID localEnvironment();
HBX_EXPORT HBXEID masterEnvironment();

} // namespace HBX
