#include <HBXCommon/HBXAddressUtil.h>

#include <gtest/gtest.h>

namespace HBX {
namespace {

TEST(Netmask, IsItsLeadingOnes) {
    const std::pair<const char*, int> rows[] = {{"255.0.255.0", 8}, {"0.255.0.0", 0}, {"255.255.255", -1},
                                                {"256.0.0.0", -1},  {"24", -1},       {"", -1}};
    for (const auto& [mask, prefix] : rows)
        EXPECT_EQ(HBXIPv4::getPerfixLength(mask), prefix) << mask;
    for (int prefix = 0; prefix <= 32; ++prefix) {
        const std::string dotted = convertNetmaskToIPFormat(std::to_string(prefix));
        EXPECT_EQ(HBXIPv4::getPerfixLength(dotted), prefix) << dotted;
        EXPECT_EQ(dotted, ipToStr(HBXIPv4::getNetworkMask(prefix)));
    }
    EXPECT_EQ(HBXIPv4::getNetworkMask(-1), 0U);
    EXPECT_EQ(HBXIPv4::getNetworkMask(33), 0xFFFFFFFFU);
    for (const char* kept : {"33", "-1", "", "255.0.0.0", "abc", " 8", "08"})
        EXPECT_EQ(convertNetmaskToIPFormat(kept), kept);
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
    for (const char* text : {"::1", "fe80::1%eth0", "2001:db8::/32", "::ffff:10.0.0.1"})
        EXPECT_TRUE(HBXIPv6::isResembling(text)) << text;
    for (const char* text : {"", "10.0.0.1", "10.0.0.0/8", "1:2", "host:80", "%eth0", "g::1"})
        EXPECT_FALSE(HBXIPv6::isResembling(text)) << text;
}

} // namespace
} // namespace HBX
