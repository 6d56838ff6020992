#include "SecurityOperator.h"

#include <limits>

#include <HBXFunctionalityCore/security/HBXSIDText.h>
#include <HBXFunctionalityCore/security/HBXToken.h>

namespace HBX::tool {

namespace {

constexpr int kText = 3009;
constexpr int kEid = 1870;
constexpr int kLocalId = 3486;
constexpr int kPrincipalType = 3275;
constexpr int kToken = 3282;

struct ParseArguments {
    std::string text;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<ParseArguments>;
};

constexpr HBXRow kParseArguments[] = {member<&ParseArguments::text>(kText)};

struct LocalArguments {
    std::int64_t localId = 0;
    int principalType = 0;
    HBXEID eid;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<LocalArguments>;
};

constexpr HBXRow kLocalArguments[] = {
    member<&LocalArguments::localId>(kLocalId),
    member<&LocalArguments::principalType>(kPrincipalType),
    member<&LocalArguments::eid>(kEid),
};

struct WellKnownArguments {
    int kind = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<WellKnownArguments>;
};

constexpr HBXRow kWellKnownArguments[] = {member<&WellKnownArguments::kind>(3487)};

/// An identifier and what it is made of.
struct SIDResult {
    HBXSID sid;
    std::string text;
    int principalType = 0;
    HBXOptionalProperty<std::int64_t> localId;
    HBXOptionalProperty<HBXEID> eid;
    std::vector<int> kinds;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<SIDResult>;
    using Writer = HBXTableWriter<SIDResult>;
};

constexpr HBXRow kSIDResult[] = {
    member<&SIDResult::sid>(3265),
    member<&SIDResult::text>(kText),
    member<&SIDResult::principalType>(kPrincipalType),
    member<&SIDResult::localId>(kLocalId),
    member<&SIDResult::eid>(kEid),
    list<&SIDResult::kinds>(3488, 3487),
};

struct TokenRecord {
    HBXToken token;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<TokenRecord>;
    using Writer = HBXTableWriter<TokenRecord>;
};

constexpr HBXRow kTokenRecord[] = {member<&TokenRecord::token>(kToken)};

struct EnvAdministratorArguments {
    HBXToken token;
    HBXEID eid;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<EnvAdministratorArguments>;
};

constexpr HBXRow kEnvAdministratorArguments[] = {
    member<&EnvAdministratorArguments::token>(kToken),
    member<&EnvAdministratorArguments::eid>(kEid),
};

struct AdministratorResult {
    bool allow = false;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<AdministratorResult>;
    using Writer = HBXTableWriter<AdministratorResult>;
};

constexpr HBXRow kAdministratorResult[] = {member<&AdministratorResult::allow>(3269)};

struct RestrictArguments {
    HBXToken token;
    HBXToken other;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<RestrictArguments>;
};

constexpr HBXRow kRestrictArguments[] = {
    member<&RestrictArguments::token>(kToken),
    member<&RestrictArguments::other>(3489),
};

constinit const HBXRecordTable ParseArguments::table =
    recordTable<ParseArguments>("ParseArguments", 0, 0, kParseArguments);
constinit const HBXRecordTable LocalArguments::table =
    recordTable<LocalArguments>("LocalArguments", 0, 0, kLocalArguments);
constinit const HBXRecordTable WellKnownArguments::table =
    recordTable<WellKnownArguments>("WellKnownArguments", 0, 0, kWellKnownArguments);
constinit const HBXRecordTable SIDResult::table = recordTable<SIDResult>("SIDResult", 0, 0, kSIDResult);
constinit const HBXRecordTable TokenRecord::table =
    recordTable<TokenRecord>("TokenRecord", 0, 0, kTokenRecord);
constinit const HBXRecordTable EnvAdministratorArguments::table =
    recordTable<EnvAdministratorArguments>("EnvAdministratorArguments", 0, 0, kEnvAdministratorArguments);
constinit const HBXRecordTable AdministratorResult::table =
    recordTable<AdministratorResult>("AdministratorResult", 0, 0, kAdministratorResult);
constinit const HBXRecordTable RestrictArguments::table =
    recordTable<RestrictArguments>("RestrictArguments", 0, 0, kRestrictArguments);

RequestFailure badArgument(std::string reason) { return {RequestError::BadArguments, std::move(reason)}; }

Outcome describe(const HBXSID& sid, SIDResult& result) {
    if (sid.isEmpty()) {
        return RequestFailure{RequestError::NoAnswer, "the local environment has no identifier"};
    }
    result.sid = sid;
    result.text = sid.toString();
    const HBXLocalSID local(sid);
    result.principalType = static_cast<int>(local.getPrincipalType());
    if (local.getPrincipalType() != HBXLocalSID::NONE) {
        result.localId = local.getLocalID();
        result.eid = local.getEID();
    }
    for (const auto kind : wellKnownKindsOf(sid)) {
        result.kinds.push_back(static_cast<int>(kind));
    }
    return {};
}

Outcome parse(const ParseArguments& arguments, SIDResult& result) {
    HBXSID sid;
    if (sid.fromString(arguments.text) != 0) {
        return badArgument("text is no security identifier");
    }
    return describe(sid, result);
}

Outcome local(const LocalArguments& arguments, SIDResult& result) {
    if (arguments.localId < 0 || arguments.localId > std::numeric_limits<std::uint32_t>::max()) {
        return badArgument("local_id is 0 to 4294967295");
    }
    if (arguments.principalType < 1 || arguments.principalType > 4) {
        return badArgument("principal_type is 1 to 4");
    }
    const auto localId = static_cast<unsigned>(arguments.localId);
    const auto type = static_cast<HBXLocalSID::PrincipalType>(arguments.principalType);
    return describe(HBXLocalSID(localId, type, arguments.eid).getSID(), result);
}

Outcome wellKnown(const WellKnownArguments& arguments, SIDResult& result) {
    if (arguments.kind < 0 || arguments.kind >= static_cast<int>(HBXSID::kWellKnownCount)) {
        return badArgument("kind is 0 to 10");
    }
    return describe(HBXSID::createWellKnownSID(static_cast<HBXSID::WellKnownSIDs>(arguments.kind)), result);
}

Outcome administrator(const TokenRecord& arguments, AdministratorResult& result) {
    result.allow = arguments.token.isLocalAdministrators();
    return {};
}

Outcome envAdministrator(const EnvAdministratorArguments& arguments, AdministratorResult& result) {
    result.allow = arguments.token.isEnvAdministrators(arguments.eid);
    return {};
}

Outcome restrictToken(const RestrictArguments& arguments, TokenRecord& result) {
    result.token = arguments.token;
    result.token.restrict(arguments.other);
    return {};
}

constexpr OperatorVerb kVerbs[] = {
    {3481, answer<ParseArguments, SIDResult, parse>},
    {3482, answer<LocalArguments, SIDResult, local>},
    {3483, answer<WellKnownArguments, SIDResult, wellKnown>},
    {3484, answer<TokenRecord, AdministratorResult, administrator>},
    {3491, answer<EnvAdministratorArguments, AdministratorResult, envAdministrator>},
    {3485, answer<RestrictArguments, TokenRecord, restrictToken>},
};

} // namespace

constinit const Operator kSecurityOperator{1858, kVerbs};

} // namespace HBX::tool
