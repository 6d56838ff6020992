#include <HBXFunctionalityCore/alert/HBXAlertMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kRequestProgressData[] = {
    member<&HBXRequestProgressData::requestId>(3012), member<&HBXRequestProgressData::percent>(3013),
    member<&HBXRequestProgressData::stage>(3014),     member<&HBXRequestProgressData::info>(1134),
    member<&HBXRequestProgressData::finished>(3015),
};

constexpr HBXRow kMailTemplate[] = {
    member<&HBXMailTemplate::name>(1026), member<&HBXMailTemplate::subject>(1911),
    member<&HBXMailTemplate::body>(3016), member<&HBXMailTemplate::language>(3017),
    member<&HBXMailTemplate::html>(3018),
};

constexpr HBXRow kMailerAccount[] = {
    member<&HBXMailerAccount::id>(1010),       member<&HBXMailerAccount::name>(1026),
    member<&HBXMailerAccount::address>(3019),  member<&HBXMailerAccount::realName>(3020),
    member<&HBXMailerAccount::disabled>(1705),
};

constexpr HBXRow kMailerConfig[] = {
    member<&HBXMailerConfig::server>(1687),        member<&HBXMailerConfig::port>(1704),
    member<&HBXMailerConfig::useTls>(3021),        member<&HBXMailerConfig::credentials>(3022),
    member<&HBXMailerConfig::sender>(3023),        list<&HBXMailerConfig::accounts>(3024, 3025),
    list<&HBXMailerConfig::templates>(3026, 3027),
};

constexpr HBXRow kLogClass[] = {
    member<&HBXLogClass::id>(3028),
    member<&HBXLogClass::name>(1026),
    member<&HBXLogClass::level>(3029),
    member<&HBXLogClass::description>(1496),
};

constexpr HBXRow kLogInfo[] = {
    member<&HBXLogInfo::time>(1004),    member<&HBXLogInfo::level>(3029), member<&HBXLogInfo::source>(1803),
    member<&HBXLogInfo::message>(3030), member<&HBXLogInfo::eid>(1870),   member<&HBXLogInfo::classId>(3028),
    member<&HBXLogInfo::count>(1259),
};

constexpr HBXRow kLogOptions[] = {
    member<&HBXLogOptions::interval>(3031),    member<&HBXLogOptions::minLevel>(3029),
    list<&HBXLogOptions::classes>(3032, 3028), list<&HBXLogOptions::eids>(3033, 1870),
    member<&HBXLogOptions::maxCount>(1259),
};

constexpr HBXRow kLogParameters[] = {
    member<&HBXLogParameters::level>(3029),       member<&HBXLogParameters::maxSize>(3034),
    member<&HBXLogParameters::keepFiles>(3035),   list<&HBXLogParameters::modules>(3036, 3037),
    list<&HBXLogParameters::classes>(3038, 3039),
};

} // namespace

constinit const HBXRecordTable HBXRequestProgressData::table =
    recordTable<HBXRequestProgressData>("HBXRequestProgressData", 401, 5008, kRequestProgressData);
constinit const HBXRecordTable HBXMailTemplate::table =
    recordTable<HBXMailTemplate>("HBXMailTemplate", 401, 5009, kMailTemplate);
constinit const HBXRecordTable HBXMailerAccount::table =
    recordTable<HBXMailerAccount>("HBXMailerAccount", 401, 5010, kMailerAccount);
constinit const HBXRecordTable HBXMailerConfig::table =
    recordTable<HBXMailerConfig>("HBXMailerConfig", 401, 5011, kMailerConfig);
constinit const HBXRecordTable HBXLogClass::table =
    recordTable<HBXLogClass>("HBXLogClass", 401, 5012, kLogClass);
constinit const HBXRecordTable HBXLogInfo::table = recordTable<HBXLogInfo>("HBXLogInfo", 401, 5013, kLogInfo);
constinit const HBXRecordTable HBXLogOptions::table =
    recordTable<HBXLogOptions>("HBXLogOptions", 401, 5014, kLogOptions);
constinit const HBXRecordTable HBXLogParameters::table =
    recordTable<HBXLogParameters>("HBXLogParameters", 401, 5015, kLogParameters);

HBXAlertMBase::~HBXAlertMBase() = default;

} // namespace HBX
