#include <HBXFunctionalityCore/backup/HBXBackupMBase.h>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kExcludeList[] = {
    list<&HBXExcludeList::paths>(3073, 3074),
    list<&HBXExcludeList::patterns>(3075, 3076),
};

constexpr HBXRow kBackupData[] = {
    member<&HBXBackupData::name>(1026),
    member<&HBXBackupData::version>(1223),
    member<&HBXBackupData::compressed>(3060),
};

constexpr HBXRow kEnvBackupData[] = {
    polymorphic<&HBXEnvBackupData::env>(3061),
    member<&HBXEnvBackupData::os>(1277),
    member<&HBXEnvBackupData::encrypted>(3062),
};

constexpr HBXRow kBackup[] = {
    member<&HBXBackup::id>(3054),        member<&HBXBackup::eid>(1870),
    member<&HBXBackup::type>(3055),      member<&HBXBackup::time>(1004),
    member<&HBXBackup::size>(3056),      member<&HBXBackup::description>(1496),
    member<&HBXBackup::location>(3057),  member<&HBXBackup::parentId>(3058),
    polymorphic<&HBXBackup::data>(3059),
};

constexpr HBXRow kBackupOptions[] = {
    member<&HBXBackupOptions::type>(3055),        member<&HBXBackupOptions::description>(1496),
    member<&HBXBackupOptions::compression>(3063), member<&HBXBackupOptions::location>(3057),
    member<&HBXBackupOptions::excludes>(3064),    member<&HBXBackupOptions::keepCount>(3035),
    member<&HBXBackupOptions::stopEnv>(3065),
};

constexpr HBXRow kBackupGetInfoOptions[] = {
    list<&HBXBackupGetInfoOptions::backupIds>(3066, 3054),
    member<&HBXBackupGetInfoOptions::withData>(3067),
};

constexpr HBXRow kBackupGetEnvInfoOptions[] = {
    list<&HBXBackupGetEnvInfoOptions::eids>(3033, 1870),
    member<&HBXBackupGetEnvInfoOptions::withConfig>(3068),
};

constexpr HBXRow kBackupMConfig[] = {
    member<&HBXBackupMConfig::location>(3057),        member<&HBXBackupMConfig::compression>(3063),
    member<&HBXBackupMConfig::keepCount>(3035),       member<&HBXBackupMConfig::bandwidth>(3069),
    member<&HBXBackupMConfig::defaultExcludes>(3064),
};

constexpr HBXRow kBackupOperationStuff[] = {
    member<&HBXBackupOperationStuff::requestId>(3012),
    polymorphic<&HBXBackupOperationStuff::options>(3070),
    list<&HBXBackupOperationStuff::eids>(3033, 1870),
    polymorphic<&HBXBackupOperationStuff::trigger>(3071),
};

constexpr HBXRow kDestroyedBackupsData[] = {
    list<&HBXDestroyedBackupsData::backupIds>(3066, 3054),
    member<&HBXDestroyedBackupsData::eid>(1870),
};

constexpr HBXRow kNewBackupData[] = {
    member<&HBXNewBackupData::backup>(3072),
    member<&HBXNewBackupData::requestId>(3012),
};

constexpr HBXRow kListBackupOptions[] = {
    list<&HBXListBackupOptions::eids>(3033, 1870),   list<&HBXListBackupOptions::types>(3077, 3055),
    member<&HBXListBackupOptions::location>(3057),   member<&HBXListBackupOptions::interval>(3031),
    member<&HBXListBackupOptions::latestOnly>(3078),
};

constexpr HBXRow kSearchBackupOptions[] = {
    member<&HBXSearchBackupOptions::pattern>(3076),  list<&HBXSearchBackupOptions::eids>(3033, 1870),
    member<&HBXSearchBackupOptions::interval>(3031), member<&HBXSearchBackupOptions::maxCount>(1259),
    member<&HBXSearchBackupOptions::location>(3057),
};

constexpr HBXRow kRemoveBackupOptions[] = {
    list<&HBXRemoveBackupOptions::backupIds>(3066, 3054),
    member<&HBXRemoveBackupOptions::withDependents>(3079),
    member<&HBXRemoveBackupOptions::force>(3080),
};

constexpr HBXRow kRestoreOptions[] = {
    member<&HBXRestoreOptions::backupId>(3054),  member<&HBXRestoreOptions::eid>(1870),
    member<&HBXRestoreOptions::location>(3057),  member<&HBXRestoreOptions::startAfter>(3081),
    member<&HBXRestoreOptions::overwrite>(3082), member<&HBXRestoreOptions::name>(1026),
};

