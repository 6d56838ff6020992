#include <HBXFunctionalityCore/time/HBXTimeZone.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr int kName = 1026;
constexpr int kZoneText = 1788;

constexpr HBXRow kTimeZone[] = {
    optional<&HBXTimeZone::zoneId>(kName),
    optional<&HBXTimeZone::zoneText>(kZoneText),
};

} // namespace

constinit const HBXRecordTable HBXTimeZone::table = recordTable<HBXTimeZone>("HBXTimeZone", 0, 0, kTimeZone);

int HBXTimeZone::Reader::operator()(const HBXMessageIterator& it, HBXTimeZone& value) const {
    return it.getValue(value.zoneId, kName) == -1 || it.getValue(value.zoneText, kZoneText) == -1 ? -1 : 0;
}

int HBXTimeZone::Writer::operator()(HBXMessageIterator& it, const HBXTimeZone& value) const {
    it.putValue(value.zoneId, kName);
    it.putValue(value.zoneText, kZoneText);
    return 0;
}

} // namespace HBX
