#include <HBXFunctionalityCore/firewall/HBXInterfaceRate.h>

#include <charconv>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kInterfaceRate[] = {
    member<&HBXInterfaceRate::trafficClass>(3196),
    member<&HBXInterfaceRate::rate>(3197),
};

/// The whole text, without the blanks around it that other numbers may have.
bool parseStrictly(std::string_view text, int& number) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

} // namespace

constinit const HBXRecordTable HBXInterfaceRate::table =
    recordTable<HBXInterfaceRate>("HBXInterfaceRate", 0, 0, kInterfaceRate);

std::string HBXInterfaceRate::toString() const {
    return rate == 0 ? "" : "*:" + std::to_string(trafficClass) + ':' + std::to_string(rate);
}

bool HBXInterfaceRate::fromStringEx(std::string_view text) {
    constexpr std::string_view kAnyAddress = "*:";
    const std::size_t colon = text.rfind(':');
    if (text.substr(0, kAnyAddress.size()) != kAnyAddress || colon < kAnyAddress.size()) {
        return false;
    }
    HBXInterfaceRate parsed;
    const std::string_view first = text.substr(kAnyAddress.size(), colon - kAnyAddress.size());
    if (!parseStrictly(first, parsed.trafficClass) || !parseStrictly(text.substr(colon + 1), parsed.rate)) {
        return false;
    }
    *this = parsed;
    return true;
}

} // namespace HBX
