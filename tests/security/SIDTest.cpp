#include <gtest/gtest.h>

#include <random>

#include <HBXFunctionalityCore/security/HBXSID.h>
#include <HBXMessage/HBXRecordTable.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

std::string repeated(std::string text, const char* piece, int times) {
    while (times-- > 0) {
        text += piece;
    }
    return text;
}

TEST(SID, TextsAreReadInTheseFormsOnly) {
    const struct {
        std::string text;
        std::string shown; ///< "": refused
    } rows[] = {
        {"S-1-5-7", "S-1-5-7"},
        {"s-1-5-7", "S-1-5-7"},
        {"S-1-5", "S-1-5"},
        {"S-1-005-007", "S-1-5-7"},
        {"S-1-0x5-7", "S-1-5-7"},
        {"S-1-0xFFffFFffFFff", "S-1-0xffffffffffff"},
        {"S-1-4294967295-0", "S-1-4294967295-0"},
        {"S-1-4294967296-0", "S-1-0x000100000000-0"},
        {repeated("S-1-5", "-4294967295", 15), repeated("S-1-5", "-4294967295", 15)},
        {repeated("S-1-5", "-1", 16), ""},
        {"S-1-281474976710656", ""},
        {"S-1-0x1000000000000", ""},
        {"S-1-0x0000000000005", ""},
        {"S-1-0x", ""},
        {"S-1-0X5", ""},
        {"S-1-5-4294967296", ""},
        {"S-1-5-99999999999999999999999999", ""},
        {"S-1-5-0x7", ""},
        {"S-1-5--7", ""},
        {"S-1-5-+7", ""},
        {"S-1-5-7-", ""},
        {"S-1-5- 7", ""},
        {"S-1-5-7 ", ""},
        {" S-1-5-7", ""},
        {std::string("S-1-5-7\0", 8), ""},
        {"S-1", ""},
        {"S-2-5-7", ""},
        {"S-01-5-7", ""},
        {"", ""},
    };
    for (const auto& row : rows) {
        HBXSID sid("S-1-0-0");
        EXPECT_EQ(sid.fromString(row.text), row.shown.empty() ? -1 : 0) << row.text;
        EXPECT_EQ(sid.toString(), row.shown.empty() ? "S-1-0-0" : row.shown) << row.text;
        EXPECT_EQ(HBXSID(row.text).toString(), row.shown.empty() ? "S-1-5-7" : row.shown) << row.text;
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
            const bool isWhole =
                revision == 1 && count <= 15 && length == 8U + 4U * static_cast<unsigned>(count);
            HBXSID sid("S-1-5-7");
            ASSERT_EQ(sid.fromBinary(bytes.data(), length), isWhole ? 0 : -1) << head << ' ' << length;
            ASSERT_EQ(sid.toString() == "S-1-5-7", !isWhole);
        }
    }
    HBXSID sid;
    EXPECT_EQ(sid.fromBinary("\1\1\0\0\0\0\0\5\7\0\0\0", 12), 0);
    EXPECT_EQ(sid.toString(), "S-1-5-7");
    EXPECT_EQ(sid.fromBinary(HBXSID("S-1-5-32-544").toBinary().data(), 0), 0) << "as long as it says itself";
    EXPECT_EQ(sid.toString(), "S-1-5-32-544");
    EXPECT_EQ(sid.fromBinary(sid.toBinary().data(), 0), 0) << "its own bytes";
    EXPECT_EQ(sid.toString(), "S-1-5-32-544");
    EXPECT_EQ(sid.fromBinary(nullptr, 99), 0);
    EXPECT_TRUE(sid.isEmpty());
    EXPECT_EQ(sid.toString(), "");
}

TEST(SID, RandomOnesSurviveTextAndBytes) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 2000; ++i) {
        const HBXSID sid = HBXSID::sample(random());
        HBXSID back;
        ASSERT_EQ(back.fromString(sid.toString()), 0) << sid.toString();
        EXPECT_EQ(back, sid) << sid.toString();
        ASSERT_EQ(back.fromBinary(sid.toBinary().data(), sid.toBinary().size()), 0);
        EXPECT_EQ(back, sid);
    }
}

TEST(SID, OrderIsThatOfTheTexts) {
    const std::set<HBXSID> sids{HBXSID("S-1-5-7"), HBXSID("S-1-1000-2"), HBXSID("S-1-1000-1001"), HBXSID(),
                                HBXSID("S-1-1000-2")};
    std::string order;
    for (const HBXSID& sid : sids) {
        order += sid.toString() + ' ';
    }
    EXPECT_EQ(order, " S-1-1000-1001 S-1-1000-2 S-1-5-7 ");
    const HBXSID two("S-1-1000-2");
    const HBXSID longer("S-1-1000-1001");
    EXPECT_TRUE(std::is_lt(compareRecords(&longer, &two, HBXSID::table)))
        << "as a member of other records too";
    EXPECT_TRUE(std::is_eq(compareRecords(&two, &two, HBXSID::table)));
}

TEST(SID, TravelsAsTheBytesOfItsElement) {
    const Cursor it = newCursor();
    EXPECT_EQ(it->putObject(HBXSID("S-1-5-7"), 3265), 0);
    std::string text;
    EXPECT_EQ(it->getValue(text, 3265), 0);
    EXPECT_EQ(text, "AQEAAAAAAAUHAAAA");
    HBXSID sid;
    EXPECT_EQ(it->getObject(sid, 3265), 0);
    EXPECT_EQ(sid.toString(), "S-1-5-7");
    EXPECT_EQ(it->putObject(HBXSID(), 3132), -1);

    for (const char* payload :
         {"", "AQEAAAAAAAU=", "AQEAAAAAAAUHAAAAAAAAAA==", "AgEAAAAAAAUHAAAA", "S-1-5-7"}) {
        const Cursor hostile = newCursor();
        hostile->putValue(payload, 3265);
        EXPECT_EQ(hostile->getObject(sid, 3265), -1) << payload;
        EXPECT_EQ(sid.toString(), "S-1-5-7") << payload;
    }
    EXPECT_EQ(newCursor()->getObject(sid, 0), -1) << "no value";
    EXPECT_EQ(newCursor()->getObject(sid, 3265), -1) << "absent";
}

} // namespace
} // namespace HBX::test
