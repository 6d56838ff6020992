#pragma once

#include <string>

#include <HBXCommon/HBXExport.h>
#include <HBXCore/HBXCacheFile.h>

namespace HBX {

/// Removes a cache file that is abandoned or unusable, even while other processes have it mapped: they notice
/// at their next operation. A file in good order is left alone, as another process may just have built it.
/// @param error  why, on failure.
/// @return 0, also when there was nothing to remove; -1 with `error`.
HBX_EXPORT int removeLockedCacheFile(const std::string& name, const HBXCacheFormat& format,
                                     std::string& error);

/// Removes the file of this name whatever it holds. Who uses it as a cache notices at the next operation.
HBX_EXPORT int removeCacheFile(const std::string& name, const HBXCacheFormat& format, std::string& error);

} // namespace HBX
