#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/security/HBXAuthName.h>
#include <HBXFunctionalityCore/security/HBXSID.h>
#include <HBXFunctionalityCore/security/HBXToken.h>

namespace HBX {

/// The agent's module for access rights.
class HBX_EXPORT HBXSecurityMBase {
public:
    virtual ~HBXSecurityMBase();
};

/// An entry of an access list: what one principal may do, or may not. An identifier that is there and cannot
/// be read fails the read, as the entry would otherwise hold for somebody else.
struct HBX_EXPORT HBXAce {
    HBXSID principal;                    ///< empty: nobody
    bool allow = false;                  ///< false: what the mask says is denied
    std::uint32_t mask = 0;              ///< bits of rights
    HBXOptionalProperty<bool> inherited; ///< it comes from above

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXAce>;
    using Writer = HBXTableWriter<HBXAce>;
};

/// Who owns something, and who may do what with it.
struct HBX_EXPORT HBXSecurityAttributes {
    HBXOptionalProperty<HBXSID> owner;
    HBXOptionalProperty<HBXSID> group;
    HBXOptionalProperty<int> mode; ///< the permission bits of a file
    std::vector<HBXAce> entries;   ///< the first that fits decides

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSecurityAttributes>;
    using Writer = HBXTableWriter<HBXSecurityAttributes>;
};

/// Somebody who can be given rights: a user, a group, a program.
struct HBX_EXPORT HBXSecurityPrincipal {
    HBXSID sid;
    HBXOptionalProperty<HBXAuthName> name;
    int type = 0; ///< kind of principal
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<bool> disabled;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSecurityPrincipal>;
    using Writer = HBXTableWriter<HBXSecurityPrincipal>;
};

/// Rights under one name.
struct HBX_EXPORT HBXRole {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    std::uint32_t mask = 0;            ///< bits of rights
    HBXOptionalProperty<bool> builtin; ///< cannot be removed

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXRole>;
    using Writer = HBXTableWriter<HBXRole>;
};

/// A role given to a principal.
struct HBX_EXPORT HBXRoleAssignment {
    HBXGUID roleId;
    HBXSID principal;
    HBXOptionalProperty<HBXEID> eid;     ///< the environment it holds for, and all below; unset: everywhere
    HBXOptionalProperty<bool> inherited; ///< it comes from above

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXRoleAssignment>;
    using Writer = HBXTableWriter<HBXRoleAssignment>;
};

} // namespace HBX
