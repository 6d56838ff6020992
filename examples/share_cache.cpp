#include <cstdio>
#include <string>

#include <boost/make_shared.hpp>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include <sys/wait.h>
#include <unistd.h>

using namespace HBX;

/// The second process: shows what the first one stored.
int list() {
    const auto cache = envCache();
    const auto environments = cache == nullptr ? nullptr : cache->getEnvList();
    if (environments == nullptr || !environments->holdsSnapshot()) {
        return 1;
    }
    for (const auto& env : *environments) {
        std::printf("%s %s: %s\n", env->getEID().toString().c_str(), env->getTitle().c_str(),
                    env->getStatus().isRunning() ? "running" : "not running");
    }
    return 0;
}

int insert(const char* name, HBXEnvStatus status) {
    const auto cache = envCache();
    if (cache == nullptr) {
        return -1;
    }
    const auto config = boost::make_shared<HBXVEnvConfig>();
    config->setName(HBXOptionalProperty<std::string>(name));
    HBXEnv env(HBXEID::generate(), config);
    env.setStatus(status);
    return cache->insert(env);
}

/// Two processes share the environments in one file: the parent inserts, the child lists.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: share_cache FILE\n");
        return 2;
    }
    initEnvCache(argv[1], false);
    if (insert("web", {6, 0}) != 0 || insert("mail", {3, 0}) != 0) {
        std::fprintf(stderr, "%s\n", getErrorMessage().c_str());
        return 1;
    }
    const pid_t child = fork();
    if (child == 0) {
        return list();
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0 ? 0 : 1;
}
