#pragma once

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include "support/TextMessage.h"

namespace HBX::test {

using Core = boost::shared_ptr<HBXEnvCoreBasic>;
using Text = HBXOptionalProperty<std::string>;

/// A record with these messages; the texts are what stands below the root.
inline Core coreOf(const std::string& config, const std::string& virtualConfig = "") {
    Core core = HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG);
    for (const auto& [text, kind] : {std::pair(config, ENV_CONFIG), {virtualConfig, VIRTUAL_CONFIG}}) {
        if (!text.empty()) {
            core = HBXEnvCoreBasic::createInstance(rootOf(textMessage(text)).get(), *core, kind);
        }
    }
    return core;
}

/// Answers what a test tells it to, and notes what it is asked.
class TellingUpdater : public HBXEnvUpdater {
public:
    int insert(const HBXEnv&) override { return note("insert", result); }
    int update(const HBXEnv&) override { return note("update", result); }
    int remove(const HBXEnv&) override { return note("remove", result); }
    int check(const HBXEnv&) override { return note("check", checkResult); }
    int sync(const std::set<HBXEID, HBXEnvIDComparator>& eids) override {
        synced = eids;
        return note("sync", result);
    }

    std::string asked;
    int result = 0;
    int checkResult = 0;
    std::set<HBXEID, HBXEnvIDComparator> synced;

private:
    int note(const char* what, int answer) {
        asked += std::string(what) + ' ';
        return answer;
    }
};

// What otherwise only the cache may call.

const Core& recordOf(const HBXEnv& env);
boost::shared_ptr<HBXEnv> envOver(const Core& core);

/// Environments over a record come from the factory; this takes the way that a module's own class takes.
struct OwnEnv : HBXEnv {
    explicit OwnEnv(Core core) : HBXEnv(std::move(core)) {}
};

} // namespace HBX::test
