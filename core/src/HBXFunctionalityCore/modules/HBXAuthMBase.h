#pragma once

#include <cstdint>
#include <string>

#include <HBXFunctionalityCore/security/HBXAuthName.h>
#include <HBXFunctionalityCore/security/HBXConnectionInfo.h>

namespace HBX {

/// The agent's module for authentication.
class HBX_EXPORT HBXAuthMBase {
public:
    virtual ~HBXAuthMBase();
};

/// With what a user logs in: a password, or a session that is already open.
struct HBX_EXPORT HBXUserCredentials {
    HBXAuthName user;
    HBXOptionalProperty<std::string> password;  ///< as it is, not encrypted
    HBXOptionalProperty<std::string> sessionId; ///< HBXSession::id

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXUserCredentials>;
    using Writer = HBXTableWriter<HBXUserCredentials>;
};

/// With what a program logs in to the agent.
struct HBX_EXPORT HBXProgCredentials {
    std::string program; ///< its name
    HBXOptionalProperty<std::string> version;
    HBXOptionalProperty<std::string> key;     ///< that the agent gave to it
    HBXOptionalProperty<std::int64_t> issued; ///< when the key was given

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXProgCredentials>;
    using Writer = HBXTableWriter<HBXProgCredentials>;
};

} // namespace HBX
