#include <gtest/gtest.h>

#include <sys/mman.h>

#include <array>
#include <cstring>

#include "EnvTestUtil.h"

namespace HBX::test {
namespace {

const HBXEID kId(HBXGUID(1, 2));

boost::shared_ptr<HBXEnvConfig> configNamed(const std::string& name) {
    auto config = boost::make_shared<HBXEnvConfig>();
    config->setName(Text(name));
    return config;
}

HBXEnv fullEnv() {
    auto virtualConfig = boost::make_shared<HBXVEnvConfig>();
    virtualConfig->setDisabled(true);
    HBXEnv env(kId, configNamed("web"), virtualConfig);
    env.setParentEID(HBXEID(HBXGUID(3, 4)));
    env.setStatus({6, 1});
    for (int reason = 0; reason < HBXAlertData::kReasons; ++reason) {
        env.setAlertType(static_cast<HBXAlertData::AlertReason>(reason),
                         static_cast<HBXAlertData::AlertType>(reason));
    }
    return env;
}

TEST(Env, TakesItsRecordFromItsConfigurations) {
    const auto config = configNamed("web");
    config->setType("special");
    HBXEnv env(kId, config);
    EXPECT_EQ(env.getType().str(), "special");
    EXPECT_EQ(env, HBXEnv(kId, configNamed("web"))) << "the type does not count";
    EXPECT_EQ(HBXEnvConfig(recordOf(env)), *config);
    EXPECT_EQ(HBXEnv(kId, boost::make_shared<HBXVEnvConfig>()).getTitle(), kId.toString());

    const auto it = config->getMessageIterator();
    for (int depth = 0; depth < 300; ++depth) {
        it->newChild(1018);
    }
    env = HBXEnv(kId, config);
    EXPECT_FALSE(env.getEID().isValid()) << "its configuration fits in no record";
}

TEST(Env, CopiesShareTheRecordAndItsAlertLevels) {
    const HBXEnv env = fullEnv();
    HBXEnv copy(env);
    copy.setStatus({3, 0});
    EXPECT_EQ(env.getStatus(), HBXEnvStatus(3, 0));
    EXPECT_EQ(env.getAlertType(HBXAlertData::LICENSE), HBXAlertData::BLACK);
    EXPECT_EQ(env.getMaxAlertType(), static_cast<HBXAlertData::AlertType>(4));
    for (const int number : {-1, HBXAlertData::kReasons}) {
        const auto reason = static_cast<HBXAlertData::AlertReason>(number);
        EXPECT_EQ(copy.setAlertType(reason, HBXAlertData::RED), -1);
        EXPECT_EQ(env.getAlertType(reason), HBXAlertData::GREEN);
    }
}

TEST(Env, IsCalledByTheFirstTextThatItHas) {
    const std::array<std::string, 3> rows[] = {
        {"<name>c</name>", "<name>v</name>", "v"},
        {"<name>c</name>", "<name hbx:kind='text'/><host_name>vh</host_name>", "c"},
        {"<host_name>ch</host_name>", "<host_name>vh</host_name>", "vh"},
        {"<address><entry><ip_address>2.2.2.2</ip_address></entry></address>",
         "<address><entry><ip_address>1.1.1.1</ip_address><netmask>255.0.0.0</netmask></entry></address>",
         "1.1.1.1"},
        {"<address><entry><ip_address>2.2.2.2</ip_address></entry></address>", "<address/>", "2.2.2.2"},
        {"<domain>d</domain>", "", HBXEID().toString()},
    };
    for (const auto& [config, virtualConfig, title] : rows) {
        EXPECT_EQ(OwnEnv(coreOf(config, virtualConfig)).getTitle(), title);
    }
}

TEST(Env, SyncedRecordHoldsWhatTheConfigurationsSay) {
    const Core core = coreOf("<name>old</name><future/>", "<disabled>1</disabled>");
    core->eid = kId;
    core->type = "special";
    HBXEnv env = *envOver(core);
    EXPECT_EQ(env.syncBuffer(), 0);
    EXPECT_EQ(recordOf(env), core) << "nothing new";
    env.getConfig()->setName(Text(std::string("new")));
    EXPECT_EQ(env.syncBuffer(), 0);
    EXPECT_NE(recordOf(env), core) << "another took its place";
    EXPECT_EQ(recordOf(env)->eid, kId);
    EXPECT_EQ(env.getType().str(), "special");
    EXPECT_EQ(envOver(recordOf(env))->getTitle(), "new");
    env.getVirtualConfig()->setName(Text(std::string("virtual")));
    env.getConfig()->reset(true);
    EXPECT_EQ(env.syncBuffer(), 0);
    EXPECT_EQ(envOver(recordOf(env))->getTitle(), "virtual");
    EXPECT_EQ(recordOf(env)->getConfig(), nullptr);
}

TEST(Env, ViewOverReadOnlyMemoryIsNeverWritten) {
    const Core core = coreOf("<name>mapped</name>", "<disabled>1</disabled>");
    core->eid = kId;
    void* page = mmap(nullptr, core->length(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(page, MAP_FAILED);
    std::memcpy(page, core.get(), core->length());
    ASSERT_EQ(mprotect(page, core->length(), PROT_READ), 0);
    {
        const Core mapped(core, static_cast<HBXEnvCoreBasic*>(page));
        const OwnEnv env(mapped);
        EXPECT_EQ(env.getTitle(), "mapped");
        EXPECT_EQ(env, OwnEnv(core));
        std::string bytes;
        EXPECT_EQ(encodeRecord<HBXEnv>(env, bytes), 0);
        OwnEnv target(mapped); // reading an environment must not fall back on the record that it had
        EXPECT_EQ(decodeRecord<HBXEnv>(bytes, target), 0);
        EXPECT_EQ(target, env);
        EXPECT_EQ(HBXEnvCoreBasic::createInstance(*mapped)->eid, kId);
    }
    munmap(page, core->length());
}

TEST(Env, ReadsWhatIsCompleteAndLeavesItselfAloneOtherwise) {
    const std::tuple<void (*)(HBXMessageIterator& it), int, std::string> rows[] = {
        {[](auto& it) { it.putValue(77, 1003); }, 0, "web"}, // a sixth is passed over
        {[](auto& it) { it.deleteChild(1185); }, 0, kId.toString()},
        {[](auto& it) { it.seek(1003), it.deleteFromChild(); }, -1, "kept"},
    };
    for (const auto& [change, result, title] : rows) {
        const Cursor it = newCursor();
        it->putObject(fullEnv(), 0);
        change(*it);
        HBXEnv env(HBXEID(HBXGUID(7, 7)), configNamed("kept"));
        const HBXEnv sharer(env);
        EXPECT_EQ(it->getObject(env, 0), result);
        EXPECT_EQ(env.getTitle(), title);
        EXPECT_EQ(env.getMaxAlertType(), result == 0 ? fullEnv().getMaxAlertType() : HBXAlertData::GREEN);
        EXPECT_EQ(env.getType().str(), result == 0 ? "generic" : "");
        EXPECT_EQ(sharer.getTitle(), "kept");
    }
}

TEST(Env, ElementsHaveTheirOrder) {
    const Cursor it = newCursor();
    EXPECT_EQ(it->putObject(fullEnv(), 0), 0);
    for (const int id : {1870, 1866, 1192, 1003, 1003, 1003, 1003, 1003, 1185, 1872}) {
        EXPECT_EQ(id == 1870 ? it->firstChild() : it->nextSibling(), 0);
        EXPECT_EQ(it->curID(), id);
    }
}

} // namespace
} // namespace HBX::test
