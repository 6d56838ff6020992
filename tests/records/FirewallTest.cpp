#include <gtest/gtest.h>

#include <HBXFunctionalityCore/firewall/HBXFirewallRule.h>
#include <HBXFunctionalityCore/firewall/HBXInterfaceRate.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

TEST(FirewallRule, PrintsAddressesAndPorts) {
    using Ports = HBXFirewallRule::PortRange;
    using Address = HBXFirewallRule::NetAddress;
    EXPECT_EQ((Ports{-1, 80}.toString(':')), "");
    EXPECT_EQ((Ports{80, -1}.toString(':')), "80");
    EXPECT_EQ((Ports{0, 90}.toString(':')), "0:90");
    EXPECT_EQ((Address{"10.0.0.0", "255.0.0.0"}.toString('/')), "10.0.0.0/255.0.0.0");
    EXPECT_EQ((Address{"10.0.0.1", ""}.toString('/')), "10.0.0.1");
    EXPECT_EQ((Address{"", "8"}.toString('/')), "");
}

const HBXFirewallRule kFull{"web",
                            {"INPUT", "ACCEPT", "tcp"},
                            true,
                            {{"10.0.0.0", "255.0.0.0"}, {"10.1.0.1", ""}},
                            {{-1, 80}, {80, 90}},
                            {"eth0", "eth1"}};

TEST(FirewallRule, LeavesOutWhatIsEmptyButNameChainAndFlag) {
    HBXFirewallRule maskOnly;
    maskOnly.addresses[0].mask = "255.0.0.0";
    const std::pair<HBXFirewallRule, std::string> rows[] = {
        {maskOnly, "1026 1195 1198 "}, {kFull, "1026 1195 1196 1197 1198 1199 1200 1201 1202 1203 1204 "}};
    for (const auto& [rule, expected] : rows) {
        const Cursor it = newCursor();
        EXPECT_EQ(it->putObject(rule, 0), 0);
        std::string children;
        for (int more = it->firstChild(); more == 0; more = it->nextSibling()) {
            children += std::to_string(it->curID()) + ' ';
        }
        EXPECT_EQ(children, expected);
    }
}

TEST(FirewallRule, KeepsWhatCannotBeRead) {
    const Cursor it = newCursor();
    HBXFirewallRule rule = kFull;
    it->putValue("ssh", 1026);
    EXPECT_EQ(it->getObject(rule, 0), -1) << "no chain";
    it->putValue("FORWARD", 1195);
    it->putValue("maybe", 1198);
    it->newChild(1202);
    it->putValue("many", 1194);
    it->putValue(22, 1193);
    it->seekUp();
    EXPECT_EQ(it->getObject(rule, 0), 0);
    HBXFirewallRule expected = kFull;
    expected.name = "ssh";
    expected.words[HBXFirewallRule::CHAIN] = HBXFirewallRule::CT_FORWARD;
    expected.ports[HBXFirewallRule::DESTINATION] = {80, 22};
    EXPECT_EQ(rule, expected);
}

TEST(InterfaceRate, ReadsExactlyWhatItPrints) {
    EXPECT_EQ((HBXInterfaceRate{1, 2048}.toString()), "*:1:2048");
    EXPECT_EQ((HBXInterfaceRate{7, 0}.toString()), "");

    HBXInterfaceRate rate;
    for (const char* text : {"*:1:2048", "*:-2147483648:2147483647"}) {
        EXPECT_TRUE(rate.fromStringEx(text));
        EXPECT_EQ(rate.toString(), text);
    }
    const HBXInterfaceRate before = rate;
    for (const char* text : {"", "*:1", "*:1:", "*:1:2:3", "1:2:3", "x:1:2", " *:1:2", "*: 1:2", "*:1:2 ",
                             "*:+1:2", "*:1:2147483648"}) {
        EXPECT_FALSE(rate.fromStringEx(text)) << text;
        EXPECT_EQ(rate, before) << text;
    }
}

} // namespace
} // namespace HBX::test
