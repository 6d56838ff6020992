#pragma once

#include <string>

#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// The agent's module for the tree of folders that people put servers and environments into.
class HBX_EXPORT HBXInfrastructureMBase {
public:
    virtual ~HBXInfrastructureMBase();
};

/// How a folder of the tree is shown.
struct HBX_EXPORT HBXInfrastructureFolderAttributes {
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<std::string> icon; ///< its name
    HBXOptionalProperty<int> sortOrder;    ///< among its siblings, the lowest first
    HBXOptionalProperty<bool> hidden;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXInfrastructureFolderAttributes>;
    using Writer = HBXTableWriter<HBXInfrastructureFolderAttributes>;
};

/// A node of the tree: a folder, or an environment that is put into one.
struct HBX_EXPORT HBXInfrastructureNode {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<HBXGUID> parentId;                             ///< unset: at the top
    int type = 0;                                                      ///< kind of node
    HBXOptionalProperty<HBXEID> eid;                                   ///< of an environment
    HBXOptionalProperty<HBXInfrastructureFolderAttributes> attributes; ///< of a folder

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXInfrastructureNode>;
    using Writer = HBXTableWriter<HBXInfrastructureNode>;
};

} // namespace HBX
