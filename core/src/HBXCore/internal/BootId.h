#pragma once

#include <HBXCore/internal/Sidecar.h>

namespace HBX::internal {

/// Notes that the cache file belongs to the present run of the system.
void setThisBoot(SidecarHead& head);
/// Whether the file was changed last in the present run of the system.
bool isThisBoot(const SidecarHead& head);

} // namespace HBX::internal
