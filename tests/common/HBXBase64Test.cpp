#include <HBXCommon/HBXBase64.h>

#include <gtest/gtest.h>

#include <random>

namespace HBX {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string encoded(const std::string& bytes) {
    std::string text(base64EncodedSize(bytes.size()), '\0');
    base64Encode(bytes.data(), bytes.size(), text.data());
    return text;
}

TEST(Base64, DigitsAreSixBitsEachFromTheHighest) {
    std::string bytes;
    for (unsigned digit = 0; digit < 64; digit += 4) {
        const unsigned group = digit << 18 | (digit + 1) << 12 | (digit + 2) << 6 | (digit + 3);
        bytes += {static_cast<char>(group >> 16), static_cast<char>(group >> 8), static_cast<char>(group)};
    }
    const std::string alphabet(kAlphabet);
    EXPECT_EQ(encoded(bytes + bytes), alphabet + alphabet) << "in the long steps, and in the rest";
}

/// Every length up to 100 crosses all seams between the fast steps; long texts leave the stack buffer.
TEST(Base64, RoundTripsEveryLength) {
    std::mt19937 random(1);
    for (std::size_t length = 0; length < 3000; length += length < 100 ? 1 : 97) {
        std::string bytes(length, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        const std::string text = encoded(bytes);
        std::string back = "old";
        EXPECT_TRUE(base64Decode(text, back)) << length;
        EXPECT_EQ(back, bytes) << length;
    }
}

TEST(Base64, PassesOverBlanksAnywhere) {
    const std::string text = encoded("text of more than sixteen bytes");
    std::string back;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        EXPECT_TRUE(base64Decode(std::string(text).insert(at, "\r\n \t"), back)) << at;
        EXPECT_EQ(back, "text of more than sixteen bytes") << at;
    }
    EXPECT_TRUE(base64Decode(" \n", back));
    EXPECT_EQ(back, "");
}

/// Every byte that is neither digit nor blank, at every position, in the long steps and in the last group.
TEST(Base64, RefusesForeignBytes) {
    const std::string text = encoded(std::string(30, 'x'));
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const bool isDigit = kAlphabet.find(c) != std::string_view::npos;
        for (std::size_t at = 0; at < text.size(); ++at) {
            std::string changed = text;
            changed[at] = c;
            std::string back = "old";
            ASSERT_EQ(base64Decode(changed, back), isDigit) << byte << " at " << at;
            ASSERT_EQ(isDigit ? encoded(back) : back, isDigit ? changed : "old");
        }
    }
}

TEST(Base64, RefusesWhatIsNotCanonical) {
    for (const char* text : {"A", "AA", "AAA", "AAAAA", "=", "====", "A===", "AA=", "AA=A", "A=AA",
                             "AA==AAAA", "AAA==", "AAAA=", "AAAA====", "AB==", "AP==", "AAB=", "AAD="}) {
        std::string back = "old";
        EXPECT_FALSE(base64Decode(text, back)) << text;
        EXPECT_EQ(back, "old");
    }
}

} // namespace
} // namespace HBX
