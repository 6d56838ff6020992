#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/alert/HBXInfo.h>
#include <HBXFunctionalityCore/environment/HBXIPAddress.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXPolymorphic.h>

namespace HBX {

/// The agent's module for the node that manages a group of servers.
class HBX_EXPORT HBXManagementNodeBase {
public:
    virtual ~HBXManagementNodeBase();
};

/// A client program that the management node knows.
struct HBX_EXPORT HBXRegisteredClient {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<std::string> publicKey; ///< for what the client signs, PEM
    HBXOptionalProperty<std::int64_t> lastSeen;
    HBXOptionalProperty<bool> disabled;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXRegisteredClient>;
    using Writer = HBXTableWriter<HBXRegisteredClient>;
};

/// What the search for a hardware node by its host name found.
struct HBX_EXPORT HBXHNLookupInfoType {
    std::string hostname;
    std::vector<HBXIPAddress> addresses; ///< none: the name is unknown
    HBXOptionalProperty<bool> found;     ///< an agent answers there
    HBXOptionalProperty<HBXEID> eid;     ///< the node, when its agent answers

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXHNLookupInfoType>;
    using Writer = HBXTableWriter<HBXHNLookupInfoType>;
};

/// The outcome of one check.
struct HBX_EXPORT HBXCheck {
    std::string name; ///< of the check
    bool passed = false;
    HBXOptionalProperty<int> severity; ///< of a failure: a level of HBXAlertData
    HBXOptionalProperty<HBXInfo> info; ///< for people

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXCheck>;
    using Writer = HBXTableWriter<HBXCheck>;
};

/// How well a hardware node fits a new environment.
struct HBX_EXPORT HBXCalculateHWNodeNotes : HBXPolymorphic {
    HBXEID eid;                     ///< the node
    std::vector<HBXCheck> checks;   ///< what was looked at
    HBXOptionalProperty<int> score; ///< higher is better; unset: it does not fit at all

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXCalculateHWNodeNotes>;
    using Writer = HBXTableWriter<HBXCalculateHWNodeNotes>;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXCalculateHWNodeNotes>;

} // namespace HBX
