#include <gtest/gtest.h>

#include <atomic>

#include "EnvTestUtil.h"
#include "support/Threads.h"

namespace HBX::test {
namespace {

std::string textOf(const HBXEnvConfig& config) { return takeText(config.getMessageIterator()->toText()); }

constexpr const char* kUnknown = "<future a=\"1\"><x>y</x></future>";

/// One property is set to a value, read back, and taken away where that can be said.
/// @tparam P  a value, or an optional property of it, whose absence can be said.
template <class T, class P>
void expectReplaced(const std::string& element, const T& value, int (HBXEnvConfig::*set)(const P&),
                    int (HBXEnvConfig::*get)(P&) const) {
    SCOPED_TRACE(element);
    const auto holds = [&](const HBXEnvConfig& config) {
        P back{};
        return (config.*get)(back) == 0 && back == P(value);
    };
    HBXEnvConfig config(coreOf(kUnknown));
    EXPECT_FALSE(holds(config)) << "absent";
    EXPECT_EQ((config.*set)(P(value)), 0);
    EXPECT_TRUE(holds(config));
    config.getMessageIterator()->newChild(element.c_str()); // one more, which cannot be read
    EXPECT_EQ((config.*set)(P(value)), 0);
    const std::string text = textOf(config);
    EXPECT_EQ(text.find('<' + element), text.rfind('<' + element)) << text;
    EXPECT_NE(text.find(kUnknown), std::string::npos) << text;
    const Core stored = HBXEnvCoreBasic::createInstance(config.getMessageIterator().get(), ENV_CONFIG);
    EXPECT_TRUE(holds(HBXEnvConfig(stored))) << "read where it lies";
    if constexpr (!std::is_same_v<T, P>) {
        EXPECT_EQ((config.*set)({}), 0);
        EXPECT_FALSE(holds(config));
        EXPECT_EQ(textOf(config), textOf(HBXEnvConfig(coreOf(kUnknown))));
    }
}

TEST(EnvConfig, SettersReplaceTheirElementAndNothingElse) {
    using C = HBXEnvConfig;
    using Texts = std::vector<std::string>;
    HBXOS os;
    os.version = "7";
    os.name = "os";
    const std::vector<HBXIPAddress> addresses = {HBXIPAddress("10.0.0.1", 24), HBXIPAddress("::1")};
    expectReplaced<std::string>("name", "n", &C::setName, &C::getName);
    expectReplaced<std::string>("description", "\x01 any", &C::setDescription, &C::getDescription);
    expectReplaced<std::string>("domain", "d", &C::setDomain, &C::getDomain);
    expectReplaced<std::string>("host_name", "h", &C::setHostname, &C::getHostname);
    expectReplaced<std::string>("architecture", "", &C::setArchitecture, &C::getArchitecture);
    expectReplaced<Texts>("name_servers", {"a", "b"}, &C::setNameservers, &C::getNameservers);
    expectReplaced<Texts>("search_domains", {"s"}, &C::setSearchDomains, &C::getSearchDomains);
    expectReplaced<Texts>("child_types", {}, &C::setChildTypes, &C::getChildTypes);
    expectReplaced("address", addresses, &C::setAddresses, &C::getAddresses);
    expectReplaced("os", os, &C::setOS, &C::getOS);
    expectReplaced("base_sample", HBXGUID(1, 2), &C::setBaseSampleId, &C::getBaseSampleId);
    expectReplaced("base_snapshot", HBXGUID(3, 4), &C::setBaseSnapshotId, &C::getBaseSnapshotId);
}

TEST(EnvConfig, WhatCannotBeReadLeavesTheOutputAlone) {
    const HBXEnvConfig config(
        coreOf("<name/><customized>x</customized><name_servers><value/></name_servers>"));
    Text name(std::string("kept"));
    EXPECT_EQ(config.getName(name), -1);
    EXPECT_EQ(name.get(), "kept");
    bool flag = true;
    EXPECT_TRUE(config.getConfigCustomized(flag) == -1 && flag);
    HBXOptionalProperty<std::vector<std::string>> servers;
    EXPECT_EQ(config.getNameservers(servers), -1);
    EXPECT_FALSE(servers.isSet());
}

TEST(EnvConfig, TellsTheVersionOfTheAgentThatMadeIt) {
    const std::tuple<const char*, int, int> rows[] = {
        {"", -1, 40500},
        {"<name>n</name>", 40000, 40000}, // what was there is not made newer
        {"<version>7</version>", 7, 7},
    };
    for (const auto& [xml, read, initialized] : rows) {
        HBXEnvConfig config(coreOf(xml));
        EXPECT_EQ(config.getAgentVersion(), read) << xml;
        EXPECT_EQ(config.initMsg(), 0);
        EXPECT_EQ(config.getAgentVersion(), initialized) << xml;
    }
    HBXVEnvConfig virtualConfig;
    EXPECT_EQ(virtualConfig.initMsg(), 0);
    EXPECT_EQ(virtualConfig.getAgentVersion(), -1);
}

TEST(EnvConfig, WritesNeverReachTheRecordOrACopy) {
    const Core core = coreOf("<name>old</name>");
    const std::string before(core->configBytes());
    HBXEnvConfig config(core);
    const HBXEnvConfig early(config);
    config.setName(Text(std::string("new")));
    const HBXEnvConfig late(config);
    config.setName(Text(std::string("newest")));
    EXPECT_EQ(core->configBytes(), before);
    EXPECT_NE(textOf(late).find("<name>new</name>"), std::string::npos);
    Text name;
    config.reset(false);
    EXPECT_EQ(config.compare(early), 0) << "the record counts again";
    config.reset(true);
    EXPECT_EQ(config.getName(name), -1);
    EXPECT_EQ(config.getMessageIterator(), nullptr);
    const Cursor it = newCursor();
    EXPECT_EQ(it->putObject(config, 1185), 0);
    config = late;
    EXPECT_EQ(it->getObject(config, 1185), 0);
    EXPECT_EQ(config, HBXEnvConfig()) << "without a message it is an empty element, and has no version";
}

TEST(EnvConfig, DamageLooksLikeAbsenceAndIsNotWrittenOver) {
    const std::string whole(coreOf("<name>name</name><domain>d</domain>")->configBytes());
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            const Core core = coreOf("<name>name</name><domain>d</domain>");
            char& byte = reinterpret_cast<char*>(core.get())[HBXEnvCoreBasic::kDataOffset + at];
            byte = static_cast<char>(byte ^ (1 << bit));
            const std::string damaged(core->configBytes());
            HBXEnvConfig config(core);
            Text value;
            config.getName(value);
            config.getDomain(value);
            EXPECT_NE(config.getAgentVersion(), 0);
            const bool changed = config.setHostname(Text(std::string("h"))) == 0;
            EXPECT_EQ(changed, parseMessage(damaged) != nullptr);
            EXPECT_EQ(core->configBytes(), damaged);
        }
    }
}

