#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXIPAddress.h>
#include <HBXFunctionalityCore/environment/HBXOS.h>
#include <HBXFunctionalityCore/files/HBXFileInfo.h>
#include <HBXFunctionalityCore/modules/HBXPerfData.h>
#include <HBXFunctionalityCore/time/HBXDate.h>
#include <HBXFunctionalityCore/time/HBXTimeInterval.h>
#include <HBXFunctionalityCore/time/HBXTimeZone.h>

namespace HBX {

/// The agent's module for the computer as a whole: its system, its clock, its files.
class HBX_EXPORT HBXComputerMBase {
public:
    virtual ~HBXComputerMBase();
};

/// What a computer is.
struct HBX_EXPORT HBXSystemInfo {
    std::string hostname;
    HBXOptionalProperty<HBXOS> os;
    HBXOptionalProperty<std::string> architecture; ///< of the processors
    HBXOptionalProperty<int> cpuCount;             ///< logical processors
    HBXOptionalProperty<std::string> cpuModel;
    HBXOptionalProperty<std::int64_t> memory; ///< bytes
    HBXOptionalProperty<std::int64_t> bootTime;
    std::vector<HBXIPAddress> addresses;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSystemInfo>;
    using Writer = HBXTableWriter<HBXSystemInfo>;
};

/// Kinds of files, several of them together.
struct HBX_EXPORT HBXFileType {
    /// Bits of the mask.
    enum Kind : int { File = 1, Directory = 2, Link = 4, Device = 8, Pipe = 16, Socket = 32 };

    int mask = 0; ///< of Kind

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXFileType>;
    using Writer = HBXTableWriter<HBXFileType>;
};

/// The files of a folder.
struct HBX_EXPORT HBXFileListType {
    std::string path;                      ///< of the folder
    HBXOptionalProperty<HBXFileType> type; ///< the kinds that were asked for; unset: all
    std::vector<HBXFileInfo> files;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXFileListType>;
    using Writer = HBXTableWriter<HBXFileListType>;
};

/// Which files are wanted; an unset member does not matter.
struct HBX_EXPORT HBXFileFilter {
    HBXOptionalProperty<std::string> pattern; ///< of the name, with * and ?
    HBXOptionalProperty<HBXFileType> type;
    HBXOptionalProperty<std::int64_t> minSize;     ///< bytes
    HBXOptionalProperty<std::int64_t> maxSize;     ///< bytes
    HBXOptionalProperty<HBXTimeInterval> modified; ///< the last change lies within
    HBXOptionalProperty<bool> caseSensitive;       ///< how the pattern is compared; unset: as the system does

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXFileFilter>;
    using Writer = HBXTableWriter<HBXFileFilter>;
};

/// How files are copied, moved or removed.
struct HBX_EXPORT HBXFilerOptions {
    /// Bits of the flags.
    enum Flag : int { Overwrite = 1, Recursive = 2, KeepPermissions = 4, KeepTimes = 8, FollowLinks = 16 };

    int flags = 0; ///< of Flag

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXFilerOptions>;
    using Writer = HBXTableWriter<HBXFilerOptions>;
};

} // namespace HBX
