#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

using Core = boost::shared_ptr<HBXEnvCoreBasic>;

std::string contentOf(const HBXEnvCoreBasic& record) {
    return {reinterpret_cast<const char*>(&record), record.length()};
}

Message messageWith(const std::string& name) {
    Message message = newMessage();
    rootOf(message)->putValue(name, 1026);
    return message;
}

/// A record with both messages and no field at its default.
Core fullRecord() {
    const Core base = HBXEnvCoreBasic::createInstance(rootOf(messageWith("config")).get(), ENV_CONFIG);
    Core record =
        HBXEnvCoreBasic::createInstance(rootOf(messageWith("virtual")).get(), *base, VIRTUAL_CONFIG);
    record->item.references = 3;
    record->eid = HBXEID(HBXGUID(1, 2));
    record->parentEid = HBXEID(HBXGUID(3, 4));
    record->status = {6, 9};
    record->type = "exactly16letters";
    for (int reason = 0; reason < HBXAlertData::kReasons; ++reason) {
        record->alertTypes[reason] = static_cast<HBXAlertData::AlertType>(reason - 1);
    }
    return record;
}

std::string nameIn(HBXMessage* parsed) {
    const Message message = adoptMessage(parsed);
    std::string name;
    return message && rootOf(message)->getValue(name, 1026) == 0 ? name : "none";
}

TEST(EnvStatus, AnswersPredicatesByState) {
    const struct {
        HBXEnvStatus status;
        std::string answers; ///< absent existed down mounted suspended running repairing
    } rows[] = {
        {{1, 0}, "1000000"}, {{1, 5}, "0000000"}, {{0, 0}, "0000000"},  {{2, 0}, "0000000"},
        {{3, 1}, "0110000"}, {{4, 0}, "0101000"}, {{5, 0}, "0101100"},  {{6, 0}, "0101010"},
        {{7, 0}, "0101001"}, {{8, 0}, "0101000"}, {{-1, 0}, "0000000"},
    };
    for (const auto& [s, expected] : rows) {
        std::string answers;
        for (const bool answer : {s.isAbsent(), s.isExisted(), s.isDown(), s.isMounted(), s.isSuspended(),
                                  s.isRunning(), s.isRepairing()}) {
            answers += answer ? '1' : '0';
        }
        EXPECT_EQ(answers, expected) << s.state << ',' << s.transition;
        EXPECT_EQ(s.empty(), s.isAbsent());
    }
    EXPECT_LT(HBXEnvStatus(-1, 5), HBXEnvStatus(1, -5));
    EXPECT_LT(HBXEnvStatus(1, -5), HBXEnvStatus(1, 0));
}

TEST(EnvStatus, WritesATransitionOnlyWhenThereIsOne) {
    const Cursor it = newCursor();
    it->putObject(HBXEnvStatus(6, 0), 1192);
    it->seek(1192);
    EXPECT_EQ(it->seekPresence(1588), -1);
    it->seekUp();
    HBXEnvStatus status(3, 7);
    EXPECT_EQ(it->getObject(status, 1192), 0);
    EXPECT_EQ(status, HBXEnvStatus(6, 7)) << "what is absent stays";
    EXPECT_EQ(it->getObject(status, 0), -1) << "no state";
}

TEST(LimitedLengthString, CutsAndPads) {
    const struct {
        std::string text;
        std::string kept;
    } rows[] = {{"", ""}, {"abc", "abc"}, {"abcd", "abcd"}, {"abcde", "abcd"}, {{"a\0b", 3}, "a"}};
    for (const auto& row : rows) {
        const limited_length_string<4, char> value(row.text);
        EXPECT_EQ(value.str(), row.kept);
        EXPECT_EQ(std::memcmp(&value, (row.kept + std::string(4, '\0')).data(), 4), 0);
    }
    const limited_length_string<4, char> a("a\xff");
    EXPECT_LT((limited_length_string<4, char>("az")), a) << "as unsigned bytes";
    static_assert(std::is_trivially_copyable_v<limited_length_string<16, char>> &&
                  sizeof(limited_length_string<16, char>) == 16);
}

TEST(CoreRecord, NewOnesAreEmpty) {
    const Core record = HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG);
    std::string expected(112, '\0');
    expected[4] = 1;  // private
    expected[40] = 1; // the state
    EXPECT_EQ(contentOf(*record), expected);
    EXPECT_EQ(record->getConfig(), nullptr);
    EXPECT_EQ(record->getVirtualConfig(), nullptr);
    const void* start = nullptr;
    std::size_t size = 0;
    EXPECT_EQ(record->getBuffer(&start, size), 0);
    EXPECT_EQ(start, record.get());
    EXPECT_EQ(size, 112U);
    EXPECT_EQ(record->getBuffer(nullptr, size), 0);
}