TEST(EnvConfig, FindsTheFirstTagOfAName) {
    HBXEnvConfig config(coreOf(std::string("<name>n</name>") + kUnknown + "<domain/><future/>"));
    for (int round = 0; round < 2; ++round) { // in the record, then in a tree
        EXPECT_EQ(config.getPositionOfTheTag("future"), 1);
        EXPECT_EQ(config.getPositionOfTheTag("x"), -1) << "further down";
        config.initMsg();
    }
}

TEST(EnvConfig, OneViewServesSeveralThreads) {
    HBXEnvConfig written(coreOf("<name>n</name>"));
    written.initMsg();
    const HBXEnvConfig configs[] = {HBXEnvConfig(coreOf("<name>n</name>")), written};
    std::atomic<int> failures{0};
    const auto readBoth = [&] {
        for (int round = 0; round < 500; ++round) {
            const HBXEnvConfig& config = configs[round % 2];
            Text name;
            std::string bytes;
            const bool good = config.getName(name) == 0 && name.get() == "n" && config.getBytes(bytes) == 0;
            failures += good && HBXEnvConfig(config) == config ? 0 : 1;
        }
    };
    runThreads({readBoth, readBoth, readBoth, readBoth});
    EXPECT_EQ(failures, 0);
}

TEST(VEnvConfig, SaysWhetherItIsDisabled) {
    HBXVEnvConfig config;
    bool disabled = true;
    EXPECT_TRUE(config.getDisabled(disabled) == -1 && disabled) << "no message";
    EXPECT_EQ(HBXVEnvConfig(coreOf("", "<disabled>maybe</disabled>")).getDisabled(disabled), 0);
    EXPECT_FALSE(disabled);
    EXPECT_EQ(config.setDisabled(true), 0);
    EXPECT_TRUE(config.getDisabled(disabled) == 0 && disabled);
}

TEST(VEnvConfig, OneLimitAndASetOfThemShareTheirPlace) {
    HBXQoS a("1:2");
    a.id = "a";
    HBXQoS b("3:4");
    b.id = "b";
    HBXVEnvConfig config;
    HBXOptionalProperty<HBXQoS> one;
    HBXOptionalProperty<std::set<HBXQoS>> many;
    EXPECT_EQ(config.getQoSes(many), -1);
    EXPECT_EQ(config.setQoSes(HBXOptionalProperty(std::set{b, a})), 0);
    EXPECT_EQ(config.getQoS(one), 0);
    EXPECT_EQ(one.get().id, "a");
    EXPECT_EQ(config.setQoS(HBXOptionalProperty(b)), 0);
    EXPECT_EQ(config.getQoSes(many), 0);
    EXPECT_EQ(many.get(), std::set{b});
    EXPECT_EQ(config.setQoSes({}), 0);
    EXPECT_EQ(config.getQoS(one), -1);
}

} // namespace
} // namespace HBX::test
