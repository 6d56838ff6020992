#include <HBXFunctionalityCore/time/HBXDate.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr int kTime = 1004;
constexpr int kTimeText = 2007;

constexpr HBXRow kDate[] = {
    optional<&HBXDate::time>(kTime),
    optional<&HBXDate::text>(kTimeText),
};

} // namespace

constinit const HBXRecordTable HBXDate::table = recordTable<HBXDate>("HBXDate", 0, 0, kDate);

int HBXDate::Reader::operator()(const HBXMessageIterator& it, HBXDate& value) const {
    it.getValueLongLong(value.time, kTime);
    it.getValue(value.text, kTimeText);
    return value.isEmpty() ? -1 : 0;
}

int HBXDate::Writer::operator()(HBXMessageIterator& it, const HBXDate& value) const {
    if (value.isEmpty()) {
        return -1;
    }
    if (value.time != 0 && it.putValueLongLong(value.time, kTime) == -1) {
        return -1;
    }
    return !value.text.empty() && it.putValue(value.text, kTimeText) == -1 ? -1 : 0;
}

} // namespace HBX
