#include "EnvVerbs.h"

#include <cerrno>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCore/HBXCacheCheck.h>

#include "CacheFile.h"
#include "Console.h"
#include "JsonText.h"

namespace HBX::tool {

namespace {

using Json = nlohmann::ordered_json;

const char* wordOf(HBXCacheFinding::Severity severity) {
    return severity == HBXCacheFinding::Severity::Damage ? "damage" : "repairable";
}

const char* verdictOf(const HBXCacheFindings& findings) {
    if (findings.isDamaged()) {
        return "damaged";
    }
    if (findings.kind == HBXCacheFileKind::Empty) {
        return "empty";
    }
    return findings.list.empty() ? "in order" : "repairable";
}

std::string conclusionOf(const HBXCacheFindings& findings) {
    if (findings.isDamaged()) {
        return "damaged";
    }
    if (findings.kind == HBXCacheFileKind::Empty) {
        return "empty: the first process that opens it for use builds the cache";
    }
    return std::string(findings.list.empty() ? "in order: "
                                             : "the next process that opens it repairs that: ") +
           std::to_string(findings.entries) + (findings.entries == 1 ? " environment" : " environments") +
           ", " + std::to_string(findings.fileSize) + " bytes" + (findings.inUse ? ", in use" : "");
}

std::string textOf(const std::string& path, const HBXCacheFindings& findings) {
    std::string text;
    for (const HBXCacheFinding& finding : findings.list) {
        text += path + (finding.inLockFile ? ".lock" : "") + ": offset " + std::to_string(finding.offset) +
                ": " + wordOf(finding.severity) + ": " + finding.what + '\n';
    }
    return text + path + ": " + conclusionOf(findings) + '\n';
}

Json toJson(const std::string& path, const HBXCacheFindings& findings) {
    Json json{{"file", path},
              {"verdict", verdictOf(findings)},
              {"in_use", findings.inUse},
              {"size", findings.fileSize},
              {"environments", findings.entries},
              {"states_held", findings.snapshots},
              {"records", findings.values},
              {"record_bytes", findings.valueBytes},
              {"findings", Json::array()}};
    for (const HBXCacheFinding& finding : findings.list) {
        json["findings"].push_back({{"severity", wordOf(finding.severity)},
                                    {"file", path + (finding.inLockFile ? ".lock" : "")},
                                    {"offset", finding.offset},
                                    {"what", finding.what}});
    }
    return json;
}

} // namespace

ExitCode checkCache(const Arguments& arguments) {
    const std::string path = arguments.files.empty() ? cachePath(arguments) : arguments.files[0];
    HBXCacheFindings findings;
    if (checkCacheFile(path, HBXEnvCache::kFormat, findings) != 0) {
        throw Failure(errno == EAGAIN ? ExitCode::LockedOrTimedOut : exitCodeOf(errno),
                      path + ": " + getErrorMessage());
    }
    print(arguments.has("json") ? jsonText(toJson(path, findings)) : textOf(path, findings));
    return findings.isDamaged() ? ExitCode::Damaged : ExitCode::Ok;
}

} // namespace HBX::tool
