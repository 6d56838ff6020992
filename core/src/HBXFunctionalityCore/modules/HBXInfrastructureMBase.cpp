#include <HBXFunctionalityCore/modules/HBXInfrastructureMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kInfrastructureFolderAttributes[] = {
    member<&HBXInfrastructureFolderAttributes::description>(1496),
    member<&HBXInfrastructureFolderAttributes::icon>(3191),
    member<&HBXInfrastructureFolderAttributes::sortOrder>(3192),
    member<&HBXInfrastructureFolderAttributes::hidden>(3193),
};

constexpr HBXRow kInfrastructureNode[] = {
    member<&HBXInfrastructureNode::id>(1010),       member<&HBXInfrastructureNode::name>(1026),
    member<&HBXInfrastructureNode::parentId>(3135), member<&HBXInfrastructureNode::type>(3194),
    member<&HBXInfrastructureNode::eid>(1870),      member<&HBXInfrastructureNode::attributes>(3195),
};

} // namespace

constinit const HBXRecordTable HBXInfrastructureFolderAttributes::table =
    recordTable<HBXInfrastructureFolderAttributes>("HBXInfrastructureFolderAttributes", 411, 5091,
                                                   kInfrastructureFolderAttributes);
constinit const HBXRecordTable HBXInfrastructureNode::table =
    recordTable<HBXInfrastructureNode>("HBXInfrastructureNode", 411, 5092, kInfrastructureNode);

HBXInfrastructureMBase::~HBXInfrastructureMBase() = default;

} // namespace HBX
