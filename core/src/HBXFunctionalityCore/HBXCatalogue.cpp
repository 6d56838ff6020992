#include <HBXFunctionalityCore/HBXCatalogue.h>

#include <algorithm>
#include <array>
#include <iterator>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>
#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

// --- families: one registry each, instantiated here and nowhere else ---

template class HBXDerivedParserFactory<HBXEventData>;
constinit const HBXPointerType HBXEventData::family = familyType<HBXEventData>();
template class HBXDerivedParserFactory<HBXEvent>;
constinit const HBXPointerType HBXEvent::family = familyType<HBXEvent>();
template class HBXDerivedParserFactory<HBXRequestProgressData>;
constinit const HBXPointerType HBXRequestProgressData::family = familyType<HBXRequestProgressData>();
template class HBXDerivedParserFactory<HBXLogOptions>;
constinit const HBXPointerType HBXLogOptions::family = familyType<HBXLogOptions>();
template class HBXDerivedParserFactory<HBXBackupData>;
constinit const HBXPointerType HBXBackupData::family = familyType<HBXBackupData>();
template class HBXDerivedParserFactory<HBXBackupOptions>;
constinit const HBXPointerType HBXBackupOptions::family = familyType<HBXBackupOptions>();
template class HBXDerivedParserFactory<HBXBackupGetInfoOptions>;
constinit const HBXPointerType HBXBackupGetInfoOptions::family = familyType<HBXBackupGetInfoOptions>();
template class HBXDerivedParserFactory<HBXDestroyedBackupsData>;
constinit const HBXPointerType HBXDestroyedBackupsData::family = familyType<HBXDestroyedBackupsData>();
template class HBXDerivedParserFactory<HBXNewBackupData>;
constinit const HBXPointerType HBXNewBackupData::family = familyType<HBXNewBackupData>();
template class HBXDerivedParserFactory<HBXRestoreOptions>;
constinit const HBXPointerType HBXRestoreOptions::family = familyType<HBXRestoreOptions>();
template class HBXDerivedParserFactory<HBXSelectiveRestoreOptions>;
constinit const HBXPointerType HBXSelectiveRestoreOptions::family = familyType<HBXSelectiveRestoreOptions>();
template class HBXDerivedParserFactory<HBXP2VMigrateOptions>;
constinit const HBXPointerType HBXP2VMigrateOptions::family = familyType<HBXP2VMigrateOptions>();
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
template class HBXDerivedParserFactory<HBXNativeConfig>;
constinit const HBXPointerType HBXNativeConfig::family = familyType<HBXNativeConfig>();
template class HBXDerivedParserFactory<HBXVtInfo>;
constinit const HBXPointerType HBXVtInfo::family = familyType<HBXVtInfo>();
template class HBXDerivedParserFactory<HBXMigratorCloneOptions>;
constinit const HBXPointerType HBXMigratorCloneOptions::family = familyType<HBXMigratorCloneOptions>();
template class HBXDerivedParserFactory<HBXV2PMigrateOptions>;
constinit const HBXPointerType HBXV2PMigrateOptions::family = familyType<HBXV2PMigrateOptions>();
template class HBXDerivedParserFactory<HBXV2VMigrateOptions>;
constinit const HBXPointerType HBXV2VMigrateOptions::family = familyType<HBXV2VMigrateOptions>();
template class HBXDerivedParserFactory<HBXCalculateHWNodeNotes>;
constinit const HBXPointerType HBXCalculateHWNodeNotes::family = familyType<HBXCalculateHWNodeNotes>();
template class HBXDerivedParserFactory<HBXCommonDevice>;
constinit const HBXPointerType HBXCommonDevice::family = familyType<HBXCommonDevice>();
template class HBXDerivedParserFactory<HBXNetDevice>;
constinit const HBXPointerType HBXNetDevice::family = familyType<HBXNetDevice>();
template class HBXDerivedParserFactory<HBXPackage>;
constinit const HBXPointerType HBXPackage::family = familyType<HBXPackage>();
template class HBXDerivedParserFactory<HBXPackageListModificationData>;
constinit const HBXPointerType HBXPackageListModificationData::family =
    familyType<HBXPackageListModificationData>();
template class HBXDerivedParserFactory<HBXResource>;
constinit const HBXPointerType HBXResource::family = familyType<HBXResource>();
template class HBXDerivedParserFactory<HBXResourcePool>;
constinit const HBXPointerType HBXResourcePool::family = familyType<HBXResourcePool>();

