#include "Command.h"

#include <limits>

#include <HBXCommon/HBXBase64.h>
#include <HBXCommon/HBXStringUtil.h>
#include <HBXFunctionalityCore/security/HBXIdentityProvider.h>
#include <HBXFunctionalityCore/security/HBXSIDText.h>

#include "Console.h"
#include "JsonText.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;
using Json = nlohmann::ordered_json;

void declareIdentity(po::options_description_easy_init option) {
    option("eid", po::value<std::string>()->value_name("EID"),
           "identifier of the local environment, else the agent's own");
    option("master", po::value<std::string>()->value_name("EID"),
           "identifier of the master environment, else the agent's own");
    declareJsonOption(option);
}

void declareLocal(po::options_description_easy_init option) {
    option("type", po::value<std::string>()->value_name("user|group|role|environment")->default_value("user"),
           "what the principal is");
    option("eid", po::value<std::string>()->value_name("EID"),
           "identifier of the environment, else the local one");
    declareJsonOption(option);
}

HBXEID eidOf(const Arguments& arguments, const char* option) {
    HBXEID eid;
    if (eid.fromString(arguments.get<std::string>(option)) != 0) {
        throw Failure(ExitCode::Usage, std::string("--") + option + ": \"" +
                                           arguments.get<std::string>(option) + "\" is no identifier");
    }
    return eid;
}

/// What the options say about the agent's identity comes before what it says itself.
void applyIdentity(const Arguments& arguments) {
    HBXIdentityProvider provider = setIdentityProvider({});
    if (arguments.has("eid")) {
        provider.local = [eid = eidOf(arguments, "eid")] { return eid; };
    }
    if (arguments.has("master")) {
        provider.master = [eid = eidOf(arguments, "master")] { return eid; };
    }
    setIdentityProvider(std::move(provider));
}

std::string binaryText(const HBXSID& sid) {
    const auto& bytes = sid.toBinary();
    std::string text(base64EncodedSize(bytes.size()), '\0');
    base64Encode(reinterpret_cast<const char*>(bytes.data()), bytes.size(), text.data());
    return text;
}

/// Its text, or its binary form in base64, as messages show it.
HBXSID readSID(const std::string& text) {
    HBXSID sid;
    std::string bytes;
    const bool isGood = sid.fromString(text) == 0 || (base64Decode(text, bytes) && !bytes.empty() &&
                                                      sid.fromBinary(bytes.data(), bytes.size()) == 0);
    if (!isGood) {
        throw Failure(ExitCode::InvalidInput, "\"" + text + "\" is no security identifier");
    }
    return sid;
}

Json toJson(const HBXSID& sid) {
    Json json = {{"text", sid.toString()}, {"binary", binaryText(sid)}};
    const HBXLocalSID local(sid);
    if (local.getPrincipalType() != HBXLocalSID::NONE) {
        json["type"] = principalTypeName(local.getPrincipalType());
        json["local_id"] = local.getLocalID();
        json["eid"] = local.getEID().toString();
    }
    for (const auto kind : wellKnownKindsOf(sid)) {
        json["well_known"].push_back(wellKnownSIDName(kind));
    }
    return json;
}

std::string describe(const HBXSID& sid) {
    std::string text = sid.toString() + "\nbinary: " + binaryText(sid) + '\n';
    const HBXLocalSID local(sid);
    if (local.getPrincipalType() != HBXLocalSID::NONE) {
        text.append(principalTypeName(local.getPrincipalType())).append(" ");
        text += std::to_string(local.getLocalID()) + " of environment " + local.getEID().toString() + '\n';
    }
    for (const auto kind : wellKnownKindsOf(sid)) {
        text.append("well known: ").append(wellKnownSIDName(kind)).append("\n");
    }
    return text;
}

ExitCode parse(const Arguments& arguments) {
    applyIdentity(arguments);
    const HBXSID sid = readSID(arguments.files[0]);
    print(arguments.has("json") ? jsonText(toJson(sid)) : describe(sid));
    return ExitCode::Ok;
}

unsigned localIdOf(const std::string& text) {
    unsigned long number = 0;
    if (!strToUlong(text, number) || number > std::numeric_limits<std::uint32_t>::max()) {
        throw Failure(ExitCode::Usage, "\"" + text + "\" is no number of 32 bits");
    }
    return static_cast<unsigned>(number);
}

HBXLocalSID::PrincipalType typeOf(const Arguments& arguments) {
    auto type = HBXLocalSID::NONE;
    if (!findPrincipalType(arguments.get<std::string>("type"), type) || type == HBXLocalSID::NONE) {
        throw Failure(ExitCode::Usage, "--type is user, group, role or environment");
    }
    return type;
}

ExitCode local(const Arguments& arguments) {
    const unsigned localId = localIdOf(arguments.files[0]);
    const HBXLocalSID::PrincipalType type = typeOf(arguments);
    const HBXSID sid = arguments.has("eid") ? HBXLocalSID(localId, type, eidOf(arguments, "eid")).getSID()
                                            : HBXLocalSID(localId, type).getSID();
    if (sid.isEmpty()) {
        throw Failure(ExitCode::NothingMatched,
                      "the local environment has no identifier; say one with --eid");
    }
    print(arguments.has("json") ? jsonText(toJson(sid)) : sid.toString() + '\n');
    return ExitCode::Ok;
}

/// The kind that was asked for, else all.
std::vector<HBXSID::WellKnownSIDs> kindsOf(const Arguments& arguments) {
    std::vector<HBXSID::WellKnownSIDs> kinds;
    if (arguments.files.empty()) {
        for (unsigned number = 0; number < HBXSID::kWellKnownCount; ++number) {
            kinds.push_back(static_cast<HBXSID::WellKnownSIDs>(number));
        }
        return kinds;
    }
    auto kind = HBXSID::EVERYONE;
    if (!findWellKnownSID(arguments.files[0], kind)) {
        throw Failure(ExitCode::Usage, "there is no well-known identifier \"" + arguments.files[0] + '"');
    }
    return {kind};
}

ExitCode wellKnown(const Arguments& arguments) {
    applyIdentity(arguments);
    Json list = Json::array();
    std::string text;
    for (const auto kind : kindsOf(arguments)) {
        const std::string name(wellKnownSIDName(kind));
        const std::string sid = HBXSID::createWellKnownSID(kind).toString();
        list.push_back({{"kind", static_cast<unsigned>(kind)}, {"name", name}, {"text", sid}});
        text += std::to_string(kind) + ' ' + name + ' ' + (sid.empty() ? "-" : sid) + '\n';
    }
    print(arguments.has("json") ? jsonText({{"identifiers", list}}) : text);
    return ExitCode::Ok;
}

constexpr Command kSidCommands[] = {
    {"sid", "parse", "SID", "Takes a security identifier, in text or base64, apart.", 1, 1, declareIdentity,
     parse},
    {"sid", "local", "NUMBER", "Makes the identifier of a principal of an environment.", 1, 1, declareLocal,
     local},
    {"sid", "well-known", "[NAME]", "Lists the well-known identifiers, or one; \"-\" where there is none.", 0,
     1, declareIdentity, wellKnown},
};

} // namespace

std::span<const Command> sidCommands() { return kSidCommands; }

} // namespace HBX::tool
