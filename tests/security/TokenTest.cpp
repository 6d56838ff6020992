#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <thread>

#include <HBXFunctionalityCore/security/HBXLocalSID.h>
#include <HBXFunctionalityCore/security/HBXToken.h>

#include "security/ScratchIdentity.h"
#include "support/TextMessage.h"

namespace HBX::test {
namespace {

const HBXEID kLocal(HBXGUID(1, 2));
const HBXEID kOther(HBXGUID(3, 4));

using Texts = std::initializer_list<const char*>;

HBXToken token(const std::string& sid, Texts groups = {}, Texts restricted = {}) {
    HBXToken made;
    made.sid.fromString(sid);
    made.groups = std::vector<HBXSID>(groups.begin(), groups.end());
    made.restricted = std::vector<HBXSID>(restricted.begin(), restricted.end());
    return made;
}

std::string administratorsOf(const HBXEID& eid) {
    return HBXLocalSID(0, HBXLocalSID::GROUP, eid).getSID().toString();
}

TEST(Token, AdministratorsAreTheseOnly) {
    std::vector<std::tuple<std::string, bool, bool>> rows = {
        {administratorsOf(kLocal), true, false},
        {administratorsOf(kOther), false, true},
        {"S-1-5-32-544", true, true},
        {"S-1-5-21-4294967295-0-0-500", true, true},
        {HBXLocalSID(0, HBXLocalSID::USER, kLocal).getSID().toString(), false, false},
        {HBXLocalSID(1, HBXLocalSID::GROUP, kLocal).getSID().toString(), false, false},
    };
    for (const char* sid :
         {"S-1-5-32-545", "S-1-5-32-544-1", "S-1-0x000100000005-32-544", "S-1-5-33-544", "S-1-5-21-1-2-500",
          "S-1-5-21-1-2-3-4-500", "S-1-5-21-1-2-3-501", "S-1-5-22-1-2-3-500"}) {
        rows.emplace_back(sid, false, false);
    }
    const ScratchIdentity identity(kLocal, {});
    for (const auto& [sid, isLocal, isOther] : rows) {
        for (const HBXToken& tested : {token(sid), token("", {"S-1-5-7", sid.c_str()})}) {
            EXPECT_EQ(tested.isLocalAdministrators(), isLocal) << sid;
            EXPECT_EQ(tested.isEnvAdministrators(kOther), isOther) << sid;
        }
        const HBXToken lost = token("", {}, {sid.c_str()});
        EXPECT_FALSE(lost.isLocalAdministrators() || lost.isEnvAdministrators(kOther)) << sid;
    }
}

TEST(Token, TheAgentIsAlwaysAnAdministratorAnEmptyIdentifierNever) {
    const std::string group = administratorsOf(kLocal);
    const std::pair<HBXEID, HBXToken> rows[] = {
        {HBXEID(), token("S-1-1000-4", {"S-1-5-32-544"})}, // the administrators' group is empty too
        {kLocal, token("S-1-1000-4", {group.c_str(), "S-1-5-32-544"})},
    };
    HBXToken nobody;
    nobody.groups.emplace_back();
    for (const auto& [local, agent] : rows) {
        const ScratchIdentity identity(local, {});
        EXPECT_FALSE(nobody.isLocalAdministrators() || nobody.isEnvAdministrators(local));
        EXPECT_EQ(HBXToken::getAgentToken(), agent);
        EXPECT_TRUE(agent.isLocalAdministrators());
    }
}

TEST(Token, RestrictionOnlyTakesAway) {
    const HBXToken full = token("S-1-1", {"S-1-2", "S-1-3"});
    const std::array<HBXToken, 3> rows[] = {
        {full, full, full},
        {full, token("S-1-3", {"S-1-1"}), token("S-1-1", {"S-1-3"}, {"S-1-2"})},
        {full, token("S-1-4", {"S-1-3"}), token("S-1-5-7", {"S-1-3"}, {"S-1-2", "S-1-1"})},
        {token("S-1-1", {"S-1-3"}, {"S-1-2"}), token("S-1-1"), token("S-1-1", {}, {"S-1-2", "S-1-3"})},
        {token(""), token("S-1-5-32-544", {"S-1-2"}), token("S-1-5-7")},
    };
    for (const auto& [before, other, after] : rows) {
        HBXToken left = before;
        EXPECT_EQ(left.restrict(other), 0);
        EXPECT_EQ(left, after);
    }
    HBXToken same = full;
    EXPECT_EQ(same.restrict(same), 0);
    EXPECT_EQ(same, full);
}

TEST(Token, OfAPeerMustHoldIdentifiersOnly) {
    const std::pair<const char*, int> rows[] = {
        {"", 0},
        {"<sid>AQEAAAAAAAUHAAAA</sid><groups><group_sid>AQEAAAAAAAUHAAAA</group_sid><more/></groups>", 0},
        {"<sid>AQ8AAAAAAAUHAAAA</sid>", -1},
        {"<sid>AQEAAAAAAAUHAAAA</sid><groups><group_sid/></groups>", -1},
        {"<groups><group_sid>AQEAAAAAAAUHAAAA</group_sid><group_sid>AQ==</group_sid></groups>", -1},
        {"<restricted_groups><group_sid>AQ==</group_sid></restricted_groups>", -1},
    };
    for (const auto& [members, result] : rows) {
        const Cursor it = rootOf(textMessage("<token>" + std::string(members) + "</token>"));
        HBXToken read;
        EXPECT_EQ(it->getObject(read, 3282), result) << members;
    }
    HBXToken unwritable;
    unwritable.groups.emplace_back();
    EXPECT_EQ(newCursor()->putObject(unwritable, 0), -1);
}

TEST(TokenHolder, NestedOnesRestoreInReverse) {
    const HBXTokenHolder first(token("S-1-1"));
    try {
        const HBXTokenHolder second(token("S-1-2"));
        const HBXTokenHolder third(HBXToken::getCurrent());
        HBXToken::setCurrent(token("S-1-3"));
        throw std::runtime_error("left early");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(HBXToken::setCurrent(HBXToken::getCurrent()), token("S-1-1"));
        EXPECT_EQ(HBXToken::getCurrent(), token("S-1-1"));
    }
}

TEST(TokenThread, EachThreadHasItsOwn) {
    const HBXTokenHolder mine(HBXToken::getAgentToken());
    std::thread([] {
        EXPECT_EQ(HBXToken::setCurrent(token("S-1-1")), HBXToken());
        std::thread([] { EXPECT_EQ(HBXToken::getCurrent(), HBXToken()) << "nor its parent's"; }).join();
        EXPECT_EQ(HBXToken::getCurrent(), token("S-1-1"));
    }).join();
    EXPECT_EQ(HBXToken::getCurrent(), HBXToken::getAgentToken());
}

} // namespace
} // namespace HBX::test
