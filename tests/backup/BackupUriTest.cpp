#include <gmock/gmock.h>

#include <cstdio>
#include <random>

#include <HBXCommon/HBXLog.h>
#include <HBXFunctionalityCore/backup/HBXBackupMBase.h>
#include <HBXFunctionalityCore/backup/HBXBackupURI.h>
#include <HBXMessage/HBXRecordSample.h>

#include "support/MessageBytes.h"

namespace HBX::test {
namespace {

using testing::ElementsAre;

/// The lines that are logged while it lives: "level function text".
class CaughtLog {
public:
    explicit CaughtLog(int level)
        : level_(debug_level.exchange(level)), sink_(setLogSink([this](const HBXLogLine& line) {
              lines.push_back(std::to_string(line.level) + ' ' + line.place.function + ' ' +
                              std::string(line.text));
          })) {}
    ~CaughtLog() {
        setLogSink(sink_);
        debug_level = level_;
    }
    CaughtLog(const CaughtLog&) = delete;
    CaughtLog& operator=(const CaughtLog&) = delete;

    std::vector<std::string> lines;

private:
    int level_;
    HBXLogSink sink_;
};

std::string textOf(const std::string& id, const std::string& path) {
    HBXBackupURI reference;
    reference.id(id);
    reference.path(path);
    HBXURI uri;
    EXPECT_FALSE(reference.uri(uri));
    EXPECT_EQ(uri.type(), "backup");
    return uri.path();
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
                {"a b://x", "a b", "x", false},
                {"backup:/a/b", "", "", false},
                {"", "", "", false},
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
        {"backup://a/b", "a/b", ""},
        {"backup://a/b/", "a/b", ""},
        {"backup://a/b\\c/d", "a/b", "c/d"},
        {"backup://a\\b/c", "a\\b/c", ""},
        {"backup://x/", "x/", ""},
        {"backup:///", "/", ""},
        {"backup:////", "/", ""},
        {"backup://a/b&c/d", "a/b&c", "d"},
        {"backup://x", "", ""},
        {"backup://", "", ""},
        {"file://a/b/c", "", ""},
        {"Backup://a/b", "", ""},
        {"a/b/c", "", ""},
        {"backup://a/b://c/d", "a/b:", "/c/d"},
    };
    for (const auto& row : rows) {
        const HBXBackupURI reference{row.text};
        EXPECT_EQ(reference.id(), row.id) << row.text;
        EXPECT_EQ(reference.path(), row.path) << row.text;
        EXPECT_EQ(reference.isValid(), *row.id != '\0') << row.text;
        EXPECT_EQ(reference.storage(), nullptr);
    }
    EXPECT_EQ(textOf("a/b", "c"), "a/b/c");
    EXPECT_EQ(textOf("a/b", ""), "a/b/");
    EXPECT_EQ(textOf("x", "p/q"), "x/p/q");
    EXPECT_EQ(textOf("x", ""), "x/");
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
    HBXBackupURI reference;
    reference.id("a/b");
    reference.storage(sampleStorage());
    HBXURI uri;
    ASSERT_FALSE(reference.uri(uri));
    const std::string digits = uri.path().substr(0, uri.path().find('&'));
    const std::string noMessage = "1 HBX::decode decode binary";
    const std::string noLocation = "1 HBX::decode parse object";
    const struct {
        std::string path;
        std::vector<std::string> lines;
    } rows[] = {
        {"&a/b", {noMessage}},
        {"a&b/c", {noMessage}},
        {digits.substr(0, 20) + "zz" + digits.substr(22) + "&a/b", {noMessage}},
        {" " + digits + "&a/b", {noMessage}},
        {"0x" + digits + "&a/b", {noMessage}},
        {hexOf(messageBytes(emptyNode(0))) + "&a/b", {noLocation}},
        {digits + "&a", {}},
    };
    for (const auto& row : rows) {
        const CaughtLog log(2);
        const HBXBackupURI back("backup://" + row.path);
        EXPECT_FALSE(back.isValid()) << row.path;
        EXPECT_EQ(back.storage(), nullptr);
        EXPECT_EQ(log.lines, row.lines) << row.path;
    }
    for (std::size_t length = 0; length + 1 < digits.size(); ++length) {
        const CaughtLog log(2);
        const HBXBackupURI back("backup://" + digits.substr(0, length) + "&a/b");
        EXPECT_FALSE(back.isValid()) << length;
        EXPECT_THAT(log.lines, ElementsAre(noMessage)) << length;
    }
}

TEST(BackupUri, ReadsPairsOfDigitsUpToTheFirstThatIsNone) {
    HBXBackupURI reference;
    reference.id("a/b");
    reference.storage(sampleStorage());
    HBXURI uri;
    ASSERT_FALSE(reference.uri(uri));
    const std::string digits = uri.path().substr(0, uri.path().find('&'));
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
    const CaughtLog log(4);
    const struct {
        int type;
        const char* name;
    } rows[] = {{0, "full"},    {1, "incremental"}, {2, "differential"},   {-1, "unknown"},
                {3, "unknown"}, {7, "unknown"},     {INT32_MIN, "unknown"}};
    for (const auto& row : rows) {
        EXPECT_STREQ(HBXBackupMBase::getBackupTypeString(row.type), row.name);
    }
    EXPECT_EQ(log.lines.size(), std::size(rows));
    EXPECT_EQ(log.lines[0], "4 HBX::HBXBackupMBase::getBackupTypeString "
                            "Calling [HBX::HBXBackupMBase::getBackupTypeString]");
}

} // namespace
} // namespace HBX::test
