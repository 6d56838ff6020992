#include <gtest/gtest.h>

#include <limits>

#include "EnvTestUtil.h"

/// The small values that configurations consist of.
namespace HBX::test {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(QoS, ParsesOneNumberOrTwo) {
    const struct {
        std::string text;
        int result;
        std::int64_t barrier, limit;
    } rows[] = {
        {"100", 0, 100, 100},   {"100:200", 0, 100, 200},
        {"-5:7", 0, -5, 7},     {"1 :2", 0, 1, 1},
        {"100:x", 0, 100, 100}, {":5", -1, 1, 2},
        {"", -1, 1, 2},         {"9223372036854775807:99999999999999999999", 0, kMost, kMost},
    };
    for (const auto& row : rows) {
        HBXQoS qos;
        qos.barrier = 1;
        qos.limit = 2;
        EXPECT_EQ(qos.fromString(row.text), row.result) << row.text;
        EXPECT_EQ(qos.barrier.get(), row.barrier) << row.text;
        EXPECT_EQ(qos.limit, row.limit) << row.text;
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
    const struct {
        std::string address, mask, kept, sent;
    } rows[] = {
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
    for (const auto& row : rows) {
        const Cursor it = newCursor();
        EXPECT_EQ(it->putObject(HBXIPAddress(row.address, row.mask), 0), 0);
        std::string sent = "absent";
        it->getValue(sent, 1784);
        EXPECT_EQ(sent, row.sent) << row.mask;
        HBXIPAddress back("", 9);
        EXPECT_EQ(it->getObject(back, 0), 0);
        EXPECT_EQ(back.toStringWithNetwork(), row.address + '/' + row.kept);
        it->deleteChild(1262);
        EXPECT_EQ(it->getObject(back, 0), -1) << "the address itself must be there";
    }
    EXPECT_EQ(HBXIPAddress("10.0.0.1").toStringWithNetwork(), "10.0.0.1");
}

} // namespace
} // namespace HBX::test
