#include "EnvEntry.h"

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXMessage/HBXRecordTable.h>

#include "Failure.h"

namespace HBX::tool {

namespace {

constexpr int kEnv = 3061;
constexpr int kEnvType = 3165;

constexpr HBXRow kEnvEntry[] = {
    member<&EnvEntry::type>(kEnvType),
    member<&EnvEntry::env>(kEnv),
};

/// The element that holds an environment: the type may stand beside it, not in it.
EnvEntry readEntry(const std::string& file, const HBXMessageIterator& element) {
    EnvEntry entry;
    if (element.getObject(entry.env, 0) != 0) {
        throw Failure(ExitCode::InvalidInput, file + ": " + takePath(element) +
                                                  ": this environment lacks something or does not convert");
    }
    const Cursor parent(element.newIterator(true));
    parent->seekUp();
    std::string type;
    if (parent->getValue(type, kEnvType) == 0) {
        entry.type = type;
    }
    return entry;
}

} // namespace

constinit const HBXRecordTable EnvEntry::table = recordTable<EnvEntry>("EnvEntry", 0, 0, kEnvEntry);

EnvEntry entryOf(const HBXEnv& env) {
    EnvEntry entry;
    entry.type = env.getType().str();
    entry.env = env;
    return entry;
}

bool isTypeName(const std::string& name) { return !name.empty() && HBXEnvType(name).view() == name; }

HBXEnv typedEnv(const EnvEntry& entry, HBXEnvCache& cache) {
    const HBXEnv& from = entry.env;
    HBXEnvType type = HBXEnv::type;
    if (entry.type.isSet()) {
        type = HBXEnvType(entry.type.get());
    } else if (const auto present = cache.getEnvCopy(from.getEID())) {
        type = present->getType();
    }
    const auto config = boost::make_shared<HBXEnvConfig>(*from.getConfig());
    config->setType(type);
    HBXEnv env(from.getEID(), config, boost::make_shared<HBXVEnvConfig>(*from.getVirtualConfig()));
    if (env.getEID() != from.getEID()) {
        throw Failure(ExitCode::InvalidInput,
                      from.getEID().toString() + ": the configurations are too large for a record");
    }
    env.setParentEID(from.getParentEID());
    env.setStatus(from.getStatus());
    for (int reason = 0; reason < HBXAlertData::kReasons; ++reason) {
        const auto which = static_cast<HBXAlertData::AlertReason>(reason);
        env.setAlertType(which, from.getAlertType(which));
    }
    return env;
}

std::vector<EnvEntry> loadEntries(const std::string& file) {
    std::vector<EnvEntry> entries;
    const Cursor element = cursorOn(loadMessage(file));
    bool found = false;
    do {
        found = element->curID() == kEnv;
        if (found) {
            entries.push_back(readEntry(file, *element));
        }
    } while (advance(*element, !found));
    if (entries.empty()) {
        throw Failure(ExitCode::NothingMatched, file + ": there is no environment (\"env\") in it");
    }
    return entries;
}

} // namespace HBX::tool
