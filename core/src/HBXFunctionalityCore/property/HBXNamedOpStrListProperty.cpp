#include <HBXFunctionalityCore/property/HBXNamedOpStrListProperty.h>

#include <HBXCommon/HBXAbort.h>
#include <HBXCommon/HBXStringUtil.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr int kOperation = 1638;
constexpr int kName = 1026;
constexpr int kValue = 1018;

using ItemReader =
    HBXReaderSimple<std::string, static_cast<int (HBXMessageIterator::*)(std::string&, int) const>(
                                     &HBXMessageIterator::getValue)>;

} // namespace

/// Reaches the value that the property keeps to its own.
struct HBXNamedOpStrListPropertyRows {
    static constexpr HBXRow rows[] = {
        member<&HBXNamedOpStrListProperty::operation, HBXNamedOpStrListProperty>(kOperation,
                                                                                 HBXPresence::Optional),
        member<&HBXNamedOpStrListProperty::name, HBXNamedOpStrListProperty>(kName),
        list<&HBXNamedOpStrListProperty::value_, HBXNamedOpStrListProperty>(0, kValue),
    };
};

constinit const HBXRecordTable HBXNamedOpStrListProperty::table = recordTable<HBXNamedOpStrListProperty>(
    "HBXNamedOpStrListProperty", 0, 0, HBXNamedOpStrListPropertyRows::rows);

int HBXNamedOpStrListProperty::Reader::operator()(const HBXMessageIterator& it,
                                                  HBXNamedOpStrListProperty& property) const {
    it.getValue(property.operation, kOperation);
    if (it.getValue(property.name, kName) != 0) {
        return -1;
    }
    return HBXReaderListT(HBXReaderListDataT<ItemReader>(), kValue, 0)(it, property.get());
}

int HBXNamedOpStrListProperty::Writer::operator()(HBXMessageIterator& it,
                                                  const HBXNamedOpStrListProperty& property) const {
    if (property.operation != kNoOperation) {
        it.putValue(property.operation, kOperation);
    }
    it.putValue(property.name, kName);
    for (const std::string& value : property.get()) {
        it.putValue(value, kValue);
    }
    return 0;
}

bool HBXLessNamedOpStrListPropertyPtr::operator()(
    const boost::shared_ptr<HBXNamedOpStrListProperty>& a,
    const boost::shared_ptr<HBXNamedOpStrListProperty>& b) const {
    if (!a || !b) {
        constexpr const char* kFunction = "HBX::HBXLessNamedOpStrListPropertyPtr::operator ()";
        abort("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXProperty", 30, kFunction, kFunction);
    }
    return compareNoCase(a->name, b->name, -1) < 0;
}

} // namespace HBX
