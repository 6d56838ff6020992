#include <HBXFunctionalityCore/HBXCatalogue.h>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>
#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

// --- families: one registry each, instantiated here and nowhere else ---

template class HBXDerivedParserFactory<HBXConfiguration>;
constinit const HBXPointerType HBXConfiguration::family = familyType<HBXConfiguration>();

template class HBXDerivedParserFactory<HBXRealm>;
constinit const HBXPointerType HBXRealm::family = familyType<HBXRealm>();

template class HBXDerivedParserFactory<HBXSchedulerTrigger>;
constinit const HBXPointerType HBXSchedulerTrigger::family = familyType<HBXSchedulerTrigger>();

namespace {

constexpr bool kIsDefault = true;
constexpr bool kIsNotDefault = false;

template <class Derived, class Base>
using Entry = HBXDerivedParserFactoryT<Derived, Base>;

Entry<HBXConfiguration, HBXConfiguration> configuration(kIsDefault);
Entry<HBXRealm, HBXRealm> realm(kIsDefault);

// No default: an element whose type names no trigger never reads as one.
Entry<HBXSchedulerOnceTrigger, HBXSchedulerTrigger> onceTrigger(kIsNotDefault);
Entry<HBXSchedulerDailyTrigger, HBXSchedulerTrigger> dailyTrigger(kIsNotDefault);
Entry<HBXSchedulerWeeklyTrigger, HBXSchedulerTrigger> weeklyTrigger(kIsNotDefault);
Entry<HBXSchedulerMonthlyTrigger, HBXSchedulerTrigger> monthlyTrigger(kIsNotDefault);
Entry<HBXSchedulerMonthlyDayOfWeekTrigger, HBXSchedulerTrigger> dayOfWeekTrigger(kIsNotDefault);

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
    &HBXRealm::table,
    &HBXNamedOpStrListProperty::table,
    &HBXSchedulerTrigger::table,
    &HBXSchedulerOnceTrigger::table,
    &HBXSchedulerDailyTrigger::table,
    &HBXSchedulerWeeklyTrigger::table,
    &HBXSchedulerMonthlyTrigger::table,
    &HBXSchedulerMonthlyDayOfWeekTrigger::table,
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
