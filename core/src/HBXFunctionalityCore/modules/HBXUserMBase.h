#pragma once

#include <string>
#include <vector>

#include <HBXFunctionalityCore/security/HBXSID.h>

namespace HBX {

/// The agent's module for the users and groups of an environment.
class HBX_EXPORT HBXUserMBase {
public:
    virtual ~HBXUserMBase();
};

/// A user.
struct HBX_EXPORT HBXUser {
    std::string name;
    HBXOptionalProperty<int> uid;
    HBXOptionalProperty<int> gid; ///< of the primary group
    HBXOptionalProperty<HBXSID> sid;
    HBXOptionalProperty<std::string> realName;
    HBXOptionalProperty<std::string> home; ///< folder
    HBXOptionalProperty<std::string> shell;
    std::vector<std::string> groups; ///< names
    HBXOptionalProperty<bool> disabled;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXUser>;
    using Writer = HBXTableWriter<HBXUser>;
};

/// A group.
struct HBX_EXPORT HBXGroup {
    std::string name;
    HBXOptionalProperty<int> gid;
    HBXOptionalProperty<HBXSID> sid;
    HBXOptionalProperty<std::string> description;
    std::vector<std::string> members; ///< names of users

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXGroup>;
    using Writer = HBXTableWriter<HBXGroup>;
};

/// Which numbers new users and groups are given, ends included.
struct HBX_EXPORT HBXUGIDLimits {
    int firstUid = 0;
    int lastUid = 0;
    int firstGid = 0;
    int lastGid = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXUGIDLimits>;
    using Writer = HBXTableWriter<HBXUGIDLimits>;
};

} // namespace HBX
