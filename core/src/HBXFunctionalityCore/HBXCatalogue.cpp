#include <HBXFunctionalityCore/HBXCatalogue.h>

#include <algorithm>
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

constexpr HBXRecordEntry kRecords[] = {
    // HBXAlertMBase
    recordEntry<HBXEventData>(),
    recordEntry<HBXAlertData>(),
    recordEntry<HBXResourceAlertData>(),
    recordEntry<HBXServerGroupAlertData>(),
    recordEntry<HBXAnyEventData>(),
    recordEntry<HBXAnyData>(),
    recordEntry<HBXEvent>(),
    recordEntry<HBXInfo>(),
    recordEntry<HBXRequestProgressData>(),
    recordEntry<HBXMailTemplate>(),
    recordEntry<HBXMailerAccount>(),
    recordEntry<HBXMailerConfig>(),
    recordEntry<HBXLogClass>(),
    recordEntry<HBXLogInfo>(),
    recordEntry<HBXLogOptions>(),
    recordEntry<HBXLogParameters>(),
    // HBXAuthMBase
    recordEntry<HBXAuthName>(),
    recordEntry<HBXConnectionInfo>(),
    recordEntry<HBXUserCredentials>(),
    recordEntry<HBXProgCredentials>(),
    // HBXSSOBase
    recordEntry<HBXSSOServiceProviderConfig>(),
    recordEntry<HBXSSOServerConfig>(),
    // HBXManagementNodeBase
    recordEntry<HBXRegisteredClient>(),
    recordEntry<HBXHNLookupInfoType>(),
    recordEntry<HBXCheck>(),
    recordEntry<HBXCalculateHWNodeNotes>(),
    // HBXBackupMBase
    recordEntry<HBXExcludeList>(),
    recordEntry<HBXBackupData>(),
    recordEntry<HBXEnvBackupData>(),
    recordEntry<HBXBackup>(),
    recordEntry<HBXBackupOptions>(),
    recordEntry<HBXBackupGetInfoOptions>(),
    recordEntry<HBXBackupGetEnvInfoOptions>(),
    recordEntry<HBXBackupMConfig>(),
    recordEntry<HBXBackupOperationStuff>(),
    recordEntry<HBXDestroyedBackupsData>(),
    recordEntry<HBXNewBackupData>(),
    recordEntry<HBXListBackupOptions>(),
    recordEntry<HBXSearchBackupOptions>(),
    recordEntry<HBXRemoveBackupOptions>(),
    recordEntry<HBXRestoreOptions>(),
    recordEntry<HBXSelectiveRestoreOptions>(),
    // HBXComputerMBase
    recordEntry<HBXGUID>(),
    recordEntry<HBXTimeInterval>(),
    recordEntry<HBXTimeZone>(),
    recordEntry<HBXDate>(),
    recordEntry<HBXOS>(),
    recordEntry<HBXConfiguration>(),
    recordEntry<HBXVocID>(),
    recordEntry<HBXVocPrototype>(),
    recordEntry<HBXSystemInfo>(),
    recordEntry<HBXFileInfo>(),
    recordEntry<HBXFileType>(),
    recordEntry<HBXFileListType>(),
    recordEntry<HBXFileFilter>(),
    recordEntry<HBXFilerOptions>(),
    // HBXPerfData
    recordEntry<HBXCPULoad>(),
    recordEntry<HBXLoadAvg1>(),
    recordEntry<HBXLoadAvg>(),
    recordEntry<HBXUsageStats>(),
    recordEntry<HBXNetTransfer>(),
    recordEntry<HBXNetTransferStat>(),
    recordEntry<HBXStats>(),
    recordEntry<HBXTopInfo>(),
    recordEntry<HBXTopData>(),
    // HBXPerfMonBase
    recordEntry<HBXPerfStat>(),
    recordEntry<HBXMonitorData>(),
    recordEntry<HBXPerfMonActualValue>(),
    recordEntry<HBXPerfMonHistoricalValue>(),
    // HBXDataStorageMBase
    recordEntry<HBXDSLocation>(),
    recordEntry<HBXDSConfiguration>(),
    recordEntry<HBXDSObjectInfo>(),
    recordEntry<HBXFileShare>(),
    recordEntry<HBXDiskImage>(),
    recordEntry<HBXImageInfo>(),
    // HBXDevMBase
    recordEntry<HBXCommonDevice>(),
    recordEntry<HBXScsiDevice>(),
    recordEntry<HBXWindowsDevice>(),
    recordEntry<HBXDeviceInfo>(),
    recordEntry<HBXDevMountInfo>(),
    recordEntry<HBXDiskPartition>(),
    recordEntry<HBXDisk>(),
    recordEntry<HBXForwardPoint>(),
    recordEntry<HBXForwardDevice>(),
    // HBXDirMBase
    recordEntry<HBXDirControl>(),
    recordEntry<HBXDirSortControl>(),
    recordEntry<HBXDirVlvControl>(),
    recordEntry<HBXDirControlList>(),
    recordEntry<HBXDirEntry>(),
    recordEntry<HBXNamedOpStrListProperty>(),
    recordEntry<HBXRealm>(),
    recordEntry<HBXDirRealm>(),
    // HBXEnvMBase
    recordEntry<HBXEID>(),
    recordEntry<HBXEIDList>(),
    recordEntry<HBXEnv>(),
    recordEntry<HBXEnvConfig>(),
    recordEntry<HBXVEnvConfig>(),
    recordEntry<HBXEnvStatus>(),
    recordEntry<HBXQoS>(),
    recordEntry<HBXVtSettings>(),
    recordEntry<HBXVtVersion>(),
    recordEntry<HBXEnvMListOptions>(),
    recordEntry<HBXNativeConfig>(),
    recordEntry<HBXVtInfo>(),
    recordEntry<HBXMigratorCloneOptions>(),
    recordEntry<HBXP2VMigrateOptions>(),
    recordEntry<HBXV2PMigrateOptions>(),
    recordEntry<HBXV2VMigrateOptions>(),
    // HBXFirewallMBase
    recordEntry<HBXFirewallRule>(),
    recordEntry<HBXFirewallRule::NetAddress>(),
    recordEntry<HBXFirewallRule::PortRange>(),
    // HBXIPPoolMBase
    recordEntry<HBXIPAddress>(),
    recordEntry<HBXIPRange>(),
    recordEntry<HBXIPPoolBaseData>(),
    recordEntry<HBXIPPool>(),
    recordEntry<HBXIPPoolAllocationItem>(),
    recordEntry<HBXIPPoolAllocation>(),
    recordEntry<HBXIPPoolUsage>(),
    recordEntry<HBXAllocateIPParams>(),
    // HBXInfrastructureMBase
    recordEntry<HBXInfrastructureFolderAttributes>(),
    recordEntry<HBXInfrastructureNode>(),
    // HBXNetworkMBase
    recordEntry<HBXInterfaceRate>(),
    recordEntry<HBXInterfaceSettings>(),
    recordEntry<HBXNetInterface>(),
    recordEntry<HBXNetDevice>(),
    recordEntry<HBXNetNIC>(),
    recordEntry<HBXNetBridge>(),
    recordEntry<HBXNetVLAN>(),
    recordEntry<HBXNetwork>(),
    // HBXPkgMBase
    recordEntry<HBXPackage>(),
    recordEntry<HBXPackageLinux>(),
    recordEntry<HBXPackageRpm>(),
    recordEntry<HBXPackageDeb>(),
    recordEntry<HBXInstallationPackage>(),
    recordEntry<HBXPackageListModificationData>(),
    recordEntry<HBXPackageManagerOptions>(),
    recordEntry<HBXPackageManagerListOptions>(),
    // HBXPolicyMBase
    recordEntry<HBXPolicy>(),
    recordEntry<HBXObjectToPolicyAssignment>(),
    recordEntry<HBXEffectivePolicyAssignment>(),
    // HBXProcessMBase
    recordEntry<HBXProcessInfo>(),
    recordEntry<HBXProcessList>(),
    recordEntry<HBXProcessMExecParams>(),
    recordEntry<HBXProcessMExecOutput>(),
    // HBXResourceMBase
    recordEntry<HBXResource>(),
    recordEntry<HBXResourcePool>(),
    recordEntry<HBXPoolResourcePair>(),
    // HBXSampleMBase
    recordEntry<HBXEnvSample>(),
    recordEntry<HBXSampleConf>(),
    // HBXSecurityMBase
    recordEntry<HBXSID>(),
    recordEntry<HBXToken>(),
    recordEntry<HBXAce>(),
    recordEntry<HBXSecurityAttributes>(),
    recordEntry<HBXSecurityPrincipal>(),
    recordEntry<HBXRole>(),
    recordEntry<HBXRoleAssignment>(),
    // HBXServiceMBase
    recordEntry<HBXSchedulerTrigger>(),
    recordEntry<HBXSchedulerOnceTrigger>(),
    recordEntry<HBXSchedulerDailyTrigger>(),
    recordEntry<HBXSchedulerWeeklyTrigger>(),
    recordEntry<HBXSchedulerMonthlyTrigger>(),
    recordEntry<HBXSchedulerMonthlyDayOfWeekTrigger>(),
    recordEntry<HBXService>(),
    recordEntry<HBXTask>(),
    recordEntry<HBXScheduleTask>(),
    // HBXSessionMBase
    recordEntry<HBXSession>(),
    recordEntry<HBXPagerSortCondition>(),
    recordEntry<HBXRowSet>(),
    recordEntry<HBXBrowseColumn>(),
    recordEntry<HBXBrowseInfo>(),
    recordEntry<HBXBrowseSettings>(),
    recordEntry<HBXDashboardSection>(),
    recordEntry<HBXScreenInfo>(),
    recordEntry<HBXScreenSettings>(),
    recordEntry<HBXDesktopAction>(),
    recordEntry<HBXDesktopSettings>(),
    recordEntry<HBXPersonalSettings>(),
    recordEntry<HBXProfile>(),
    // HBXSnapshotMBase
    recordEntry<HBXSnapshot>(),
    // HBXUserMBase
    recordEntry<HBXUser>(),
    recordEntry<HBXGroup>(),
    recordEntry<HBXUGIDLimits>(),
};

} // namespace

std::span<const HBXRecordEntry> recordCatalogue() { return kRecords; }

const HBXRecordEntry* findRecord(std::string_view name) {
    const auto* found = std::find_if(std::begin(kRecords), std::end(kRecords),
                                     [&](const HBXRecordEntry& entry) { return entry.table->name == name; });
    return found == std::end(kRecords) ? nullptr : found;
}

} // namespace HBX
