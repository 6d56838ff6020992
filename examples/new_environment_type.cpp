#include <cstdio>
#include <string>

#include <boost/make_shared.hpp>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

using namespace HBX;

/// The environments of a laboratory: their titles say so.
class LabEnv : public HBXEnv {
public:
    explicit LabEnv(const boost::shared_ptr<HBXEnvCoreBasic>& core) : HBXEnv(core) {}
    std::string getTitle() const override { return "lab " + HBXEnv::getTitle(); }
};

class LabFactory : public HBXEnvChildFactory {
    boost::shared_ptr<HBXEnv> createEnv(const boost::shared_ptr<HBXEnvCoreBasic>& core) override {
        return boost::make_shared<LabEnv>(core);
    }
    boost::shared_ptr<HBXVEnvConfig>
    createVEnvConfig(const boost::shared_ptr<HBXEnvCoreBasic>& core) override {
        return boost::make_shared<HBXVEnvConfig>(core);
    }
};

/// The laboratory has room for one environment at a time. The cache asks this before it changes.
class LabUpdater : public HBXEnvUpdater {
    /// What is only planned is stored without asking further.
    int check(const HBXEnv& env) override { return env.getStatus().isExisted() ? 0 : -1; }
    int insert(const HBXEnv&) override {
        if (rooms_ == 0) {
            return 1;
        }
        --rooms_;
        return 0;
    }
    int update(const HBXEnv&) override { return 0; }
    int remove(const HBXEnv&) override {
        ++rooms_;
        return 0;
    }

    int rooms_ = 1;
};

HBXEnv labEnvironment(const char* name, HBXEnvStatus status) {
    const auto config = boost::make_shared<HBXEnvConfig>();
    config->setType("lab");
    config->setName(HBXOptionalProperty<std::string>(name));
    HBXEnv env(HBXEID::generate(), config);
    env.setStatus(status);
    return env;
}

/// Registers a type of environments, then puts three into the cache named on the command line.
int main(int argc, char** argv) {
    HBXEnvFactory& factory = HBXEnvFactory::getInstance();
    factory.registerEnvUpdater("lab", boost::make_shared<LabUpdater>());
    factory.registerEnv("lab", boost::make_shared<LabFactory>());

    initEnvCache(argc > 1 ? argv[1] : "envs.cache", true);
    const auto cache = envCache();
    if (cache == nullptr) {
        return 1;
    }
    std::printf("oven: %d\n", cache->insert(labEnvironment("oven", {6, 0})));       // running
    std::printf("kiln: %d\n", cache->insert(labEnvironment("kiln", {6, 0})));       // no room
    std::printf("freezer: %d\n", cache->insert(labEnvironment("freezer", {1, 0}))); // absent as yet

    const auto list = cache->getEnvList(); // what it gives lives as long as the list
    for (const auto& env : *list) {
        std::printf("%s\n", env->getTitle().c_str());
    }
}
