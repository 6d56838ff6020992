#pragma once

#include <functional>

#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// Answers, in place of the local configuration, which environments stand for this agent and for the master
/// of its server group; the null identifier where there is none. An empty function leaves the answer to the
/// configuration. Called from any thread.
struct HBXIdentityProvider {
    std::function<HBXEID()> local;
    std::function<HBXEID()> master;
};

/// Replaces the provider of the process and returns the previous one.
HBX_EXPORT HBXIdentityProvider setIdentityProvider(HBXIdentityProvider provider);

/// The environments that provider or configuration answer.
HBX_EXPORT HBXEID localEnvironment();
HBX_EXPORT HBXEID masterEnvironment();

} // namespace HBX
