#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include <HBXCommon/HBXLog.h>
#include <HBXFunctionalityCore/backup/HBXBackupMBase.h>
#include <HBXFunctionalityCore/backup/HBXBackupURI.h>
#include <HBXMessage/HBXRecordSample.h>

#include "support/MessageBytes.h"

namespace HBX::test {
namespace {

/// What is logged while an action runs: "level function text" in lines.
template <class Action>
std::string logOf(const Action& action) {
    std::string lines;
    const HBXLogSink sink = setLogSink([&](const HBXLogLine& line) {
        lines += std::to_string(line.level) + ' ' + line.place.function + ' ' + std::string(line.text) + '\n';
    });
    action();
    setLogSink(sink);
    return lines;
}

HBXDSLocation sampleStorage() {
    HBXDSLocation storage;
    storage.id = HBXGUID(1, 2);
    storage.path = "/srv/backups & more";
    storage.server = "node-02.example";
    return storage;
}

TEST(Uri, IsSplitAtTheFirstMark) {
    const struct {
        const char* text;
        const char* type;
        const char* path;
        bool isValid;
    } rows[] = {{"backup://a/b", "backup", "a/b", true},
                {"a+b-c.9://x://y", "a+b-c.9", "x://y", true},
                {"://x", "", "x", false},
                {"backup:/a/b", "", "", false},
                {"b\xC3\xA4://x", "b\xC3\xA4", "x", false}};
    for (const auto& row : rows) {
        HBXURI uri("other://path");
        uri.uri(row.text);
        EXPECT_EQ(uri.type(), row.type) << row.text;
        EXPECT_EQ(uri.path(), row.path) << row.text;
        EXPECT_EQ(uri.isValid(), row.isValid) << row.text;
        EXPECT_TRUE(!row.isValid || uri.uri() == row.text);
    }
}

TEST(BackupUri, AnIdentifierRunsToTheSecondSeparator) {
    const struct {
        const char* text;
        const char* id;
        const char* path;
    } rows[] = {
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
    for (const auto& row : rows) {
        const HBXBackupURI reference{row.text};
        EXPECT_EQ(reference.id(), row.id) << row.text;
        EXPECT_EQ(reference.path(), row.path) << row.text;
        EXPECT_EQ(reference.isValid(), *row.id != '\0') << row.text;
        EXPECT_EQ(reference.storage(), nullptr);
    }
}

TEST(BackupUri, CarriesItsStorageInHexadecimal) {
    std::mt19937_64 random(8);
    for (int round = 0; round < 200; ++round) {
        HBXBackupURI reference;
        reference.id("a/b");
        reference.path("c&d");
        reference.storage(round == 0 ? sampleStorage() : makeSample<HBXDSLocation>(random));
        HBXURI uri;
        ASSERT_FALSE(reference.uri(uri));
        const std::string digits = uri.path().substr(0, uri.path().find('&'));
        EXPECT_EQ(digits.find_first_not_of("0123456789abcdef"), std::string::npos);
        EXPECT_EQ(digits.size() % 2, 0U);

        std::string text = uri.uri();
        for (int form = 0; form < 2; ++form) {
            const HBXBackupURI back(text);
            EXPECT_EQ(back.id(), "a/b");
            EXPECT_EQ(back.path(), "c&d");
            ASSERT_NE(back.storage(), nullptr);
            EXPECT_EQ(*back.storage(), *reference.storage());
            for (std::size_t i = 9; text[i] != '&'; ++i) { // the second time in capitals
                text[i] = static_cast<char>(std::toupper(text[i]));
            }
        }
    }
}

TEST(BackupUri, AnInvalidReferenceLeavesTheTargetAlone) {
    HBXURI uri("file://x");
    HBXBackupURI reference;
    reference.path("c");
    reference.storage(sampleStorage());
    EXPECT_TRUE(reference.uri(uri));
    EXPECT_EQ(uri.uri(), "file://x");
}

/// The sample storage as a reference writes it.
std::string sampleDigits() {
    HBXBackupURI reference;
    reference.id("a/b");
    reference.storage(sampleStorage());
    HBXURI uri;
    EXPECT_FALSE(reference.uri(uri));
    return uri.path().substr(0, uri.path().find('&'));
}

std::string hexOf(const std::string& bytes) {
    std::string digits;
    for (const char c : bytes) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned char>(c));
        digits += pair;
    }
    return digits;
}

TEST(BackupUri, DamagedStorageLeavesItEmptyWithALine) {
    const std::string digits = sampleDigits();
    const std::string noMessage = "1 HBX::decode decode binary\n";
    const struct {
        std::string path, log;
    } rows[] = {
        {"&a/b", noMessage},
        {digits.substr(0, 20) + "zz" + digits.substr(22) + "&a/b", noMessage},
        {"0x" + digits + "&a/b", noMessage},
        {digits.substr(0, digits.size() / 2) + "&a/b", noMessage},
        {hexOf(messageBytes(emptyNode(0))) + "&a/b", "1 HBX::decode parse object\n"},
        {digits + "&a", ""},
    };
    for (const auto& row : rows) {
        HBXBackupURI back;
        EXPECT_EQ(logOf([&] { back = HBXBackupURI("backup://" + row.path); }), row.log) << row.path;
        EXPECT_FALSE(back.isValid()) << row.path;
        EXPECT_EQ(back.storage(), nullptr);
    }
}

TEST(BackupUri, ReadsPairsOfDigitsUpToTheFirstThatIsNone) {
    const std::string digits = sampleDigits();
    ASSERT_EQ(digits.substr(digits.size() - 2), "65") << "the end of the server's name";
    const struct {
        std::string digits;
        const char* server;
    } rows[] = {
        {digits + "zz00", "node-02.example"},
        {digits.substr(0, digits.size() - 1), "node-02.exampl\x06"}, // one digit is a byte too
        {digits.substr(0, digits.size() - 1) + "g", "node-02.exampl\x06"},
    };
    for (const auto& row : rows) {
        const HBXBackupURI back("backup://" + row.digits + "&a/b");
        ASSERT_NE(back.storage(), nullptr) << row.digits;
        EXPECT_EQ(back.storage()->server.get(), row.server);
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
