#pragma once

#include <string>

#include <HBXFunctionalityCore/security/HBXAuthName.h>

namespace HBX {

/// How to reach another agent or server, and as whom.
struct HBX_EXPORT HBXConnectionInfo {
    std::string address; ///< host name or IP address
    HBXOptionalProperty<int> port;
    HBXOptionalProperty<HBXAuthName> login;
    HBXOptionalProperty<std::string> password; ///< as it is, not encrypted
    HBXOptionalProperty<std::string> scheme;   ///< of the protocol, such as "https"
    HBXOptionalProperty<bool> useTls;
    HBXOptionalProperty<int> timeout; ///< seconds

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXConnectionInfo>;
    using Writer = HBXTableWriter<HBXConnectionInfo>;
};

} // namespace HBX
