#pragma once

#include <HBXCommon/HBXExport.h>

#include <cstdint>
#include <string>

namespace HBX {

/// IPv4 addresses as numbers in host order: 10.0.0.1 is 0x0A000001.
class HBX_EXPORT HBXIPv4 {
public:
    /// The number of leading one bits of a dotted mask, also of a mask with gaps; -1 when it is no address.
    static int getPerfixLength(const std::string& mask);

    /// The mask whose first `prefix` bits are ones; below 0 counts as 0, above 32 as 32.
    static std::uint32_t getNetworkMask(int prefix);
};

/// IPv6 addresses as texts.
class HBX_EXPORT HBXIPv6 {
public:
    /// Whether the text is an IPv6 address, with or without a zone ("%eth0") or a network ("/64") behind it.
    static bool isResembling(const std::string& text);
};

/// Reads a dotted IPv4 address. 0, or -1 with `ip` untouched.
HBX_EXPORT int strToIp(const std::string& text, std::uint32_t& ip);

/// The dotted form: "10.0.0.1".
HBX_EXPORT std::string ipToStr(std::uint32_t ip);

/// The dotted form of an IPv4 netmask given as a prefix length of 0 to 32; any other text comes back as it
/// is.
HBX_EXPORT std::string convertNetmaskToIPFormat(const std::string& netmask);

} // namespace HBX
