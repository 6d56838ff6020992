#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>

#include "EnvTestUtil.h"

namespace HBX::test {
namespace {

std::string contentOf(const HBXEnvCoreBasic& record) {
    return {reinterpret_cast<const char*>(&record), record.length()};
}

/// A record with both messages and no field at its default.
Core fullRecord() {
    Core record = coreOf("<name>config</name>", "<name>virtual</name>");
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
    // absent existed down mounted suspended running repairing
    const std::pair<HBXEnvStatus, std::string> rows[] = {
        {{1, 0}, "1000000"}, {{1, 5}, "0000000"},  {{2, 0}, "0000000"}, {{3, 1}, "0110000"},
        {{4, 0}, "0101000"}, {{5, 0}, "0101100"},  {{6, 0}, "0101010"}, {{7, 0}, "0101001"},
        {{8, 0}, "0101000"}, {{-1, 0}, "0000000"},
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
}

TEST(LimitedLengthString, CutsAndPads) {
    const std::pair<std::string, std::string> rows[] = {
        {"abc", "abc"}, {"abcd", "abcd"}, {"abcde", "abcd"}, {{"a\0b", 3}, "a"}};
    for (const auto& [text, kept] : rows) {
        const limited_length_string<4, char> value(text);
        EXPECT_EQ(value.str(), kept);
        EXPECT_EQ(std::memcmp(&value, (kept + std::string(4, '\0')).data(), 4), 0);
    }
    const limited_length_string<4, char> a("a\xff");
    EXPECT_LT((limited_length_string<4, char>("az")), a) << "as unsigned bytes";
}

TEST(CoreRecord, HoldsItsMessagesBehindItsFields) {
    std::string expected(112, '\0');
    expected[4] = 1;  // private
    expected[40] = 1; // the state
    EXPECT_EQ(contentOf(*HBXEnvCoreBasic::createInstance(nullptr, ENV_CONFIG)), expected);

    const Core record = fullRecord();
    const std::string bytes = contentOf(*record);
    const std::string config = bytesOf(textMessage("<name>config</name>"));
    const std::string virtualConfig = bytesOf(textMessage("<name>virtual</name>"));
    EXPECT_EQ(bytes.substr(104), config + virtualConfig + std::string(8, '\0'));
    const void* start = nullptr;
    std::size_t size = 0;
    EXPECT_TRUE(record->getBuffer(&start, size) == 0 && start == record.get() && size == bytes.size());
}

TEST(CoreRecord, IsMadeOfPartsOfOthers) {
    const Core base = fullRecord();
    const Core copy = HBXEnvCoreBasic::createInstance(*base);
    EXPECT_EQ(copy->item.references, 0) << "the head is the cache's";
    EXPECT_EQ(contentOf(*copy).substr(8), contentOf(*base).substr(8));

    const std::string longer = "a name that is longer than both";
    const Cursor it = rootOf(textMessage("<name>" + longer + "</name>"));
    const Core other = HBXEnvCoreBasic::createInstance(*it, VIRTUAL_CONFIG);
    const std::tuple<Core, std::string, std::string> rows[] = {
        {HBXEnvCoreBasic::createInstance(*base, *other), "config", longer},
        {HBXEnvCoreBasic::createInstance(it.get(), *base, ENV_CONFIG), longer, "virtual"},
        {HBXEnvCoreBasic::createInstance(it.get(), *base, VIRTUAL_CONFIG), "config", longer},
        {HBXEnvCoreBasic::createInstance(nullptr, *base, VIRTUAL_CONFIG), "config", "none"},
    };
    for (const auto& [made, config, virtualConfig] : rows) {
        EXPECT_EQ(nameIn(made->getConfig()), config);
        EXPECT_EQ(nameIn(made->getVirtualConfig()), virtualConfig);
        EXPECT_EQ(contentOf(*made).substr(8, 80), contentOf(*base).substr(8, 80));
    }
    other->type = "other";
    EXPECT_EQ(HBXEnvCoreBasic::createInstance(*base, *other)->type.str(), "other");
}

TEST(CoreRecord, TakesTheConfigurationOutAsFarAsItsOwnLength) {
    const std::tuple<std::size_t, std::size_t, std::string> rows[] = {
        {2, 4, "CDCD"}, {4, 2, "EF"}, {0, 3, "ABC"}, {3, 0, ""}};
    for (const auto& [config, virtualConfig, left] : rows) {
        // Sizes set by hand over the bytes of a record that is large enough.
        const Core record = coreOf("<name>" + std::string(64, 'x') + "</name>");
        std::memcpy(reinterpret_cast<char*>(record.get()) + 104, "ABCDEFGHIJKLMNOP", 16);
        record->configSize = config;
        record->virtualConfigSize = virtualConfig;
        record->resetConfigData();
        EXPECT_EQ(record->virtualConfigBytes(), left);
        EXPECT_EQ(record->length(), 112 + virtualConfig);
        record->resetVirtualConfigData();
        EXPECT_EQ(record->length(), 112U);
    }
}

TEST(CoreRecord, LengthIsCheckedBeforeItIsBelieved) {
    constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();
    const std::array<std::uint64_t, 4> rows[] = {
        {0, 0, 112, 112},   {0, 0, 111, 0},     {0, 0, 0, 0},           {10, 20, 141, 0}, {10, 20, 500, 142},
        {kHuge, 2, 500, 0}, {0, kHuge, 500, 0}, {2, kHuge - 1, 500, 0}, {389, 0, 500, 0}, {388, 0, 500, 500},
    };
    for (const auto& [config, virtualConfig, available, length] : rows) {
        std::vector<char> bytes(500, 'x');
        std::memcpy(bytes.data() + 88, &config, 8);
        std::memcpy(bytes.data() + 96, &virtualConfig, 8);
        bytes.resize(std::max<std::size_t>(available, 1)); // so that a sanitizer sees a read beyond it
        bytes.shrink_to_fit();
        EXPECT_EQ(HBXEnvCoreBasic::checkedLength(bytes.data(), available), length)
            << config << ' ' << virtualConfig << ' ' << available;
    }
}

} // namespace
} // namespace HBX::test
