#include <HBXFunctionalityCore/security/HBXIdentityProvider.h>

#include <utility>

#include <HBXCommon/HBXLock.h>
#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

namespace HBX {

namespace {

struct Current {
    HBXLock lock;
    HBXIdentityProvider provider;
};

/// Never destroyed, so that static destructors may still ask.
Current& current() {
    static auto& state = *new Current();
    return state;
}

/// The provider's function is copied, so that no lock is held while it runs.
std::function<HBXEID()> functionOf(std::function<HBXEID()> HBXIdentityProvider::*question) {
    const HBXLockGuard guard(current().lock);
    return current().provider.*question;
}

} // namespace

HBXIdentityProvider setIdentityProvider(HBXIdentityProvider provider) {
    const HBXLockGuard guard(current().lock);
    return std::exchange(current().provider, std::move(provider));
}

HBXEID localEnvironment() {
    const auto answer = functionOf(&HBXIdentityProvider::local);
    return answer ? answer() : HBXConfiguration::getLocalEID();
}

HBXEID masterEnvironment() {
    if (const auto answer = functionOf(&HBXIdentityProvider::master)) {
        return answer();
    }
    HBXEID master;
    return HBXConfiguration::getLocalConfig().getMaster(master) == 0 ? master : HBXEID();
}

} // namespace HBX
