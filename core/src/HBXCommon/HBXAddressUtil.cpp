#include <HBXCommon/HBXAddressUtil.h>

#include <HBXCommon/HBXStringUtil.h>

#include <algorithm>
#include <bit>

#include <arpa/inet.h>

namespace HBX {

int HBXIPv4::getPerfixLength(const std::string& mask) {
    std::uint32_t bits = 0;
    return strToIp(mask, bits) == 0 ? std::countl_one(bits) : -1;
}

std::uint32_t HBXIPv4::getNetworkMask(int prefix) {
    const int ones = std::clamp(prefix, 0, 32);
    return static_cast<std::uint32_t>(0xFFFFFFFF00000000U >> ones);
}

bool HBXIPv6::isResembling(const std::string& text) {
    in6_addr address;
    return inet_pton(AF_INET6, text.substr(0, text.find_first_of("%/")).c_str(), &address) == 1;
}

int strToIp(const std::string& text, std::uint32_t& ip) {
    in_addr address;
    if (inet_pton(AF_INET, text.c_str(), &address) != 1)
        return -1;
    ip = ntohl(address.s_addr);
    return 0;
}

std::string ipToStr(std::uint32_t ip) {
    const in_addr address{htonl(ip)};
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, &address, text, sizeof text);
}

std::string convertNetmaskToIPFormat(const std::string& netmask) {
    std::int32_t prefix = 0;
    const bool isPrefix = parseInt32(netmask, prefix) && prefix >= 0 && prefix <= 32;
    if (!isPrefix || netmask != std::to_string(prefix)) // " 8" would read back as "8"
        return netmask;
    return ipToStr(HBXIPv4::getNetworkMask(prefix));
}

} // namespace HBX
