#pragma once

#include <HBXFunctionalityCore/alert/HBXInfo.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// An environment as the parameter "env" of a text: its title where the cache of the process is open and
/// knows it, else its identifier.
struct HBX_EXPORT HBXEnvInfo : HBXInfo {
    explicit HBXEnvInfo(const HBXEID& eid);
};

} // namespace HBX
