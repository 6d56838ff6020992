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
    const Cursor it = newCursor();
    EXPECT_EQ(it->putObject(maskOnly, 1), 0);
    EXPECT_EQ(contentText(*it),
              R"(<hbx:element hbx:id="1" hbx:tns="firewall" hbx:type="firewall_rule">)"
              R"(<name hbx:ns="firewall" hbx:kind="text"/><chain hbx:ns="firewall" hbx:kind="text"/>)"
              R"(<enabled hbx:ns="firewall">0</enabled></hbx:element>)");
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
