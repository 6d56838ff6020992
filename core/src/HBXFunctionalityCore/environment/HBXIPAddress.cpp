#include <HBXFunctionalityCore/environment/HBXIPAddress.h>

#include <utility>

#include <HBXCommon/HBXAddressUtil.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr int kAddress = 1262;
constexpr int kNetmask = 1784;

constexpr HBXRow kIPAddress[] = {
    member<&HBXIPAddress::address>(kAddress),
    optional<&HBXIPAddress::netmask>(kNetmask),
};

bool isDotted(const std::string& mask) { return mask.find('.') != std::string::npos; }

} // namespace

constinit const HBXRecordTable HBXIPAddress::table =
    recordTable<HBXIPAddress>("HBXIPAddress", 0, 0, kIPAddress);

HBXIPAddress::HBXIPAddress(std::string addressText, const std::string& mask)
    : address(std::move(addressText)) {
    setNetmask(mask);
}

HBXIPAddress::HBXIPAddress(std::string addressText, int prefixLength)
    : address(std::move(addressText)), netmask(std::to_string(prefixLength)) {}

std::string HBXIPAddress::toStringWithNetwork() const {
    return netmask.empty() ? address : address + '/' + netmask;
}

int HBXIPAddress::compare(const HBXIPAddress& other) const {
    const int order = address.compare(other.address);
    return order != 0 ? order : netmask.compare(other.netmask);
}

bool HBXIPAddress::takesDottedMask() const { return !HBXIPv6::isResembling(address); }

void HBXIPAddress::setNetmask(const std::string& mask) {
    const int length = takesDottedMask() && isDotted(mask) ? HBXIPv4::getPerfixLength(mask) : -1;
    netmask = length < 0 ? mask : std::to_string(length); // what is no mask must not come to look like one
}

int HBXIPAddress::Reader::operator()(const HBXMessageIterator& it, HBXIPAddress& value) const {
    if (it.getValue(value.address, kAddress) != 0) {
        return -1;
    }
    std::string mask;
    if (it.getValue(mask, kNetmask) == 0) {
        value.setNetmask(mask);
    }
    return 0;
}

int HBXIPAddress::Writer::operator()(HBXMessageIterator& it, const HBXIPAddress& value) const {
    const int result = it.putValue(value.address, kAddress);
    if (result != 0 || value.netmask.empty()) {
        return result;
    }
    return it.putValue(value.takesDottedMask() ? convertNetmaskToIPFormat(value.netmask) : value.netmask,
                       kNetmask);
}

} // namespace HBX
