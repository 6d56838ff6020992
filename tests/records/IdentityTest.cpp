#include <gtest/gtest.h>

#include <set>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

constexpr const char* kText = "01234567-89ab-cdef-0011-223344556677";

TEST(Identifier, TextsAreReadInTheseFormsOnly) {
    const struct {
        std::string text;
        int result;
    } rows[] = {
        {kText, 0},
        {"01234567-89AB-CDEF-0011-223344556677", 0},
        {"{01234567-89ab-cdef-0011-223344556677}", 0},
        {"{01234567-89ab-cdef-0011-223344556677", -1},
        {"01234567-89ab-cdef-0011-2233445566777", -1},
        {"01234567089ab-cdef-0011-223344556677", -1},
        {"0123456g-89ab-cdef-0011-223344556677", -1},
        {"", -1},
    };
    for (const auto& row : rows) {
        HBXGUID id(1, 2);
        EXPECT_EQ(id.fromString(row.text), row.result) << row.text;
        EXPECT_EQ(id.toString(), row.result == 0 ? kText : HBXGUID(1, 2).toString()) << row.text;
    }
}

TEST(Identifier, HalvesBytesAndTextSayTheSame) {
    const HBXGUID id(0x0123456789abcdef, 0x0011223344556677);
    EXPECT_EQ(id.toString(), kText);
    EXPECT_EQ(HBXGUID(id.data()), id);
    std::int64_t hi = 0;
    std::int64_t lo = 0;
    HBXGUID(-2, -3).getData(hi, lo);
    EXPECT_EQ(hi, -2);
    EXPECT_EQ(lo, -3);
    EXPECT_FALSE(HBXGUID().isValid());
    EXPECT_TRUE(HBXGUID(-1, 0) > id) << "ordered as the texts are";
}

TEST(Identifier, GeneratedOnesAreNewAndRandom) {
    std::set<HBXEID, HBXEnvIDComparator> seen;
    for (int i = 0; i < 1000; ++i) {
        const HBXEID id = HBXEID::generate();
        EXPECT_TRUE(id.isValid());
        EXPECT_EQ(id.toString()[14], '4');
        EXPECT_TRUE(seen.insert(id).second);
    }
}

TEST(Identifier, ReadsItsElementsOwnText) {
    const Cursor it = newCursor();
    HBXGUID id(1, 2);
    EXPECT_EQ(it->getObject(id, 0), -1) << "no value";
    it->putValue("nonsense", 0);
    EXPECT_EQ(it->getObject(id, 0), -1);
    EXPECT_EQ(id, HBXGUID(1, 2));
    it->putValue(kText, 0);
    EXPECT_EQ(it->getObject(id, 0), 0);
    EXPECT_EQ(id.toString(), kText);
    EXPECT_EQ(it->getObject(id, 5), -1) << "absent";
}

} // namespace
} // namespace HBX::test
