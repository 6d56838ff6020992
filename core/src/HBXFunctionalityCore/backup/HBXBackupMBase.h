#pragma once

#include <string>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXEnv.h>
#include <HBXFunctionalityCore/environment/HBXOS.h>
#include <HBXFunctionalityCore/modules/HBXDataStorageMBase.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>
#include <HBXFunctionalityCore/time/HBXTimeInterval.h>
#include <HBXMessage/HBXPolymorphic.h>

/// The records of the backup module. Backups are named by HBXBackupURI.h.
namespace HBX {

/// The agent's module for backups.
class HBX_EXPORT HBXBackupMBase {
public:
    virtual ~HBXBackupMBase();

    /// The name of a type of backups: 0 "full", 1 "incremental", 2 "differential", else "unknown".
    static const char* getBackupTypeString(int type);
};

/// What is left out of a backup.
struct HBX_EXPORT HBXExcludeList {
    std::vector<std::string> paths;
    std::vector<std::string> patterns; ///< of file names, with * and ?

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXExcludeList>;
    using Writer = HBXTableWriter<HBXExcludeList>;
};

/// What a backup holds: the base of a family.
struct HBX_EXPORT HBXBackupData : HBXPolymorphic {
    std::string name;
    HBXOptionalProperty<int> version; ///< of the format
    HBXOptionalProperty<bool> compressed;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXBackupData>;
    using Writer = HBXTableWriter<HBXBackupData>;
};

/// A backup that holds an environment.
struct HBX_EXPORT HBXEnvBackupData : HBXBackupData {
    boost::shared_ptr<HBXEnv> env; ///< as it was; may be null
    HBXOptionalProperty<HBXOS> os;
    HBXOptionalProperty<bool> encrypted;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXEnvBackupData>;
    using Writer = HBXTableWriter<HBXEnvBackupData>;
};

/// A backup.
struct HBX_EXPORT HBXBackup {
    std::string id;
    HBXEID eid;                             ///< the environment that was backed up
    int type = 0;                           ///< see HBXBackupMBase::getBackupTypeString
    std::int64_t time = 0;                  ///< seconds since 1970-01-01 UTC
    HBXOptionalProperty<std::int64_t> size; ///< bytes
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<HBXDSLocation> location;
    HBXOptionalProperty<std::string> parentId; ///< the backup that this one holds the changes to
    boost::shared_ptr<HBXBackupData> data;     ///< may be null

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXBackup>;
    using Writer = HBXTableWriter<HBXBackup>;
};

/// How to make a backup.
struct HBX_EXPORT HBXBackupOptions : HBXPolymorphic {
    int type = 0;
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<int> compression; ///< 0 none, higher is smaller and slower
    HBXOptionalProperty<HBXDSLocation> location;
    HBXOptionalProperty<HBXExcludeList> excludes;
    HBXOptionalProperty<int> keepCount; ///< older backups of the environment are removed
    HBXOptionalProperty<bool> stopEnv;  ///< while it is backed up

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXBackupOptions>;
    using Writer = HBXTableWriter<HBXBackupOptions>;
};

/// Which backups to tell about; none: all.
struct HBX_EXPORT HBXBackupGetInfoOptions : HBXPolymorphic {
    std::vector<std::string> backupIds;
    HBXOptionalProperty<bool> withData;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXBackupGetInfoOptions>;
    using Writer = HBXTableWriter<HBXBackupGetInfoOptions>;
};

/// The same by environment.
struct HBX_EXPORT HBXBackupGetEnvInfoOptions : HBXBackupGetInfoOptions {
    std::vector<HBXEID> eids;
    HBXOptionalProperty<bool> withConfig;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXBackupGetEnvInfoOptions>;
    using Writer = HBXTableWriter<HBXBackupGetEnvInfoOptions>;
};

/// The settings of the module: what holds where the options of a backup say nothing.
struct HBX_EXPORT HBXBackupMConfig {
    HBXDSLocation location;
    HBXOptionalProperty<int> compression;
    HBXOptionalProperty<int> keepCount;
    HBXOptionalProperty<std::int64_t> bandwidth; ///< bytes a second
    HBXOptionalProperty<HBXExcludeList> defaultExcludes;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXBackupMConfig>;
    using Writer = HBXTableWriter<HBXBackupMConfig>;
};

/// A backup that is being made or planned.
struct HBX_EXPORT HBXBackupOperationStuff {
    std::string requestId;
    boost::shared_ptr<HBXBackupOptions> options; ///< may be null
    std::vector<HBXEID> eids;
    boost::shared_ptr<HBXSchedulerTrigger> trigger; ///< null: at once

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXBackupOperationStuff>;
    using Writer = HBXTableWriter<HBXBackupOperationStuff>;
};

/// Told to subscribers when backups are gone.
struct HBX_EXPORT HBXDestroyedBackupsData : HBXPolymorphic {
    std::vector<std::string> backupIds;
    HBXOptionalProperty<HBXEID> eid;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXDestroyedBackupsData>;
    using Writer = HBXTableWriter<HBXDestroyedBackupsData>;
};

/// Told to subscribers when there is a new backup.
struct HBX_EXPORT HBXNewBackupData : HBXPolymorphic {
    HBXBackup backup;
    HBXOptionalProperty<std::string> requestId; ///< the request that it was made for

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXNewBackupData>;
    using Writer = HBXTableWriter<HBXNewBackupData>;
};

/// Which backups to list; what is unset or empty does not restrict.
struct HBX_EXPORT HBXListBackupOptions {
    std::vector<HBXEID> eids;
    std::vector<int> types;
    HBXOptionalProperty<HBXDSLocation> location;
    HBXOptionalProperty<HBXTimeInterval> interval;
    HBXOptionalProperty<bool> latestOnly; ///< of each environment

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXListBackupOptions>;
    using Writer = HBXTableWriter<HBXListBackupOptions>;
};

/// Which files to look for in backups.
struct HBX_EXPORT HBXSearchBackupOptions {
    std::string pattern; ///< of the file name, with * and ?
    std::vector<HBXEID> eids;
    HBXOptionalProperty<HBXTimeInterval> interval;
    HBXOptionalProperty<int> maxCount;
    HBXOptionalProperty<HBXDSLocation> location;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSearchBackupOptions>;
    using Writer = HBXTableWriter<HBXSearchBackupOptions>;
};

/// Which backups to remove.
struct HBX_EXPORT HBXRemoveBackupOptions {
    std::vector<std::string> backupIds;
    HBXOptionalProperty<bool> withDependents; ///< those that hold changes to them, too
    HBXOptionalProperty<bool> force;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXRemoveBackupOptions>;
    using Writer = HBXTableWriter<HBXRemoveBackupOptions>;
};

/// How to restore an environment.
struct HBX_EXPORT HBXRestoreOptions : HBXPolymorphic {
    std::string backupId;
    HBXOptionalProperty<HBXEID> eid; ///< restore as this one, else as what it was
    HBXOptionalProperty<HBXDSLocation> location;
    HBXOptionalProperty<bool> startAfter;
    HBXOptionalProperty<bool> overwrite; ///< an environment that is there
    HBXOptionalProperty<std::string> name;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXRestoreOptions>;
    using Writer = HBXTableWriter<HBXRestoreOptions>;
};

/// How to restore some files of an environment.
struct HBX_EXPORT HBXSelectiveRestoreOptions : HBXPolymorphic {
    std::string backupId;
    HBXOptionalProperty<HBXEID> eid;
    HBXOptionalProperty<HBXDSLocation> location;
    std::vector<std::string> paths;
    HBXOptionalProperty<std::string> targetPath; ///< unset: where they were
    HBXOptionalProperty<bool> keepPermissions;

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXSelectiveRestoreOptions>;
    using Writer = HBXTableWriter<HBXSelectiveRestoreOptions>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXBackupData>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXBackupOptions>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXBackupGetInfoOptions>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXDestroyedBackupsData>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXNewBackupData>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXRestoreOptions>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXSelectiveRestoreOptions>;

} // namespace HBX
