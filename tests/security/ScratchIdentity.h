#pragma once

#include <utility>

#include <HBXFunctionalityCore/security/HBXIdentityProvider.h>

namespace HBX::test {

/// Gives this agent an identity for a scope.
class ScratchIdentity {
public:
    ScratchIdentity(const HBXEID& local, const HBXEID& master)
        : previous_(setIdentityProvider({[local] { return local; }, [master] { return master; }})) {}
    ~ScratchIdentity() { setIdentityProvider(std::move(previous_)); }
    ScratchIdentity(const ScratchIdentity&) = delete;
    ScratchIdentity& operator=(const ScratchIdentity&) = delete;

private:
    HBXIdentityProvider previous_;
};

} // namespace HBX::test
