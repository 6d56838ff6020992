#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/modules/HBXPerfMonBase.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXPolymorphic.h>

namespace HBX {

/// The agent's module for resources and their limits.
class HBX_EXPORT HBXResourceMBase {
public:
    virtual ~HBXResourceMBase();
};

/// What an environment uses of a resource, and how much it may; all numbers in `unit`.
struct HBX_EXPORT HBXResource : HBXPolymorphic {
    std::string id; ///< which resource
    std::int64_t current = 0;
    HBXOptionalProperty<std::int64_t> soft; ///< from here on there is an alert
    HBXOptionalProperty<std::int64_t> hard; ///< more cannot be had
    HBXOptionalProperty<std::string> category;
    HBXOptionalProperty<std::string> unit; ///< such as "bytes"

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXResource>;
    using Writer = HBXTableWriter<HBXResource>;
};

/// Resources that several environments share.
struct HBX_EXPORT HBXResourcePool : HBXPolymorphic {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<HBXGUID> parentId; ///< the pool that its resources are taken from
    std::vector<boost::shared_ptr<HBXResource>> resources;
    std::vector<HBXEID> members; ///< the environments

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXResourcePool>;
    using Writer = HBXTableWriter<HBXResourcePool>;
};

/// A resource of a pool.
struct HBX_EXPORT HBXPoolResourcePair {
    HBXGUID poolId;
    std::string resourceId; ///< HBXResource::id

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPoolResourcePair>;
    using Writer = HBXTableWriter<HBXPoolResourcePair>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXResource>;
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXResourcePool>;

} // namespace HBX
