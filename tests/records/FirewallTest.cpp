#include <gtest/gtest.h>

#include <HBXFunctionalityCore/firewall/HBXFirewallRule.h>
#include <HBXFunctionalityCore/firewall/HBXInterfaceRate.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

TEST(FirewallRule, PrintsAddressesAndPorts) {
    const struct {
        HBXFirewallRule::PortRange ports;
        const char* text;
    } ports[] = {{{-1, 80}, ""}, {{80, -1}, "80"}, {{80, 90}, "80:90"}, {{0, 0}, "0:0"}};
    for (const auto& row : ports) {
        EXPECT_EQ(row.ports.toString(':'), row.text);
    }
    const struct {
        HBXFirewallRule::NetAddress address;
        const char* text;
    } addresses[] = {
        {{"10.0.0.0", "255.0.0.0"}, "10.0.0.0/255.0.0.0"}, {{"10.0.0.1", ""}, "10.0.0.1"}, {{"", "8"}, ""}};
    for (const auto& row : addresses) {
        EXPECT_EQ(row.address.toString('/'), row.text);
    }
}

HBXFirewallRule fullRule() {
    HBXFirewallRule rule;
    rule.name = "web";
    rule.words[HBXFirewallRule::CHAIN] = HBXFirewallRule::CT_INPUT;
    rule.words[HBXFirewallRule::POLICY] = HBXFirewallRule::PL_ACCEPT;
    rule.words[HBXFirewallRule::PROTOCOL] = HBXFirewallRule::PT_TCP;
    rule.enabled = true;
    rule.addresses[HBXFirewallRule::SOURCE] = {"10.0.0.0", "255.0.0.0"};
    rule.addresses[HBXFirewallRule::DESTINATION] = {"10.1.0.1", ""};
    rule.ports[HBXFirewallRule::SOURCE] = {-1, 80};
    rule.ports[HBXFirewallRule::DESTINATION] = {80, 90};
    rule.interfaces[HBXFirewallRule::INBOUND] = "eth0";
    rule.interfaces[HBXFirewallRule::OUTBOUND] = "eth1";
    return rule;
}

TEST(FirewallRule, IsEqualOnlyInAllMembers) {
    void (*const changes[])(HBXFirewallRule&) = {
        [](HBXFirewallRule& rule) { rule.name += 'x'; },
        [](HBXFirewallRule& rule) { rule.words[2] += 'x'; },
        [](HBXFirewallRule& rule) { rule.enabled = false; },
        [](HBXFirewallRule& rule) { rule.addresses[1].mask = "8"; },
        [](HBXFirewallRule& rule) { rule.ports[0].last = 81; },
        [](HBXFirewallRule& rule) { rule.interfaces[1] += 'x'; },
    };
    EXPECT_EQ(fullRule(), fullRule());
    for (std::size_t i = 0; i < std::size(changes); ++i) {
        HBXFirewallRule changed = fullRule();
        changes[i](changed);
        EXPECT_NE(changed, fullRule()) << i;
        EXPECT_NE(changed < fullRule(), fullRule() < changed) << i;
    }
}

TEST(FirewallRule, LeavesOutWhatIsEmptyButNameChainAndFlag) {
    HBXFirewallRule maskOnly;
    maskOnly.addresses[0].mask = "255.0.0.0";
    const struct {
        HBXFirewallRule rule;
        const char* children;
    } rows[] = {{maskOnly, "1026 1195 1198 "},
                {fullRule(), "1026 1195 1196 1197 1198 1199 1200 1201 1202 1203 1204 "}};
    for (const auto& row : rows) {
        const Cursor it = newCursor();
        ASSERT_EQ(it->putObject(row.rule, 0), 0);
        std::string children;
        for (int more = it->firstChild(); more == 0; more = it->nextSibling()) {
            children += std::to_string(it->curID()) + ' ';
        }
        EXPECT_EQ(children, row.children);
    }
}

TEST(FirewallRule, KeepsWhatCannotBeRead) {
    const Cursor it = newCursor();
    HBXFirewallRule rule = fullRule();
    it->putValue("ssh", 1026);
    EXPECT_EQ(it->getObject(rule, 0), -1) << "no chain";
    it->putValue("FORWARD", 1195);
    it->putValue("maybe", 1198);
    it->newChild(1202);
    it->putValue("many", 1194);
    it->putValue(22, 1193);
    it->seekUp();
    EXPECT_EQ(it->getObject(rule, 0), 0);
    HBXFirewallRule expected = fullRule();
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
