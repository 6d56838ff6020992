#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/backup/HBXBackupMBase.h>
#include <HBXFunctionalityCore/environment/HBXEnv.h>
#include <HBXFunctionalityCore/environment/HBXVtSettings.h>
#include <HBXFunctionalityCore/identity/HBXEIDList.h>
#include <HBXFunctionalityCore/modules/HBXDevMBase.h>
#include <HBXFunctionalityCore/security/HBXConnectionInfo.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXPolymorphic.h>

namespace HBX {

/// The agent's module for environments.
class HBX_EXPORT HBXEnvMBase {
public:
    virtual ~HBXEnvMBase();
};

/// Which environments are listed, and how much of each.
struct HBX_EXPORT HBXEnvMListOptions {
    std::vector<std::string> types;        ///< environment types; none: all
    HBXOptionalProperty<HBXEID> parentEid; ///< only those below it
    std::vector<int> states;               ///< codes as in HBXEnvStatus; none: all
    HBXOptionalProperty<bool> withConfig;  ///< with their configurations
    HBXOptionalProperty<bool> recursive;   ///< those below the parent's children too

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXEnvMListOptions>;
    using Writer = HBXTableWriter<HBXEnvMListOptions>;
};

/// An environment's configuration as its own software keeps it.
struct HBX_EXPORT HBXNativeConfig : HBXPolymorphic {
    std::string text;                           ///< the file as it is
    HBXOptionalProperty<std::string> format;    ///< such as "xml" or "ini"
    HBXOptionalProperty<std::int64_t> modified; ///< when the file was last changed

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXNativeConfig>;
    using Writer = HBXTableWriter<HBXNativeConfig>;
};

/// What a virtualization technology can do here.
struct HBX_EXPORT HBXVtInfo : HBXPolymorphic {
    HBXVtVersion version;
    HBXOptionalProperty<int> maxEnvs;         ///< how many environments may run; unset: no limit
    std::vector<std::string> features;        ///< names of what it offers
    HBXOptionalProperty<std::string> license; ///< its key

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXVtInfo>;
    using Writer = HBXTableWriter<HBXVtInfo>;
};

/// How an environment is cloned.
struct HBX_EXPORT HBXMigratorCloneOptions : HBXPolymorphic {
    std::string name; ///< of the clone; with several, a number follows
    HBXOptionalProperty<std::string> hostname;
    HBXOptionalProperty<int> count;      ///< how many clones; unset: one
    std::vector<HBXIPAddress> addresses; ///< for the clones, in turn
    HBXOptionalProperty<bool> startAfter;
    HBXOptionalProperty<HBXGUID> sampleId; ///< the HBXEnvSample that the clones are based on

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXMigratorCloneOptions>;
    using Writer = HBXTableWriter<HBXMigratorCloneOptions>;
};

/// How a physical server becomes an environment.
struct HBX_EXPORT HBXP2VMigrateOptions : HBXPolymorphic {
    HBXConnectionInfo source;                     ///< how to reach the server
    boost::shared_ptr<HBXEnvConfig> config;       ///< of the new environment
    std::vector<std::string> disks;               ///< names of those that come along; none: all
    HBXOptionalProperty<HBXExcludeList> excludes; ///< what stays behind
    HBXOptionalProperty<bool> stopServices;       ///< on the source, for the time of the copy

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXP2VMigrateOptions>;
    using Writer = HBXTableWriter<HBXP2VMigrateOptions>;
};

/// How an environment becomes a physical server.
struct HBX_EXPORT HBXV2PMigrateOptions : HBXPolymorphic {
    HBXEID eid;                           ///< the environment
    HBXConnectionInfo destination;        ///< how to reach the server
    std::vector<HBXDisk> disks;           ///< what the server's disks shall look like
    HBXOptionalProperty<bool> keepSource; ///< the environment stays

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXV2PMigrateOptions>;
    using Writer = HBXTableWriter<HBXV2PMigrateOptions>;
};

/// How an environment moves to another host.
struct HBX_EXPORT HBXV2VMigrateOptions : HBXPolymorphic {
    HBXEID eid;                                  ///< the environment
    HBXConnectionInfo destination;               ///< the agent of the other host
    HBXOptionalProperty<bool> live;              ///< it goes on running
    HBXOptionalProperty<bool> keepSource;        ///< the environment stays here too
    HBXOptionalProperty<std::int64_t> bandwidth; ///< bytes per second at most
    HBXOptionalProperty<int> timeout;            ///< seconds until the move is given up

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXV2VMigrateOptions>;
    using Writer = HBXTableWriter<HBXV2VMigrateOptions>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXNativeConfig>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXVtInfo>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXMigratorCloneOptions>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXP2VMigrateOptions>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXV2PMigrateOptions>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXV2VMigrateOptions>;

} // namespace HBX
