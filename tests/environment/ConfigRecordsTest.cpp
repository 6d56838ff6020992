#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "EnvTestUtil.h"

/// The small values that configurations consist of.
namespace HBX::test {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(QoS, ParsesOneNumberOrTwo) {
    const std::tuple<std::string, int, std::int64_t, std::int64_t> rows[] = {
        {"100", 0, 100, 100},   {"100:200", 0, 100, 200},
        {"-5:7", 0, -5, 7},     {"1 :2", 0, 1, 1},
        {"100:x", 0, 100, 100}, {":5", -1, 1, 2},
        {"", -1, 1, 2},         {"9223372036854775807:99999999999999999999", 0, kMost, kMost},
    };
    for (const auto& [text, result, barrier, limit] : rows) {
        HBXQoS qos;
        qos.barrier = 1;
        qos.limit = 2;
        EXPECT_EQ(qos.fromString(text), result) << text;
        EXPECT_EQ(qos.barrier.get(), barrier) << text;
        EXPECT_EQ(qos.limit, limit) << text;
    }
}

TEST(QoS, WithoutBarrierEqualsEveryOneOfItsLimit) {
    HBXQoS bare;
    bare.limit = 5;
    const HBXQoS low("1:5");
    const HBXQoS high("2:5");
    EXPECT_TRUE(bare == low && bare == high && low < high);
    EXPECT_LT(high, HBXQoS("0:6")) << "limits come before barriers";
    HBXQoS named;
    named.id = "a";
    EXPECT_LT(HBXQoS("9:9"), named) << "the id comes first";
}

TEST(IPAddress, KeepsDottedMasksAsPrefixLengthsAndSendsThemDotted) {
    const std::array<std::string, 4> rows[] = {
        {"10.0.0.1", "255.255.255.0", "24", "255.255.255.0"},
        {"10.0.0.1", "24", "24", "255.255.255.0"},
        {"10.0.0.1", "255.0.255.0", "8", "255.0.0.0"},
        {"10.0.0.1", "33", "33", "33"},
        {"10.0.0.1", "no.mask", "no.mask", "no.mask"},
        {"10.0.0.1", "", "9", "absent"}, // what is absent stays
        {"fe80::1", "255.255.0.0", "255.255.0.0", "255.255.0.0"},
        {"fe80::1", "24", "24", "24"},
        {"name", "16", "16", "255.255.0.0"},
    };
    for (const auto& [address, mask, kept, sent] : rows) {
        const Cursor it = newCursor();
        EXPECT_EQ(it->putObject(HBXIPAddress(address, mask), 0), 0);
        std::string written = "absent";
        it->getValue(written, 1784);
        EXPECT_EQ(written, sent) << mask;
        HBXIPAddress back("", 9);
        EXPECT_EQ(it->getObject(back, 0), 0);
        EXPECT_EQ(back.toStringWithNetwork(), address + '/' + kept);
    }
    EXPECT_EQ(HBXIPAddress("10.0.0.1").toStringWithNetwork(), "10.0.0.1");
}

} // namespace
} // namespace HBX::test
