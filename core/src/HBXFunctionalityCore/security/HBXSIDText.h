#pragma once

#include <string_view>
#include <vector>

#include <HBXFunctionalityCore/security/HBXLocalSID.h>

namespace HBX {

/// What people call a kind of well-known identifier, such as "local_administrators"; "" for a number without
/// a meaning.
HBX_EXPORT std::string_view wellKnownSIDName(HBXSID::WellKnownSIDs kind);
/// The kind of that name; false and unchanged when there is none.
HBX_EXPORT bool findWellKnownSID(std::string_view name, HBXSID::WellKnownSIDs& kind);
/// All kinds that an identifier is well known as, in their order.
HBX_EXPORT std::vector<HBXSID::WellKnownSIDs> wellKnownKindsOf(const HBXSID& sid);

/// "none", "user", "group", "role" or "environment"; "" for another number.
HBX_EXPORT std::string_view principalTypeName(HBXLocalSID::PrincipalType type);
/// The type of that name; false and unchanged when there is none.
HBX_EXPORT bool findPrincipalType(std::string_view name, HBXLocalSID::PrincipalType& type);

} // namespace HBX
