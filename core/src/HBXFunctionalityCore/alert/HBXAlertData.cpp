#include <HBXFunctionalityCore/alert/HBXAlertData.h>

#include <HBXFunctionalityCore/alert/HBXEnvInfo.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kAlertData[] = {
    member<&HBXAlertData::eid>(1870),
    member<&HBXAlertData::level>(1003),
};

constexpr HBXRow kResourceAlertData[] = {
    member<&HBXResourceAlertData::resourceId>(3002),
    member<&HBXResourceAlertData::current>(3003),
    member<&HBXResourceAlertData::soft>(3004),
    member<&HBXResourceAlertData::hard>(3005),
};

constexpr HBXRow kServerGroupAlertData[] = {
    member<&HBXServerGroupAlertData::envId>(1010),
    member<&HBXServerGroupAlertData::reason>(3006),
    member<&HBXServerGroupAlertData::code>(3007),
    member<&HBXServerGroupAlertData::subsystem>(3008),
};

constexpr bool kTranslatable = true;
constexpr bool kAsItIs = false;

} // namespace

constinit const HBXRecordTable HBXAlertData::table =
    recordTable<HBXAlertData, HBXEventData>("HBXAlertData", 401, 5002, kAlertData);
constinit const HBXRecordTable HBXResourceAlertData::table =
    recordTable<HBXResourceAlertData, HBXAlertData>("HBXResourceAlertData", 401, 5003, kResourceAlertData);
constinit const HBXRecordTable HBXServerGroupAlertData::table =
    recordTable<HBXServerGroupAlertData, HBXAlertData>("HBXServerGroupAlertData", 401, 5004,
                                                       kServerGroupAlertData);

const char* HBXAlertData::getAlertTypeString(int level) {
    static constexpr const char* kNames[] = {"green", "yellow", "red", "black"};
    return level >= GREEN && level <= BLACK ? kNames[level] : "";
}

void HBXAlertData::toInfo(HBXInfo& info) const {
    info.setParameter(HBXEnvInfo(eid));
    info.setParameter({"type", getAlertTypeString(level), kTranslatable});
}

void HBXResourceAlertData::toInfo(HBXInfo& info) const {
    info = {"",
            "Resource %id% %type% alert on environment %env% current value: %cur% soft limit: %soft% hard "
            "limit: %hard%",
            kTranslatable};
    HBXAlertData::toInfo(info);
    info.setParameter({"id", resourceId, kAsItIs});
    info.setParameter({"cur", std::to_string(current), kAsItIs});
    info.setParameter({"soft", soft.isSet() ? std::to_string(soft.get()) : "", kAsItIs});
    info.setParameter({"hard", std::to_string(hard), kAsItIs});
}

void HBXServerGroupAlertData::toInfo(HBXInfo& info) const {
    info = {
        "",
        "Calvanti group problem with %env%. Subsystem: %subsystem% failed, reason %reason% [code %code%].",
        kTranslatable};
    HBXAlertData::toInfo(info);
    info.setParameter({"subsystem", subsystem, kTranslatable});
    info.setParameter({"reason", reason, kTranslatable});
    info.setParameter({"code", std::to_string(code), kAsItIs});
    info.setParameter({"env", envId.toString(), kAsItIs});
}

int HBXAlertTypeReader::operator()(const HBXMessageIterator& it, HBXAlertData::AlertType& type) const {
    int number = 0;
    const int result = it.getValue(number, 0);
    if (result == 0) {
        type = static_cast<HBXAlertData::AlertType>(number);
    }
    return result;
}

int HBXAlertTypeWriter::operator()(HBXMessageIterator& it, HBXAlertData::AlertType type) const {
    return it.putValue(static_cast<int>(type), 0);
}

} // namespace HBX
