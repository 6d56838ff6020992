#include <gtest/gtest.h>

#include <set>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

constexpr const char* kText = "01234567-89ab-cdef-0011-223344556677";

TEST(Identifier, TextsAreReadInTheseFormsOnly) {
    for (const std::string& text : {std::string(kText), std::string("01234567-89AB-CDEF-0011-223344556677"),
                                    '{' + std::string(kText) + '}'}) {
        HBXGUID id;
        EXPECT_EQ(id.fromString(text), 0) << text;
        EXPECT_EQ(id.toString(), kText);
    }
    for (const char* text :
         {"", "{01234567-89ab-cdef-0011-223344556677", "01234567-89ab-cdef-0011-2233445566777",
          "01234567089ab-cdef-0011-223344556677", "0123456g-89ab-cdef-0011-223344556677"}) {
        HBXGUID id(1, 2);
        EXPECT_EQ(id.fromString(text), -1) << text;
        EXPECT_EQ(id, HBXGUID(1, 2));
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

} // namespace
} // namespace HBX::test
