#pragma once

#include <HBXCommon/HBXExport.h>
#include <HBXFunctionalityCore/directory/HBXDirControl.h>
#include <HBXFunctionalityCore/directory/HBXDirEntry.h>
#include <HBXFunctionalityCore/directory/HBXDirRealm.h>

namespace HBX {

/// The agent's module for directories and realms.
class HBX_EXPORT HBXDirMBase {
public:
    virtual ~HBXDirMBase();
};

} // namespace HBX
