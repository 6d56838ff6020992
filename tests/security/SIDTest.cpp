#include <gtest/gtest.h>

#include <random>

#include <HBXFunctionalityCore/security/HBXSID.h>
#include <HBXMessage/HBXRecordTable.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

TEST(SID, TextsAreReadInTheseFormsOnly) {
    const std::string longest = "S-1-5-1-2-3-4-5-6-7-8-9-10-11-12-13-14-4294967295";
    const std::pair<std::string, std::string> rows[] = {
        {"s-1-5-7", "S-1-5-7"},
        {"S-1-5", "S-1-5"},
        {"S-1-005-007", "S-1-5-7"},
        {"S-1-0x5-7", "S-1-5-7"},
        {"S-1-0xFFffFFffFFff", "S-1-0xffffffffffff"},
        {"S-1-4294967295-0", "S-1-4294967295-0"},
        {"S-1-4294967296-0", "S-1-0x000100000000-0"},
        {longest, longest},
    };
    for (const auto& [text, shown] : rows) {
        HBXSID sid;
        EXPECT_EQ(sid.fromString(text), 0) << text;
        EXPECT_EQ(sid.toString(), shown);
        EXPECT_EQ(HBXSID(text), sid);
    }
    const auto expectRefusal = [](const std::string& text) {
        HBXSID sid("S-1-0-0");
        EXPECT_EQ(sid.fromString(text), -1) << text;
        EXPECT_EQ(sid.toString(), "S-1-0-0");
        EXPECT_EQ(HBXSID(text).toString(), "S-1-5-7");
    };
    expectRefusal(longest + "-1");
    expectRefusal(std::string("S-1-5-7\0", 8));
    for (const char* text : {"S-1-281474976710656", "S-1-0x1000000000000", "S-1-0x0000000000005", "S-1-0x",
                             "S-1-0X5", "S-1-5-4294967296", "S-1-5-0x7", "S-1-5--7", "S-1-5-+7", "S-1-5-7-",
                             "S-1-5- 7", " S-1-5-7", "S-1", "S-2-5-7", "S-01-5-7", ""}) {
        expectRefusal(text);
    }
    std::mt19937_64 random(1);
    for (int i = 0; i < 2000; ++i) {
        const HBXSID sid = HBXSID::sample(random());
        ASSERT_EQ(HBXSID(sid.toString()), sid) << sid.toString();
    }
}

TEST(SID, BinaryFormIsTakenWholeOrNotAtAll) {
    for (int head = 0; head < 0x300; ++head) {
        const int revision = head >> 8;
        const int count = head & 0xFF;
        for (std::size_t length = 1; length <= 80; ++length) {
            // In a buffer of its own size, so that a look past the end shows under the address sanitizer.
            std::vector<char> bytes(length);
            bytes[0] = static_cast<char>(revision);
            if (length > 1) {
                bytes[1] = static_cast<char>(count);
            }
            const bool isWhole = revision == 1 && count <= 15 && length == std::size_t(8 + 4 * count);
            HBXSID sid("S-1-5-7");
            ASSERT_EQ(sid.fromBinary(bytes.data(), length), isWhole ? 0 : -1) << head << ' ' << length;
            ASSERT_EQ(sid.toString() == "S-1-5-7", !isWhole);
        }
    }
    HBXSID sid;
    EXPECT_EQ(sid.fromBinary(HBXSID("S-1-5-32-544").toBinary().data(), 0), 0) << "as long as it says itself";
    EXPECT_EQ(sid.fromBinary(sid.toBinary().data(), 0), 0) << "its own bytes";
    EXPECT_EQ(sid.toString(), "S-1-5-32-544");
    EXPECT_EQ(sid.fromBinary(nullptr, 99), 0);
    EXPECT_TRUE(sid.isEmpty());
    EXPECT_EQ(sid.toString(), "");
}

TEST(SID, OrderIsThatOfTheTexts) {
    const HBXSID two("S-1-1000-2");
    const HBXSID longer("S-1-1000-1001");
    EXPECT_TRUE(HBXSID() < longer && longer < two && two < HBXSID("S-1-5-7") && !(two < two));
    EXPECT_TRUE(std::is_lt(compareRecords(&longer, &two, HBXSID::table))) << "as a member of others too";
}

TEST(SID, TravelsAsTheBytesOfItsElement) {
    const Cursor it = newCursor();
    EXPECT_EQ(it->putObject(HBXSID(), 3132), -1);
    HBXSID sid("S-1-0-0");
    EXPECT_EQ(it->getObject(sid, 0), -1) << "no value";
    for (const char* payload :
         {"", "AQEAAAAAAAU=", "AQEAAAAAAAUHAAAAAAAAAA==", "AgEAAAAAAAUHAAAA", "S-1-5-7"}) {
        const Cursor hostile = newCursor();
        hostile->putValue(payload, 3265);
        EXPECT_EQ(hostile->getObject(sid, 3265), -1) << payload;
        EXPECT_EQ(sid.toString(), "S-1-0-0") << payload;
    }
}

} // namespace
} // namespace HBX::test
