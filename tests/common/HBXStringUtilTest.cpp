#include <HBXCommon/HBXStringUtil.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace HBX {
namespace {

int signOf(int value) { return (value > 0) - (value < 0); }

TEST(CompareNoCase, OrdersByAsciiLettersInLowerCase) {
    const std::tuple<const char*, const char*, int, int> rows[] = {
        {"CN", "cn", -1, 0},  {"a", "B", -1, -1}, {"ab", "abc", -1, -1}, {"abX", "ABy", 2, 0},
        {"ab", "abc", 3, -1}, {"a", "b", 0, 0},   {"[", "{", -1, -1},    {"\xC4", "\xE4", -1, -1},
    };
    for (const auto& [a, b, length, result] : rows) {
        EXPECT_EQ(signOf(compareNoCase(a, b, length)), result) << a << " " << b;
        EXPECT_EQ(signOf(compareNoCase(b, a, length)), -result) << b << " " << a;
    }
    EXPECT_EQ(toLower("AZ[az\xC4 09"), "az[az\xC4 09");
}

TEST(Numbers, AreReadWholeAndInRange) {
    const std::tuple<const char*, bool, bool, std::int64_t> rows[] = {
        {" \t\r\n-12 \n", true, true, -12},
        {"007", true, true, 7},
        {"2147483647", true, true, 2147483647},
        {"2147483648", false, true, 2147483648},
        {"-9223372036854775808", false, true, INT64_MIN},
        {"9223372036854775808", false, false, 0},
    };
    for (const auto& [text, is32, is64, value] : rows) {
        std::int32_t narrow = 99;
        std::int64_t wide = 99;
        EXPECT_EQ(parseInt32(text, narrow), is32) << text;
        EXPECT_EQ(narrow, is32 ? value : 99) << text;
        EXPECT_EQ(parseInt64(text, wide), is64) << text;
        EXPECT_EQ(wide, is64 ? value : 99) << text;
    }
    for (const char* text : {"", " ", "+1", "- 1", "1 2", "0x10", "1.0.", "1\v", "1e", "1,5", "1e999"}) {
        std::int64_t wide = 99;
        double real = 99;
        EXPECT_FALSE(parseInt64(text, wide)) << text;
        EXPECT_FALSE(parseDouble(text, real)) << text;
        EXPECT_TRUE(wide == 99 && real == 99) << text;
    }
    unsigned long big = 99;
    EXPECT_FALSE(strToUlong("-1", big));
    EXPECT_FALSE(strToUlong(std::string_view("1\0", 2), big));
    EXPECT_TRUE(strToUlong("18446744073709551615", big));
    EXPECT_EQ(big, std::numeric_limits<unsigned long>::max());
}

TEST(Numbers, AreWrittenSoThatTheyReadBack) {
    EXPECT_EQ(longlongToStr(INT64_MIN), "-9223372036854775808");
    EXPECT_EQ(doubleToStr(0.1), "0.1");
    double back = 99;
    for (const double value : {-1e300, 5e-324, -0.0, 1e23, std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::max()}) {
        EXPECT_TRUE(parseDouble(" " + doubleToStr(value), back)) << value;
        EXPECT_EQ(back, value);
        EXPECT_EQ(std::signbit(back), std::signbit(value));
    }
    EXPECT_TRUE(parseDouble(doubleToStr(std::nan("")), back));
    EXPECT_TRUE(std::isnan(back));
}

} // namespace
} // namespace HBX
