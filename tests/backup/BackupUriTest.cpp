#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include <HBXFunctionalityCore/backup/HBXBackupMBase.h>
#include <HBXFunctionalityCore/backup/HBXBackupURI.h>
#include <HBXMessage/HBXRecordSample.h>

#include "support/CapturedLog.h"

namespace HBX::test {
namespace {

HBXDSLocation sampleStorage() {
    HBXDSLocation storage;
    storage.id = HBXGUID(1, 2);
    storage.path = "/srv/backups & more";
    storage.server = "node-02.example";
    return storage;
}

TEST(Uri, IsSplitAtTheFirstMark) {
    const std::tuple<std::string, std::string, std::string, bool> rows[] = {
        {"backup://a/b", "backup", "a/b", true},
        {"a+b-c.9://x://y", "a+b-c.9", "x://y", true},
        {"://x", "", "x", false},
        {"backup:/a/b", "", "", false},
        {"b\xC3\xA4://x", "b\xC3\xA4", "x", false}};
    for (const auto& [text, type, path, isValid] : rows) {
        HBXURI uri("other://path");
        uri.uri(text);
        EXPECT_EQ(uri.type(), type) << text;
        EXPECT_EQ(uri.path(), path) << text;
        EXPECT_EQ(uri.isValid(), isValid) << text;
        EXPECT_TRUE(!isValid || uri.uri() == text);
    }
}

TEST(BackupUri, AnIdentifierRunsToTheSecondSeparator) {
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"backup://a/b/c", "a/b", "c"},
        {"backup://a/b/", "a/b", ""},
        {"backup://a/b\\c/d", "a/b", "c/d"},
        {"backup://a\\b/c", "a\\b/c", ""},
        {"backup://x/", "x/", ""},
        {"backup:///", "/", ""},
        {"backup://a/b&c/d", "a/b&c", "d"},
        {"backup://x", "", ""},
        {"file://a/b/c", "", ""},
        {"Backup://a/b", "", ""},
        {"backup://a/b://c/d", "a/b:", "/c/d"},
    };
    for (const auto& [text, id, path] : rows) {
        const HBXBackupURI reference(text);
        EXPECT_EQ(reference.id(), id) << text;
        EXPECT_EQ(reference.path(), path) << text;
        EXPECT_EQ(reference.isValid(), !id.empty()) << text;
        EXPECT_EQ(reference.storage(), nullptr);
    }
}

/// A reference to "c&d" of "a/b" in a storage.
HBXURI referenceIn(const HBXDSLocation& storage) {
    HBXBackupURI reference;
    reference.id("a/b");
    reference.path("c&d");
    reference.storage(storage);
    HBXURI uri;
    EXPECT_FALSE(reference.uri(uri));
    return uri;
}

/// The storage in a path.
std::string digitsOf(const HBXURI& uri) { return uri.path().substr(0, uri.path().find('&')); }

TEST(BackupUri, CarriesItsStorageInHexadecimal) {
    std::mt19937_64 random(8);
    for (int round = 0; round < 200; ++round) {
        const auto storage = round == 0 ? sampleStorage() : makeSample<HBXDSLocation>(random);
        const HBXURI uri = referenceIn(storage);
        const std::string digits = digitsOf(uri);
        EXPECT_EQ(uri.uri(), "backup://" + digits + "&a/b/c&d");
        EXPECT_EQ(digits.find_first_not_of("0123456789abcdef"), std::string::npos);
        EXPECT_EQ(digits.size() % 2, 0U);
        std::string capitals = digits;
        std::transform(digits.begin(), digits.end(), capitals.begin(), ::toupper);
        for (const std::string& form : {digits, capitals}) {
            const HBXBackupURI back("backup://" + form + "&a/b/c&d");
            EXPECT_EQ(back.id(), "a/b");
            EXPECT_EQ(back.path(), "c&d");
            ASSERT_NE(back.storage(), nullptr);
            EXPECT_EQ(*back.storage(), storage);
        }
    }
    HBXURI uri("file://x");
    HBXBackupURI nameless;
    nameless.path("c");
    nameless.storage(sampleStorage());
    EXPECT_TRUE(nameless.uri(uri));
    EXPECT_EQ(uri.uri(), "file://x") << "an invalid reference leaves the target alone";
}

TEST(BackupUri, DamagedStorageLeavesItEmptyWithALine) {
    const std::string digits = digitsOf(referenceIn(sampleStorage()));
    ASSERT_EQ(digits.substr(digits.size() - 2), "65") << "the end of the server's name";
    const std::string allButOne = digits.substr(0, digits.size() - 1);
    const std::string noMessage = "1 decode binary\n";
    struct Row {
        std::string path, log;
        std::string server = ""; ///< "": it stays empty
    };
    std::vector<Row> rows = {
        {digits.substr(0, 20) + "zz" + digits.substr(22) + "&a/b", noMessage},
        {"0x" + digits + "&a/b", noMessage},
        {"4842584d0100000003000000000002&a/b", "1 parse object\n"}, // a message without a location
        {digits + "&a", ""},
        {digits + "zz00&a/b", "", "node-02.example"},   // up to the first that is no digit
        {allButOne + "&a/b", "", "node-02.exampl\x06"}, // one digit is a byte too
        {allButOne + "g&a/b", "", "node-02.exampl\x06"},
    };
    for (std::size_t length = 0; length + 1 < digits.size(); ++length) {
        rows.push_back({digits.substr(0, length) + "&a/b", noMessage});
    }
    CapturedLog log;
    for (const Row& row : rows) {
        const HBXBackupURI back("backup://" + row.path);
        EXPECT_EQ(log.take(), row.log) << row.path;
        EXPECT_EQ(back.isValid(), !row.server.empty()) << row.path;
        EXPECT_EQ(back.storage() == nullptr ? "" : back.storage()->server.get(), row.server) << row.path;
    }
}

TEST(BackupTypes, HaveNames) {
    const char* const names[] = {"unknown", "full", "incremental", "differential", "unknown"};
    for (int type = -1; type <= 3; ++type) {
        EXPECT_STREQ(HBXBackupMBase::getBackupTypeString(type), names[type + 1]);
    }
}

} // namespace
} // namespace HBX::test