constexpr HBXRow kSelectiveRestoreOptions[] = {
    member<&HBXSelectiveRestoreOptions::backupId>(3054),
    member<&HBXSelectiveRestoreOptions::eid>(1870),
    member<&HBXSelectiveRestoreOptions::location>(3057),
    list<&HBXSelectiveRestoreOptions::paths>(3073, 3074),
    member<&HBXSelectiveRestoreOptions::targetPath>(3083),
    member<&HBXSelectiveRestoreOptions::keepPermissions>(3084),
};

} // namespace

constinit const HBXRecordTable HBXExcludeList::table =
    recordTable<HBXExcludeList>("HBXExcludeList", 0, 0, kExcludeList);
constinit const HBXRecordTable HBXBackupData::table =
    recordTable<HBXBackupData>("HBXBackupData", 403, 5023, kBackupData);
constinit const HBXRecordTable HBXEnvBackupData::table =
    recordTable<HBXEnvBackupData, HBXBackupData>("HBXEnvBackupData", 403, 5024, kEnvBackupData);
constinit const HBXRecordTable HBXBackup::table = recordTable<HBXBackup>("HBXBackup", 403, 5022, kBackup);
constinit const HBXRecordTable HBXBackupOptions::table =
    recordTable<HBXBackupOptions>("HBXBackupOptions", 403, 5025, kBackupOptions);
constinit const HBXRecordTable HBXBackupGetInfoOptions::table =
    recordTable<HBXBackupGetInfoOptions>("HBXBackupGetInfoOptions", 403, 5026, kBackupGetInfoOptions);
constinit const HBXRecordTable HBXBackupGetEnvInfoOptions::table =
    recordTable<HBXBackupGetEnvInfoOptions, HBXBackupGetInfoOptions>("HBXBackupGetEnvInfoOptions", 403, 5027,
                                                                     kBackupGetEnvInfoOptions);
constinit const HBXRecordTable HBXBackupMConfig::table =
    recordTable<HBXBackupMConfig>("HBXBackupMConfig", 403, 5028, kBackupMConfig);
constinit const HBXRecordTable HBXBackupOperationStuff::table =
    recordTable<HBXBackupOperationStuff>("HBXBackupOperationStuff", 403, 5029, kBackupOperationStuff);
constinit const HBXRecordTable HBXDestroyedBackupsData::table =
    recordTable<HBXDestroyedBackupsData>("HBXDestroyedBackupsData", 403, 5030, kDestroyedBackupsData);
constinit const HBXRecordTable HBXNewBackupData::table =
    recordTable<HBXNewBackupData>("HBXNewBackupData", 403, 5031, kNewBackupData);
constinit const HBXRecordTable HBXListBackupOptions::table =
    recordTable<HBXListBackupOptions>("HBXListBackupOptions", 403, 5032, kListBackupOptions);
constinit const HBXRecordTable HBXSearchBackupOptions::table =
    recordTable<HBXSearchBackupOptions>("HBXSearchBackupOptions", 403, 5033, kSearchBackupOptions);
constinit const HBXRecordTable HBXRemoveBackupOptions::table =
    recordTable<HBXRemoveBackupOptions>("HBXRemoveBackupOptions", 403, 5034, kRemoveBackupOptions);
constinit const HBXRecordTable HBXRestoreOptions::table =
    recordTable<HBXRestoreOptions>("HBXRestoreOptions", 403, 5035, kRestoreOptions);
constinit const HBXRecordTable HBXSelectiveRestoreOptions::table = recordTable<HBXSelectiveRestoreOptions>(
    "HBXSelectiveRestoreOptions", 403, 5036, kSelectiveRestoreOptions);

HBXBackupMBase::~HBXBackupMBase() = default;

const char* HBXBackupMBase::getBackupTypeString(int type) {
    constexpr const char* kFunction = "HBX::HBXBackupMBase::getBackupTypeString";
    Log2("HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXBackupMBase", __LINE__, kFunction,
         kFunction)
        .put(4, "Calling [%s]", kFunction);
    switch (type) {
    case 0:
        return "full";
    case 1:
        return "incremental";
    case 2:
        return "differential";
    default:
        return "unknown";
    }
}

} // namespace HBX
