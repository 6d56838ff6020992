#pragma once

#include <string>
#include <utility>

#include <HBXFunctionalityCore/identity/HBXGUID.h>
#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// The name of somebody who authenticates: a name within a domain, and the realm that knows both.
struct HBX_EXPORT HBXAuthName {
    HBXOptionalProperty<std::string> domain;
    HBXOptionalProperty<std::string> name;
    HBXGUID realmId; ///< HBXRealm::id

    HBXAuthName() = default;
    HBXAuthName(std::string domainName, std::string userName)
        : domain(std::move(domainName)), name(std::move(userName)) {}

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXAuthName>;
    using Writer = HBXTableWriter<HBXAuthName>;
};

} // namespace HBX
