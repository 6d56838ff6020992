#include <HBXFunctionalityCore/security/HBXSIDText.h>

#include <algorithm>
#include <span>

namespace HBX {

namespace {

using Names = std::span<const std::string_view>;

constexpr std::string_view kKinds[] = {
    "everyone",
    "authenticated",
    "local_administrators",
    "anonymous",
    "local_environment",
    "any_environment",
    "agent",
    "master_environment",
    "nobody",
    "creator",
    "self",
};
static_assert(std::size(kKinds) == HBXSID::kWellKnownCount);

constexpr std::string_view kTypes[] = {"none", "user", "group", "role", "environment"};

std::string_view nameOf(Names names, unsigned number) {
    return number < names.size() ? names[number] : std::string_view();
}

template <class Number>
bool find(Names names, std::string_view name, Number& number) {
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) {
        return false;
    }
    number = static_cast<Number>(found - names.begin());
    return true;
}

} // namespace

std::string_view wellKnownSIDName(HBXSID::WellKnownSIDs kind) { return nameOf(kKinds, kind); }

bool findWellKnownSID(std::string_view name, HBXSID::WellKnownSIDs& kind) { return find(kKinds, name, kind); }

std::vector<HBXSID::WellKnownSIDs> wellKnownKindsOf(const HBXSID& sid) {
    std::vector<HBXSID::WellKnownSIDs> kinds;
    for (unsigned number = 0; number < HBXSID::kWellKnownCount; ++number) {
        const auto kind = static_cast<HBXSID::WellKnownSIDs>(number);
        if (sid.isWellKnownSID(kind)) {
            kinds.push_back(kind);
        }
    }
    return kinds;
}

std::string_view principalTypeName(HBXLocalSID::PrincipalType type) { return nameOf(kTypes, type); }

bool findPrincipalType(std::string_view name, HBXLocalSID::PrincipalType& type) {
    return find(kTypes, name, type);
}

} // namespace HBX
