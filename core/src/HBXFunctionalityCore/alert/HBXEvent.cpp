#include <HBXFunctionalityCore/alert/HBXEvent.h>

#include <HBXMessage/HBXMessage.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr int kEid = 1866;
constexpr int kTime = 1004;
constexpr int kSource = 1803;
constexpr int kCategory = 1264;
constexpr int kSubject = 1911;
constexpr int kCount = 1259;
constexpr int kId = 1010;
constexpr int kData = 1307;
constexpr int kEventData = 1913;
constexpr int kInfo = 1134;

using DataList = std::vector<boost::shared_ptr<HBXEventData>>;

/// A list that is not even there while it is unset.
constexpr HBXRow dataRow() {
    const auto& data = internal::probe<HBXEvent>.object.data;
    HBXRow row = valueOnly<&HBXEvent::subject>(kData);
    row.where = data.valueAddress();
    row.flag = data.flagAddress();
    row.flagged = true;
    row.type = &internal::valueType<DataList::value_type>;
    row.list = &internal::listType<DataList>;
    row.kind = row.type->kind;
    row.itemId = kEventData;
    row.name = "data";
    return row;
}

constexpr HBXRow kEvent[] = {
    member<&HBXEvent::eid>(kEid),
    optional<&HBXEvent::time>(kTime),
    member<&HBXEvent::source>(kSource),
    member<&HBXEvent::category>(kCategory),
    optional<&HBXEvent::subject>(kSubject),
    member<&HBXEvent::count>(kCount),
    member<&HBXEvent::id>(kId),
    dataRow(),
    member<&HBXEvent::info>(kInfo),
};

/// The time of the message that holds the event, 0 when it has none.
std::int64_t messageTime(const HBXMessageIterator& it) {
    std::int64_t time = 0;
    const HBXMessage* message = it.getMessage();
    return message != nullptr && message->getTime(time) == 0 ? time : 0;
}

void readData(const HBXMessageIterator& it, HBXEvent& event) {
    if (it.seek(kData) != 0) {
        return;
    }
    DataList data;
    HBXReaderDerivedList<int, HBXEvent, HBXEventData>(kEventData, 0)(it, data);
    it.seekUp();
    event.data = std::move(data);
}

int writeData(HBXMessageIterator& it, const HBXEvent& event) {
    using ItemWriter = HBXWriterIDT<int, HBXWriterDerived<HBXEventData>>;
    using ListWriter = HBXWriterListT<ItemWriter>;
    if (!event.data.isSet()) {
        return 0;
    }
    const ListWriter list(ItemWriter(HBXWriterDerived<HBXEventData>(), kEventData));
    return HBXWriterIDT<int, ListWriter>(list, kData)(it, event.data.get());
}

} // namespace

constinit const HBXRecordTable HBXEvent::table = recordTable<HBXEvent>("HBXEvent", 401, 5006, kEvent);

int HBXEvent::Reader::operator()(const HBXMessageIterator& it, HBXEvent& event) const {
    if (it.getObject(event.eid, kEid) != 0) {
        return -1;
    }
    if (it.getValueLongLong(event.time, kTime) != 0) {
        event.time = messageTime(it);
    }
    const bool isThere = it.getValue(event.source, kSource) == 0 &&
                         it.getValue(event.category, kCategory) == 0 &&
                         it.getValue(event.count, kCount) == 0 && it.getObject(event.id, kId) == 0;
    if (!isThere) {
        return -1;
    }
    it.getValue(event.subject, kSubject);
    readData(it, event);
    return it.getObject(event.info, kInfo);
}

int HBXEvent::Writer::operator()(HBXMessageIterator& it, const HBXEvent& event) const {
    const bool isWritten =
        it.putObject(event.eid, kEid) == 0 && it.putValueLongLong(event.time, kTime) == 0 &&
        it.putValue(event.source, kSource) == 0 && it.putValue(event.category, kCategory) == 0 &&
        it.putValue(event.subject, kSubject) == 0 && it.putValue(event.count, kCount) == 0 &&
        it.putObject(event.id, kId) == 0 && writeData(it, event) == 0;
    return isWritten ? it.putObject(event.info, kInfo) : -1;
}

} // namespace HBX
