#include <HBXCommon/HBXAddressUtil.h>

#include <gtest/gtest.h>

namespace HBX {
namespace {

TEST(Netmask, IsItsLeadingOnes) {
    const struct {
        const char* mask;
        int prefix;
    } rows[] = {
        {"255.255.255.0", 24},
        {"0.0.0.0", 0},
        {"255.255.255.255", 32},
        {"255.0.255.0", 8},
        {"0.255.0.0", 0},
        {"128.0.0.0", 1},
        {"255.255.255", -1},
        {"256.0.0.0", -1},
        {"24", -1},
        {"", -1},
    };
    for (const auto& row : rows)
        EXPECT_EQ(HBXIPv4::getPerfixLength(row.mask), row.prefix) << row.mask;
    for (int prefix = 0; prefix <= 32; ++prefix)
        EXPECT_EQ(HBXIPv4::getPerfixLength(ipToStr(HBXIPv4::getNetworkMask(prefix))), prefix);
    EXPECT_EQ(HBXIPv4::getNetworkMask(-1), 0U);
    EXPECT_EQ(HBXIPv4::getNetworkMask(33), 0xFFFFFFFFU);
}

TEST(Netmask, IsWrittenDotted) {
    const struct {
        const char *netmask, *dotted;
    } rows[] = {
        {"24", "255.255.255.0"},
        {"0", "0.0.0.0"},
        {"32", "255.255.255.255"},
        {"33", "33"},
        {"-1", "-1"},
        {"", ""},
        {"255.0.0.0", "255.0.0.0"},
        {"abc", "abc"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(convertNetmaskToIPFormat(row.netmask), row.dotted) << row.netmask;
}

TEST(Address, IsReadInHostOrder) {
    std::uint32_t ip = 7;
    EXPECT_EQ(strToIp("10.0.0", ip), -1);
    EXPECT_EQ(ip, 7U);
    EXPECT_EQ(strToIp("10.0.0.1", ip), 0);
    EXPECT_EQ(ip, 0x0A000001U);
    EXPECT_EQ(ipToStr(ip), "10.0.0.1");
}

TEST(Address, ResemblesIPv6) {
    for (const char* text : {"::", "::1", "fe80::1%eth0", "2001:db8::/32", "::ffff:10.0.0.1"})
        EXPECT_TRUE(HBXIPv6::isResembling(text)) << text;
    for (const char* text : {"", "10.0.0.1", "10.0.0.0/8", "1:2", "host:80", "%eth0", "g::1"})
        EXPECT_FALSE(HBXIPv6::isResembling(text)) << text;
}

} // namespace
} // namespace HBX
