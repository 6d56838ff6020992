#include <cstdio>

#include <boost/make_shared.hpp>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

/// An environment of which everything is given, so that every run stores the same bytes.
HBX::HBXEnv environment(const char* id, const char* name, HBX::HBXEnvStatus status) {
    HBX::HBXEID eid;
    eid.fromString(id);
    const auto config = boost::make_shared<HBX::HBXVEnvConfig>();
    config->setName(HBX::HBXOptionalProperty<std::string>(name));
    HBX::HBXEnv env(eid, config);
    env.setStatus(status);
    return env;
}

/// Makes the cache file that docs/cache-file.md goes through line by line: a host, then a container on it,
/// whose identifier is the smaller one.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: cache_file FILE\n");
        return 2;
    }
    HBX::initEnvCache(argv[1], true);
    const auto cache = HBX::envCache();
    if (cache == nullptr) {
        return 1;
    }
    const auto host = environment("b0000000-0000-0000-0000-000000000001", "host", {6, 0});
    auto container = environment("a0000000-0000-0000-0000-000000000002", "web", {3, 0});
    container.setParentEID(host.getEID());
    return cache->insert(host) == 0 && cache->insert(container) == 0 ? 0 : 1;
}
