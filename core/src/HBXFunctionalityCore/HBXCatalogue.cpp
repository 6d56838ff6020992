#include <HBXFunctionalityCore/HBXCatalogue.h>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>
#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

// --- families: one registry each, instantiated here and nowhere else ---

template class HBXDerivedParserFactory<HBXDirControl>;
constinit const HBXPointerType HBXDirControl::family = familyType<HBXDirControl>();
template class HBXDerivedParserFactory<HBXConfiguration>;
constinit const HBXPointerType HBXConfiguration::family = familyType<HBXConfiguration>();

template class HBXDerivedParserFactory<HBXRealm>;
constinit const HBXPointerType HBXRealm::family = familyType<HBXRealm>();

template class HBXDerivedParserFactory<HBXSchedulerTrigger>;
constinit const HBXPointerType HBXSchedulerTrigger::family = familyType<HBXSchedulerTrigger>();

template class HBXDerivedParserFactory<HBXEnv>;
constinit const HBXPointerType HBXEnv::family = familyType<HBXEnv>();

template class HBXDerivedParserFactory<HBXEnvConfig>;
constinit const HBXPointerType HBXEnvConfig::family = familyType<HBXEnvConfig>();

template class HBXDerivedParserFactory<HBXVtSettings>;
constinit const HBXPointerType HBXVtSettings::family = familyType<HBXVtSettings>();

namespace {

constexpr bool kIsDefault = true;
constexpr bool kIsNotDefault = false;

template <class Derived, class Base>
using Entry = HBXDerivedParserFactoryT<Derived, Base>;

Entry<HBXDirControl, HBXDirControl> control(kIsDefault);
Entry<HBXDirSortControl, HBXDirControl> sortControl(kIsNotDefault);
Entry<HBXDirVlvControl, HBXDirControl> vlvControl(kIsNotDefault);

Entry<HBXConfiguration, HBXConfiguration> configuration(kIsDefault);
Entry<HBXRealm, HBXRealm> realm(kIsDefault);
Entry<HBXDirRealm, HBXRealm> dirRealm(kIsNotDefault);

// No default: an element whose type names no trigger never reads as one.
Entry<HBXSchedulerOnceTrigger, HBXSchedulerTrigger> onceTrigger(kIsNotDefault);
Entry<HBXSchedulerDailyTrigger, HBXSchedulerTrigger> dailyTrigger(kIsNotDefault);
Entry<HBXSchedulerWeeklyTrigger, HBXSchedulerTrigger> weeklyTrigger(kIsNotDefault);
Entry<HBXSchedulerMonthlyTrigger, HBXSchedulerTrigger> monthlyTrigger(kIsNotDefault);
Entry<HBXSchedulerMonthlyDayOfWeekTrigger, HBXSchedulerTrigger> dayOfWeekTrigger(kIsNotDefault);

Entry<HBXEnv, HBXEnv> env(kIsDefault);
Entry<HBXEnvConfig, HBXEnvConfig> envConfig(kIsDefault);
Entry<HBXVEnvConfig, HBXEnvConfig> virtualEnvConfig(kIsNotDefault);
Entry<HBXVtSettings, HBXVtSettings> vtSettings(kIsDefault);

constexpr const HBXRecordTable* kRecords[] = {
    &HBXGUID::table,
    &HBXEID::table,
    &HBXEIDList::table,
    &HBXTimeInterval::table,
    &HBXTimeZone::table,
    &HBXDate::table,
    &HBXConfiguration::table,
    &HBXAuthName::table,
    &HBXConnectionInfo::table,
    &HBXDirControl::table,
    &HBXDirSortControl::table,
    &HBXDirVlvControl::table,
    &HBXDirEntry::table,
    &HBXRealm::table,
    &HBXDirRealm::table,
    &HBXNamedOpStrListProperty::table,
    &HBXSID::table,
    &HBXToken::table,
    &HBXSchedulerTrigger::table,
    &HBXSchedulerOnceTrigger::table,
    &HBXSchedulerDailyTrigger::table,
    &HBXSchedulerWeeklyTrigger::table,
    &HBXSchedulerMonthlyTrigger::table,
    &HBXSchedulerMonthlyDayOfWeekTrigger::table,
    &HBXEnv::table,
    &HBXEnvConfig::table,
    &HBXVEnvConfig::table,
    &HBXEnvStatus::table,
    &HBXQoS::table,
    &HBXOS::table,
    &HBXVtSettings::table,
    &HBXVtVersion::table,
    &HBXIPAddress::table,
    &HBXVocID::table,
    &HBXVocPrototype::table,
};

} // namespace

std::span<const HBXRecordTable* const> recordCatalogue() { return kRecords; }

const HBXRecordTable* findRecord(std::string_view name) {
    for (const HBXRecordTable* table : kRecords) {
        if (table->name == name) {
            return table;
        }
    }
    return nullptr;
}

} // namespace HBX
