#include <cstdio>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

/// Puts a new environment into the cache named on the command line, then shows all that are there.
int main(int argc, char** argv) {
    HBX::initEnvCache(argc > 1 ? argv[1] : "envs.cache", false);
    const boost::intrusive_ptr<HBX::HBXEnvCache> cache = HBX::envCache();
    if (cache == nullptr) {
        return 1;
    }
    HBX::HBXEnv env(HBX::HBXEID::generate(), boost::make_shared<HBX::HBXVEnvConfig>());
    env.getVirtualConfig()->setName(HBX::HBXOptionalProperty<std::string>("web"));
    env.setStatus({6, 0}); // running
    if (cache->insert(env) != 0) {
        return 1;
    }
    const auto list = cache->getEnvList();
    for (const auto& known : *list) {
        std::printf("%s %s\n", known->getEID().toString().c_str(), known->getTitle().c_str());
    }
    return list->holdsSnapshot() ? 0 : 1;
}
