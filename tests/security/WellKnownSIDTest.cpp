#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <map>

#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>
#include <HBXFunctionalityCore/security/HBXSIDText.h>

#include "security/ScratchIdentity.h"
#include "support/TextMessage.h"
#include "support/Threads.h"

namespace HBX::test {
namespace {

const HBXEID kLocal(HBXGUID(0x0123456789abcdef, 0x0011223344556677));
const HBXEID kMaster(HBXGUID(1, 2));

std::string principal(const char* authority, const HBXEID& eid, const char* localId) {
    const std::string numbers = eid == kLocal    ? "-1732584193-4023233417-857870592-2003195204-"
                                : eid == kMaster ? "-0-16777216-0-33554432-"
                                                 : "-0-0-0-0-";
    return std::string("S-1-") + authority + numbers + localId;
}

TEST(LocalSID, IsMadeOfEnvironmentTypeAndNumber) {
    const char* authorities[] = {nullptr, "8193", "8192", "8194", "8195"};
    for (unsigned number = HBXLocalSID::USER; number <= HBXLocalSID::ENVIRONMENT; ++number) {
        const auto type = static_cast<HBXLocalSID::PrincipalType>(number);
        for (const HBXEID& eid : {kLocal, HBXEID()}) {
            const HBXLocalSID made(4294967294U, type, eid);
            EXPECT_EQ(made.getSID().toString(), principal(authorities[number], eid, "4294967294"));
            const HBXLocalSID back(made.getSID());
            EXPECT_EQ(back.getPrincipalType(), type);
            EXPECT_EQ(back.getEID(), eid);
            EXPECT_EQ(back.getLocalID(), 4294967294U);
        }
    }
    for (const unsigned type : {0U, 5U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(HBXLocalSID(1, static_cast<HBXLocalSID::PrincipalType>(type), kLocal).getSID().isEmpty());
    }
}

TEST(LocalSID, OthersHaveNoParts) {
    for (const char* text : {"", "S-1-5-1-2-3-4-5", "S-1-8193-1-2-3-4", "S-1-8193-1-2-3-4-5-6",
                             "S-1-8191-1-2-3-4-5", "S-1-8196-1-2-3-4-5", "S-1-0x000100002001-1-2-3-4-5"}) {
        HBXSID sid;
        sid.fromString(text);
        const HBXLocalSID local(sid);
        EXPECT_EQ(local.getPrincipalType(), HBXLocalSID::NONE) << text;
        EXPECT_EQ(local.getEID(), HBXEID()) << text;
        EXPECT_EQ(local.getLocalID(), 4294967295U) << text;
    }
}

TEST(WellKnownSID, EveryKindHasItsIdentifier) {
    const std::string group = principal("8192", kLocal, "0");
    const std::string local = principal("8195", kLocal, "0");
    const std::string master = principal("8195", kMaster, "0");
    const std::pair<HBXEID, HBXEID> identities[] = {{{}, {}}, {kLocal, {}}, {kLocal, kMaster}, {{}, kMaster}};
    std::map<unsigned, std::vector<std::string>> kinds = {// their texts by identity
                                                          {2, {"", group, group, ""}},
                                                          {4, {"", local, local, ""}},
                                                          {7, {"", local, master, master}}};
    const std::pair<unsigned, std::string> always[] = {{0, "S-1-1000-1"},    {1, "S-1-1000-2"},
                                                       {3, "S-1-5-7"},       {5, "S-1-1000-0"},
                                                       {6, "S-1-1000-4"},    {8, "S-1-0-0"},
                                                       {9, "S-1-1000-1001"}, {10, "S-1-1000-1002"},
                                                       {11, "S-1-1000-0"},   {0xFFFFFFFF, "S-1-1000-0"}};
    for (const auto& [kind, text] : always) {
        kinds[kind] = {text, text, text, text};
    }
    for (const auto& [number, texts] : kinds) {
        const auto kind = static_cast<HBXSID::WellKnownSIDs>(number);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const ScratchIdentity identity(identities[i].first, identities[i].second);
            const HBXSID sid = HBXSID::createWellKnownSID(kind);
            EXPECT_EQ(sid.toString(), texts[i]) << number;
            EXPECT_EQ(sid.isWellKnownSID(kind), kind != HBXSID::ANY_ENVIRONMENT) << number;
            EXPECT_FALSE(HBXSID("S-1-5-18").isWellKnownSID(kind)) << number;
        }
        auto found = HBXSID::SELF;
        EXPECT_EQ(findWellKnownSID(wellKnownSIDName(kind), found), number <= HBXSID::SELF);
        EXPECT_EQ(found, std::min(kind, HBXSID::SELF));
    }
    const ScratchIdentity identity({}, kMaster);
    EXPECT_TRUE(HBXLocalSID(7, HBXLocalSID::USER).getSID().isEmpty()) << "the local environment is not known";
}

TEST(WellKnownSID, AnyEnvironmentIsEachEnvironmentItself) {
    const std::pair<std::string, bool> rows[] = {
        {principal("8195", kLocal, "0"), true},
        {principal("8195", HBXEID(), "0"), true},
        {principal("8195", kLocal, "1"), false},
        {principal("8192", kLocal, "0"), false},
    };
    for (const auto& [text, isOne] : rows) {
        EXPECT_EQ(HBXSID(text).isWellKnownSID(HBXSID::ANY_ENVIRONMENT), isOne) << text;
        EXPECT_EQ(containsWellKnownSID({HBXSID("S-1-5-7"), HBXSID(text)}, HBXSID::ANY_ENVIRONMENT), isOne);
    }
    EXPECT_FALSE(HBXSID().isWellKnownSID(HBXSID::ANY_ENVIRONMENT));
}

TEST(WellKnownSID, IdentityIsTheLocalConfigurationsWhenNobodyProvidesOne) {
    const HBXIdentityProvider previous = setIdentityProvider({});
    HBXConfiguration configuration(textMessage("<data><agent><configuration/></agent></data>").get());
    HBXConfiguration::setLocalConfig(configuration.getMessage());
    const auto master = [] { return HBXSID::createWellKnownSID(HBXSID::MASTER_ENVIRONMENT).toString(); };
    EXPECT_EQ(master(), "");
    configuration.setEID(kLocal);
    EXPECT_EQ(master(), principal("8195", kLocal, "0"));
    configuration.setMaster(kMaster);
    EXPECT_EQ(master(), principal("8195", kMaster, "0"));
    HBXConfiguration::setLocalConfig(nullptr);
    setIdentityProvider(previous);
}

TEST(WellKnownSIDThread, FollowsTheIdentityWhileItChanges) {
    const ScratchIdentity before(kLocal, {});
    const HBXSID first = HBXSID::createWellKnownSID(HBXSID::LOCAL_ENVIRONMENT);
    const HBXSID second = HBXLocalSID(0, HBXLocalSID::ENVIRONMENT, kMaster).getSID();
    std::atomic<int> strangers{0};
    const auto read = [&] {
        for (int n = 0; n < 500; ++n) {
            const HBXSID sid = HBXSID::createWellKnownSID(HBXSID::LOCAL_ENVIRONMENT);
            strangers += sid == first || sid == second ? 0 : 1;
            strangers += HBXSID("S-1-5-7").isWellKnownSID(HBXSID::ANONYMOUS) ? 0 : 1;
        }
    };
    const auto change = [] {
        for (int n = 0; n < 500; ++n) {
            const ScratchIdentity meanwhile(kMaster, kLocal);
        }
    };
    runThreads({read, read, read, change});
    EXPECT_EQ(strangers, 0);
}

} // namespace
} // namespace HBX::test
