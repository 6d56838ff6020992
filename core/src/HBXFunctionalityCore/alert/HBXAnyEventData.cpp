#include <HBXFunctionalityCore/alert/HBXAnyEventData.h>

#include <memory>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kAnyData[] = {valueOnly<&HBXAnyData::content>()};
constexpr HBXRow kAnyEventData[] = {valueOnly<&HBXAnyEventData::data>()};

} // namespace

constinit const HBXRecordTable HBXAnyData::table = recordTable<HBXAnyData>("HBXAnyData", 0, 0, kAnyData);
constinit const HBXRecordTable HBXAnyEventData::table =
    recordTable<HBXAnyEventData, HBXEventData>("HBXAnyEventData", 401, 5005, kAnyEventData);

int HBXAnyData::Reader::operator()(const HBXMessageIterator& it, HBXAnyData& data) const {
    boost::intrusive_ptr<HBXMessage> message = adoptMessage(it.copyMessage());
    if (!message) {
        return -1;
    }
    const std::unique_ptr<HBXMessageIterator> root(message->newIterator());
    std::string_view value;
    bool isXml = false;
    const bool isEmpty = root->firstChild() != 0 && root->rawValue(0, value, isXml) != 0;
    data.content = HBXMessageContent(isEmpty ? nullptr : std::move(message));
    return 0;
}

int HBXAnyData::Writer::operator()(HBXMessageIterator& it, const HBXAnyData& data) const {
    if (!data.content.message()) {
        return 0;
    }
    const std::unique_ptr<HBXMessageIterator> root(data.content.message()->newIterator());
    std::string_view value;
    bool isXml = false;
    if (root->rawValue(0, value, isXml) == 0 && it.putRawValue(0, value, isXml) != 0) {
        return -1;
    }
    return it.copyToChild(root.get());
}

int HBXAnyEventData::Reader::operator()(const HBXMessageIterator& it, HBXAnyEventData& value) const {
    return HBXAnyData::Reader()(it, value.data);
}

int HBXAnyEventData::Writer::operator()(HBXMessageIterator& it, const HBXAnyEventData& value) const {
    return HBXAnyData::Writer()(it, value.data);
}

} // namespace HBX