TEST(CoreRecord, HoldsItsFieldsWhereTheFormatSays) {
    const Core record = fullRecord();
    const std::string bytes = contentOf(*record);
    const std::string config = bytesOf(messageWith("config"));
    const std::string virtualConfig = bytesOf(messageWith("virtual"));
    EXPECT_EQ(bytes.substr(8, 40), std::string({0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0,
                                                0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 4, 6, 0, 0, 0, 9, 0, 0, 0}));
    EXPECT_EQ(bytes.substr(48, 16), "exactly16letters");
    EXPECT_EQ(bytes.substr(64, 24),
              std::string({-1, -1, -1, -1, 0, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytes.substr(88, 16),
              std::string({static_cast<char>(config.size()), 0, 0, 0, 0, 0, 0, 0,
                           static_cast<char>(virtualConfig.size()), 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(bytes.substr(104), config + virtualConfig + std::string(8, '\0'));
}

TEST(CoreRecord, CopiesAllButTheCachesHead) {
    const Core record = fullRecord();
    const Core copy = HBXEnvCoreBasic::createInstance(*record);
    EXPECT_EQ(copy->item.references, 0);
    EXPECT_EQ(contentOf(*copy).substr(8), contentOf(*record).substr(8));
}

TEST(CoreRecord, MergesTheConfigurationOfOneWithTheVirtualOneOfAnother) {
    const Core base = fullRecord();
    const Core other = HBXEnvCoreBasic::createInstance(*rootOf(messageWith("new")), VIRTUAL_CONFIG);
    const Core merged = HBXEnvCoreBasic::createInstance(*base, *other);
    EXPECT_EQ(nameIn(merged->getConfig()), "config");
    EXPECT_EQ(nameIn(merged->getVirtualConfig()), "new");
    EXPECT_EQ(merged->eid, base->eid);
    EXPECT_EQ(merged->type.str(), "exactly16letters");
    other->type = "other";
    EXPECT_EQ(HBXEnvCoreBasic::createInstance(*base, *other)->type.str(), "other");
}

TEST(CoreRecord, ReplacesOneMessageAndKeepsTheRest) {
    const Core base = fullRecord();
    for (const EnvConfigType kind : {ENV_CONFIG, VIRTUAL_CONFIG}) {
        for (const bool taken : {false, true}) {
            const Cursor it = rootOf(messageWith("a name that is longer than both"));
            const Core made = HBXEnvCoreBasic::createInstance(taken ? nullptr : it.get(), *base, kind);
            const std::string name = taken ? "none" : "a name that is longer than both";
            EXPECT_EQ(nameIn(made->getConfig()), kind == ENV_CONFIG ? name : "config");
            EXPECT_EQ(nameIn(made->getVirtualConfig()), kind == VIRTUAL_CONFIG ? name : "virtual");
            EXPECT_EQ(contentOf(*made).substr(8, 80), contentOf(*base).substr(8, 80));
        }
    }
}

TEST(CoreRecord, IsEmptyWhenTheMessageCannotBeSerialised) {
    const Cursor it = newCursor();
    for (int depth = 0; depth < 300; ++depth) {
        it->newChild(1018);
    }
    it->seekRoot();
    const Core record = HBXEnvCoreBasic::createInstance(it.get(), *fullRecord(), ENV_CONFIG);
    EXPECT_EQ(contentOf(*record), contentOf(*HBXEnvCoreBasic::createInstance(nullptr, VIRTUAL_CONFIG)));
}

TEST(CoreRecord, TakesTheConfigurationOutAsFarAsItsOwnLength) {
    const struct {
        std::size_t config;
        std::size_t virtualConfig;
    } rows[] = {{10, 30}, {30, 10}, {20, 20}, {0, 5}, {5, 0}};
    for (const auto& [config, virtualConfig] : rows) {
        // Sizes set by hand over the bytes of a record that is large enough.
        const Core record =
            HBXEnvCoreBasic::createInstance(*rootOf(messageWith(std::string(64, 'x'))), ENV_CONFIG);
        record->configSize = config;
        record->virtualConfigSize = virtualConfig;
        std::string content;
        for (std::size_t i = 0; i < config + virtualConfig + 8; ++i) {
            content += static_cast<char>('A' + i);
        }
        std::memcpy(reinterpret_cast<char*>(record.get()) + 104, content.data(), content.size());
        record->resetConfigData();
        std::string expected = content;
        expected.replace(0, std::min(config, virtualConfig + 8),
                         content.substr(config, std::min(config, virtualConfig + 8)));
        EXPECT_EQ(record->virtualConfigBytes(), expected.substr(0, virtualConfig));
        EXPECT_EQ(record->length(), 112 + virtualConfig);
        record->resetVirtualConfigData();
        EXPECT_EQ(record->length(), 112U);
    }
}

TEST(CoreRecord, LengthIsCheckedBeforeItIsBelieved) {
    constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();
    const struct {
        std::uint64_t config;
        std::uint64_t virtualConfig;
        std::size_t available;
        std::size_t length;
    } rows[] = {
        {0, 0, 112, 112},       {0, 0, 111, 0},     {0, 0, 0, 0},           {10, 20, 142, 142},
        {10, 20, 141, 0},       {10, 20, 500, 142}, {kHuge, 0, 500, 0},     {0, kHuge, 500, 0},
        {kHuge, kHuge, 500, 0}, {kHuge, 2, 500, 0}, {2, kHuge - 1, 500, 0}, {389, 0, 500, 0},
        {388, 0, 500, 500},
    };
    for (const auto& row : rows) {
        std::vector<char> bytes(500, 'x');
        std::memcpy(bytes.data() + 88, &row.config, 8);
        std::memcpy(bytes.data() + 96, &row.virtualConfig, 8);
        bytes.resize(std::max<std::size_t>(row.available, 1)); // so that a sanitizer sees a read beyond it
        bytes.shrink_to_fit();
        EXPECT_EQ(HBXEnvCoreBasic::checkedLength(bytes.data(), row.available), row.length)
            << row.config << ' ' << row.virtualConfig << ' ' << row.available;
    }
}

} // namespace
} // namespace HBX::test
