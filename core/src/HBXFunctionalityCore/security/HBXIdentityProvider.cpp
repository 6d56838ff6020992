#include <HBXFunctionalityCore/security/HBXIdentityProvider.h>

#include <utility>

#include <HBXCommon/HBXLock.h>

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
HBXEID ask(std::function<HBXEID()> HBXIdentityProvider::*question) {
    std::function<HBXEID()> answer;
    {
        const HBXLockGuard guard(current().lock);
        answer = current().provider.*question;
    }
    return answer ? answer() : HBXEID();
}

} // namespace

HBXIdentityProvider setIdentityProvider(HBXIdentityProvider provider) {
    const HBXLockGuard guard(current().lock);
    return std::exchange(current().provider, std::move(provider));
}

HBXEID localEnvironment() { return ask(&HBXIdentityProvider::local); }

HBXEID masterEnvironment() { return ask(&HBXIdentityProvider::master); }

} // namespace HBX
