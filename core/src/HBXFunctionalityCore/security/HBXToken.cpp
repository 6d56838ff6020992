#include <HBXFunctionalityCore/security/HBXToken.h>

#include <algorithm>
#include <utility>

#include <HBXCommon/HBXTLS.h>
#include <HBXFunctionalityCore/security/HBXLocalSID.h>
#include <HBXFunctionalityCore/security/internal/SIDForm.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kToken[] = {
    unlessEmpty<&HBXToken::sid>(3265),
    list<&HBXToken::groups>(3266, 3267),
    list<&HBXToken::restricted>(3268, 3267),
};

/// Never destroyed, so that static destructors may still ask.
HBXTLS<HBXToken>& currentTokens() {
    static auto& tokens = *new HBXTLS<HBXToken>();
    return tokens;
}

/// The system's administrators' group or account administrator.
bool isSystemAdministrator(const HBXSID& sid) {
    constexpr std::uint64_t kSystem = 5;
    constexpr std::uint32_t kBuiltinDomain = 32, kAdministrators = 544;
    constexpr std::uint32_t kAccountDomain = 21, kAdministrator = 500;
    const internal::SIDBytes bytes = sid.toBinary();
    const std::size_t count = internal::subAuthorityCount(bytes);
    if ((count != 2 && count != 5) || internal::authorityOf(bytes) != kSystem) {
        return false;
    }
    const std::uint32_t domain = internal::subAuthority(bytes, 0);
    const std::uint32_t principal = internal::subAuthority(bytes, count - 1);
    return count == 2 ? domain == kBuiltinDomain && principal == kAdministrators
                      : domain == kAccountDomain && principal == kAdministrator;
}

bool contains(const std::vector<HBXSID>& sids, const HBXSID& sid) {
    return std::find(sids.begin(), sids.end(), sid) != sids.end();
}

/// @param administrators  empty: there is no such group.
bool isAdministrator(const HBXToken& token, const HBXSID& administrators) {
    const auto matches = [&](const HBXSID& sid) {
        return !sid.isEmpty() && (sid == administrators || isSystemAdministrator(sid));
    };
    return matches(token.sid) || std::any_of(token.groups.begin(), token.groups.end(), matches);
}

} // namespace

constinit const HBXRecordTable HBXToken::table = recordTable<HBXToken>("HBXToken", 418, 5123, kToken);

const HBXToken& HBXToken::getCurrent() { return currentTokens().get(); }

HBXToken HBXToken::setCurrent(HBXToken token) {
    std::swap(currentTokens().get(), token);
    return token;
}

HBXToken HBXToken::getAgentToken() {
    HBXToken token;
    token.sid = HBXSID::createWellKnownSID(HBXSID::AGENT);
    HBXSID local = HBXSID::createWellKnownSID(HBXSID::LOCAL_ADMINISTRATORS);
    if (!local.isEmpty()) {
        token.groups.push_back(std::move(local));
    }
    token.groups.emplace_back("S-1-5-32-544");
    return token;
}

bool HBXToken::isLocalAdministrators() const {
    return isAdministrator(*this, HBXSID::createWellKnownSID(HBXSID::LOCAL_ADMINISTRATORS));
}

bool HBXToken::isEnvAdministrators(const HBXEID& eid) const {
    return isAdministrator(*this, HBXLocalSID(0, HBXLocalSID::GROUP, eid).getSID());
}

int HBXToken::restrict(const HBXToken& other) {
    const auto isCarried = [&](const HBXSID& of) { return of == other.sid || contains(other.groups, of); };
    const bool keepsSID = isCarried(sid);
    std::vector<HBXSID> kept;
    for (const HBXSID& group : groups) {
        (isCarried(group) ? kept : restricted).push_back(group);
    }
    if (!keepsSID) {
        if (!sid.isEmpty()) {
            restricted.push_back(sid);
        }
        sid = HBXSID::createWellKnownSID(HBXSID::ANONYMOUS);
    }
    groups = std::move(kept);
    return 0;
}

} // namespace HBX
