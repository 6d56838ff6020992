#include <gtest/gtest.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/directory/HBXDirRealm.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

HBXDirRealm corporate() {
    HBXDirRealm realm;
    realm.name = "corporate";
    realm.server = "ldap.example";
    realm.port = 389;
    realm.baseDn = "DC=Corp";
    realm.principalsDn = "ou=users,dc=corp";
    realm.authName.name = "agent";
    realm.password = "secret";
    return realm;
}

TEST(DirRealm, IsValidWhenThePrincipalsLieBelowTheBase) {
    const std::tuple<const char*, int, const char*, const char*, bool> rows[] = {
        {"s", 389, "DC=Corp", "ou=users,dc=corp", true},
        {"s", 389, "DC=Corp", "dc=corp,dc=other", false},
        {"s", 389, "DC=Corp", "c=corp", false},
        {"s", 389, "dc=corp", "xdc=corp", true}, // an end of bytes, not of names
        {"s", -1, "", "anything", true},
        {"s", 0, "", "", false},
        {"", 389, "", "", false},
    };
    for (const auto& [server, port, base, principals, valid] : rows) {
        HBXDirRealm realm;
        realm.server = server;
        realm.port = port;
        realm.baseDn = base;
        realm.principalsDn = principals;
        EXPECT_EQ(realm.isValid(), valid) << base << ' ' << principals;
        const Cursor it = newCursor();
        EXPECT_EQ(it->putObject(realm, 0), valid ? 0 : -1);
        EXPECT_EQ(it->firstChild() == 0, valid) << "an invalid one writes nothing";
    }
}

TEST(DirRealm, TakesOverValidDirectoryRealmsOnly) {
    HBXDirRealm own = corporate();
    own.password.reset();
    HBXRealm plain;
    plain.type = HBXDirRealm::kType;
    HBXDirRealm other = own;
    other.server = "elsewhere";
    other.port = 0;
    EXPECT_EQ(own.set(plain), -1);
    EXPECT_EQ(getErrorMessage(), "Invalid realm type");
    EXPECT_EQ(own.set(other), -1);
    EXPECT_EQ(getErrorMessage(), "Invalid realm parameters");
    EXPECT_TRUE(own == corporate() && !own.password.isSet());

    other.description = "d";
    other.port = 1;
    for (const char* password : {"first", "second"}) {
        other.password = password;
        EXPECT_EQ(own.set(other), 0);
        EXPECT_EQ(own, other);
        EXPECT_EQ(own.password.get(), "first") << "an own one stays";
    }
}

TEST(DirRealm, TravelsWithoutItsPassword) {
    HBXDirRealm back;
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(corporate(), 0), 0);
    EXPECT_EQ(takeText(it->toText()).find("secret"), std::string::npos);
    ASSERT_EQ(it->getObject(back, 0), 0);
    EXPECT_EQ(back, corporate());
}

TEST(DirRealm, OfAPeerMustBeWholeAndValid) {
    const std::pair<int, const char*> rows[] = {
        {3001, "2"},            // another type
        {1704, "ldap"},         // a port that is none
        {1959, "dc=elsewhere"}, // principals elsewhere
        {1630, "x"},            // a login without a realm
        {1630, nullptr},        // no login
    };
    HBXDirRealm realm = corporate();
    for (const auto& [id, value] : rows) {
        const Cursor it = newCursor();
        ASSERT_EQ(it->putObject(corporate(), 0), 0);
        it->deleteChild(id);
        EXPECT_TRUE(value == nullptr || it->putValue(value, id) == 0);
        EXPECT_EQ(it->getObject(realm, 0), value == nullptr ? 0 : -1) << id;
    }
    EXPECT_EQ(realm.authName, HBXAuthName()) << "not what was there before";
}

} // namespace
} // namespace HBX::test
