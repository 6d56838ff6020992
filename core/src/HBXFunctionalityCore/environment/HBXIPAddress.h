#pragma once

#include <string>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// An address with its netmask. The mask of an IPv4 address is kept as a prefix length ("24") and travels
/// dotted ("255.255.255.0"); every other mask is kept and travels as it is given.
struct HBX_EXPORT HBXIPAddress {
    std::string address;
    std::string netmask;

    HBXIPAddress() = default;
    explicit HBXIPAddress(std::string addressText) : address(std::move(addressText)) {}
    HBXIPAddress(std::string addressText, const std::string& mask);
    HBXIPAddress(std::string addressText, int prefixLength);

    /// "10.0.0.1/24"; the address alone when there is no netmask.
    [[nodiscard]] std::string toStringWithNetwork() const;
    /// By address text, then netmask: below 0, 0 or above 0.
    [[nodiscard]] int compare(const HBXIPAddress& other) const;

    static const HBXRecordTable table;

    /// The address must be there (-1); a netmask that is not leaves the present one.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXIPAddress& value) const;
    };
    /// Leaves an empty netmask out.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXIPAddress> {
        int operator()(HBXMessageIterator& it, const HBXIPAddress& value) const;
    };

private:
    [[nodiscard]] bool takesDottedMask() const;
    void setNetmask(const std::string& mask);
};

} // namespace HBX