namespace {

constexpr bool kIsDefault = true;
constexpr bool kIsNotDefault = false;

template <class Derived, class Base>
using Entry = HBXDerivedParserFactoryT<Derived, Base>;

Entry<HBXAnyEventData, HBXEventData> anyEventData(kIsDefault);
Entry<HBXResourceAlertData, HBXEventData> resourceAlertData(kIsNotDefault);
Entry<HBXServerGroupAlertData, HBXEventData> serverGroupAlertData(kIsNotDefault);
Entry<HBXEvent, HBXEvent> event(kIsDefault);
Entry<HBXRequestProgressData, HBXRequestProgressData> requestProgressData(kIsDefault);
Entry<HBXLogOptions, HBXLogOptions> logOptions(kIsDefault);

Entry<HBXBackupData, HBXBackupData> backupData(kIsDefault);
Entry<HBXEnvBackupData, HBXBackupData> envBackupData(kIsNotDefault);
Entry<HBXBackupOptions, HBXBackupOptions> backupOptions(kIsDefault);
Entry<HBXBackupGetInfoOptions, HBXBackupGetInfoOptions> backupInfoOptions(kIsDefault);
Entry<HBXBackupGetEnvInfoOptions, HBXBackupGetInfoOptions> backupEnvInfoOptions(kIsNotDefault);
Entry<HBXDestroyedBackupsData, HBXDestroyedBackupsData> destroyedBackups(kIsDefault);
Entry<HBXNewBackupData, HBXNewBackupData> newBackup(kIsDefault);
Entry<HBXRestoreOptions, HBXRestoreOptions> restoreOptions(kIsDefault);
Entry<HBXSelectiveRestoreOptions, HBXSelectiveRestoreOptions> selectiveRestoreOptions(kIsDefault);

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
Entry<HBXNativeConfig, HBXNativeConfig> nativeConfig(kIsDefault);
Entry<HBXVtInfo, HBXVtInfo> vtInfo(kIsDefault);
Entry<HBXMigratorCloneOptions, HBXMigratorCloneOptions> cloneOptions(kIsDefault);
Entry<HBXP2VMigrateOptions, HBXP2VMigrateOptions> p2vOptions(kIsDefault);
Entry<HBXV2PMigrateOptions, HBXV2PMigrateOptions> v2pOptions(kIsDefault);
Entry<HBXV2VMigrateOptions, HBXV2VMigrateOptions> v2vOptions(kIsDefault);

Entry<HBXCalculateHWNodeNotes, HBXCalculateHWNodeNotes> nodeNotes(kIsDefault);

Entry<HBXCommonDevice, HBXCommonDevice> device(kIsDefault);
Entry<HBXScsiDevice, HBXCommonDevice> scsiDevice(kIsNotDefault);
Entry<HBXWindowsDevice, HBXCommonDevice> windowsDevice(kIsNotDefault);

Entry<HBXNetDevice, HBXNetDevice> netDevice(kIsDefault);
Entry<HBXNetBridge, HBXNetDevice> netBridge(kIsNotDefault);
Entry<HBXNetNIC, HBXNetDevice> netNIC(kIsNotDefault);
Entry<HBXNetVLAN, HBXNetDevice> netVLAN(kIsNotDefault);

Entry<HBXPackage, HBXPackage> package(kIsDefault);
Entry<HBXPackageDeb, HBXPackage> packageDeb(kIsNotDefault);
Entry<HBXPackageRpm, HBXPackage> packageRpm(kIsNotDefault);
Entry<HBXPackageListModificationData, HBXPackageListModificationData> packageChanges(kIsDefault);

Entry<HBXResource, HBXResource> resource(kIsDefault);
Entry<HBXResourcePool, HBXResourcePool> resourcePool(kIsDefault);

template <HBXRecord... Records>
constexpr std::array<HBXRecordEntry, sizeof...(Records)> module(std::string_view name) {
    return {recordEntry<Records>(name)...};
}

template <std::size_t... Sizes>
constexpr std::array<HBXRecordEntry, (Sizes + ...)>
joined(const std::array<HBXRecordEntry, Sizes>&... modules) {
    std::array<HBXRecordEntry, (Sizes + ...)> all{};
    auto* next = all.begin();
    ((next = std::copy(modules.begin(), modules.end(), next)), ...);
    return all;
}

constexpr auto kRecords = joined(
    module<HBXEventData, HBXAlertData, HBXResourceAlertData, HBXServerGroupAlertData, HBXAnyEventData,
           HBXAnyData, HBXEvent, HBXInfo, HBXRequestProgressData, HBXMailTemplate, HBXMailerAccount,
           HBXMailerConfig, HBXLogClass, HBXLogInfo, HBXLogOptions, HBXLogParameters>("HBXAlertMBase"),
    module<HBXAuthName, HBXConnectionInfo, HBXUserCredentials, HBXProgCredentials>("HBXAuthMBase"),
    module<HBXSSOServiceProviderConfig, HBXSSOServerConfig>("HBXSSOBase"),
    module<HBXRegisteredClient, HBXHNLookupInfoType, HBXCheck, HBXCalculateHWNodeNotes>(
        "HBXManagementNodeBase"),
    module<HBXExcludeList, HBXBackupData, HBXEnvBackupData, HBXBackup, HBXBackupOptions,
           HBXBackupGetInfoOptions, HBXBackupGetEnvInfoOptions, HBXBackupMConfig, HBXBackupOperationStuff,
           HBXDestroyedBackupsData, HBXNewBackupData, HBXListBackupOptions, HBXSearchBackupOptions,
           HBXRemoveBackupOptions, HBXRestoreOptions, HBXSelectiveRestoreOptions>("HBXBackupMBase"),
    module<HBXGUID, HBXTimeInterval, HBXTimeZone, HBXDate, HBXOS, HBXConfiguration, HBXVocID, HBXVocPrototype,
           HBXSystemInfo, HBXFileInfo, HBXFileType, HBXFileListType, HBXFileFilter, HBXFilerOptions>(
        "HBXComputerMBase"),
    module<HBXCPULoad, HBXLoadAvg1, HBXLoadAvg, HBXUsageStats, HBXNetTransfer, HBXNetTransferStat, HBXStats,
           HBXTopInfo, HBXTopData>("HBXPerfData"),
    module<HBXPerfStat, HBXMonitorData, HBXPerfMonActualValue, HBXPerfMonHistoricalValue>("HBXPerfMonBase"),
    module<HBXDSLocation, HBXDSConfiguration, HBXDSObjectInfo, HBXFileShare, HBXDiskImage, HBXImageInfo>(
        "HBXDataStorageMBase"),
    module<HBXCommonDevice, HBXScsiDevice, HBXWindowsDevice, HBXDeviceInfo, HBXDevMountInfo, HBXDiskPartition,
           HBXDisk, HBXForwardPoint, HBXForwardDevice>("HBXDevMBase"),
    module<HBXDirControl, HBXDirSortControl, HBXDirVlvControl, HBXDirControlList, HBXDirEntry,
           HBXNamedOpStrListProperty, HBXRealm, HBXDirRealm>("HBXDirMBase"),
    module<HBXEID, HBXEIDList, HBXEnv, HBXEnvConfig, HBXVEnvConfig, HBXEnvStatus, HBXQoS, HBXVtSettings,
           HBXVtVersion, HBXEnvMListOptions, HBXNativeConfig, HBXVtInfo, HBXMigratorCloneOptions,
           HBXP2VMigrateOptions, HBXV2PMigrateOptions, HBXV2VMigrateOptions>("HBXEnvMBase"),
    module<HBXFirewallRule, HBXFirewallRule::NetAddress, HBXFirewallRule::PortRange>("HBXFirewallMBase"),
    module<HBXIPAddress, HBXIPRange, HBXIPPoolBaseData, HBXIPPool, HBXIPPoolAllocationItem,
           HBXIPPoolAllocation, HBXIPPoolUsage, HBXAllocateIPParams>("HBXIPPoolMBase"),
    module<HBXInfrastructureFolderAttributes, HBXInfrastructureNode>("HBXInfrastructureMBase"),
    module<HBXInterfaceRate, HBXInterfaceSettings, HBXNetInterface, HBXNetDevice, HBXNetNIC, HBXNetBridge,
           HBXNetVLAN, HBXNetwork>("HBXNetworkMBase"),
    module<HBXPackage, HBXPackageLinux, HBXPackageRpm, HBXPackageDeb, HBXInstallationPackage,
           HBXPackageListModificationData, HBXPackageManagerOptions, HBXPackageManagerListOptions>(
        "HBXPkgMBase"),
    module<HBXPolicy, HBXObjectToPolicyAssignment, HBXEffectivePolicyAssignment>("HBXPolicyMBase"),
    module<HBXProcessInfo, HBXProcessList, HBXProcessMExecParams, HBXProcessMExecOutput>("HBXProcessMBase"),
    module<HBXResource, HBXResourcePool, HBXPoolResourcePair>("HBXResourceMBase"),
    module<HBXEnvSample, HBXSampleConf>("HBXSampleMBase"),
    module<HBXSID, HBXToken, HBXAce, HBXSecurityAttributes, HBXSecurityPrincipal, HBXRole, HBXRoleAssignment>(
        "HBXSecurityMBase"),
    module<HBXSchedulerTrigger, HBXSchedulerOnceTrigger, HBXSchedulerDailyTrigger, HBXSchedulerWeeklyTrigger,
           HBXSchedulerMonthlyTrigger, HBXSchedulerMonthlyDayOfWeekTrigger, HBXService, HBXTask,
           HBXScheduleTask>("HBXServiceMBase"),
    module<HBXSession, HBXPagerSortCondition, HBXRowSet, HBXBrowseColumn, HBXBrowseInfo, HBXBrowseSettings,
           HBXDashboardSection, HBXScreenInfo, HBXScreenSettings, HBXDesktopAction, HBXDesktopSettings,
           HBXPersonalSettings, HBXProfile>("HBXSessionMBase"),
    module<HBXSnapshot>("HBXSnapshotMBase"), module<HBXUser, HBXGroup, HBXUGIDLimits>("HBXUserMBase"));

} // namespace

std::span<const HBXRecordEntry> recordCatalogue() { return kRecords; }

const HBXRecordEntry* findRecord(std::string_view name) {
    const auto* found = std::find_if(std::begin(kRecords), std::end(kRecords),
                                     [&](const HBXRecordEntry& entry) { return entry.table->name == name; });
    return found == std::end(kRecords) ? nullptr : found;
}

} // namespace HBX
