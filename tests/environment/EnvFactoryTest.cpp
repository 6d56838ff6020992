#include <gtest/gtest.h>

#include "EnvTestUtil.h"

namespace HBX::test {

namespace {

struct OwnVEnvConfig : HBXVEnvConfig {
    using HBXVEnvConfig::HBXVEnvConfig;
};

class OwnChildFactory : public HBXEnvChildFactory {
public:
    boost::shared_ptr<HBXEnv> createEnv(const Core& core) override {
        return boost::make_shared<OwnEnv>(core);
    }
    boost::shared_ptr<HBXVEnvConfig> createVEnvConfig(const Core& core) override {
        return boost::make_shared<OwnVEnvConfig>(core);
    }
};

class EnvFactory : public testing::Test {
protected:
    void TearDown() override { factory.clear(); }
    HBXEnvFactory& factory = HBXEnvFactory::getInstance();
};

bool isOwn(const boost::shared_ptr<HBXEnv>& env) { return dynamic_cast<const OwnEnv*>(env.get()) != nullptr; }

TEST_F(EnvFactory, MakesEnvironmentsOfTheRegisteredType) {
    const Core core = coreOf("");
    core->type = "own";
    EXPECT_FALSE(isOwn(envOver(core)));
    EXPECT_EQ(factory.createEnv("own")->getType().str(), "own");

    factory.registerEnv("own", boost::make_shared<OwnChildFactory>());
    EXPECT_TRUE(isOwn(factory.createEnv("own")));
    EXPECT_TRUE(isOwn(envOver(core)));
    EXPECT_FALSE(isOwn(factory.createEnv("owner"))) << "a longer name";
    EXPECT_NE(dynamic_cast<OwnVEnvConfig*>(factory.createVEnvConfig(core).get()), nullptr);

    factory.unregisterEnv("own");
    EXPECT_FALSE(isOwn(factory.createEnv("own")));
    EXPECT_EQ(dynamic_cast<OwnVEnvConfig*>(factory.createVEnvConfig(core).get()), nullptr);
}

TEST_F(EnvFactory, ReadsEnvironmentsIntoTheGenericClass) {
    const Cursor it = newCursor();
    const HBXEnv env(HBXEID(HBXGUID(1, 2)), boost::make_shared<HBXEnvConfig>(coreOf("<name>n</name>")));
    it->putObject(env, 0);
    factory.registerEnv(HBXEnv::type, boost::make_shared<OwnChildFactory>());
    boost::shared_ptr<HBXEnv> made;
    EXPECT_EQ(HBXEnv::EnvSPReader()(*it, made), 0);
    EXPECT_TRUE(isOwn(made) && *made == env);
    const boost::shared_ptr<HBXEnv> before = made;
    it->deleteChild(1870);
    EXPECT_EQ(HBXEnv::EnvSPReader()(*it, made), -1);
    EXPECT_EQ(made, before);
}

TEST_F(EnvFactory, NullPointersEndTheProgram) {
    const std::pair<std::function<void()>, std::string> rows[] = {
        {[] { HBXEnvCoreBasicMaintainer(HBXEID(), nullptr); },
         "56 HBX::HBXEnvCoreBasicMaintainer::HBXEnvCoreBasicMaintainer"},
        {[] { HBXEnvCoreBasicMaintainer(HBXEID(), boost::make_shared<HBXVEnvConfig>()); },
         "57 HBX::HBXEnvCoreBasicMaintainer::HBXEnvCoreBasicMaintainer"},
        {[] { static_cast<void>(OwnEnv(nullptr).getEID()); }, "284 HBX::HBXEnv::getCoreBasic"},
        {[&] { factory.registerEnv("own", nullptr); }, "315 HBX::HBXEnvFactory::registerEnv"},
        {[&] { factory.registerEnvUpdater("own", nullptr); }, "333 HBX::HBXEnvFactory::registerEnvUpdater"},
        {[] { envOver(nullptr); }, "502 HBX::HBXEnvFactory::createEnv"},
        {[&] { static_cast<void>(factory.createVEnvConfig(nullptr)); },
         "513 HBX::HBXEnvFactory::createVEnvConfig"},
    };
    for (const auto& [call, place] : rows) {
        EXPECT_EQ(abortOf(call), "HBXFunctionalityCore core/src/HBXFunctionalityCore/HBXEnv:" + place);
    }
}

} // namespace
} // namespace HBX::test
