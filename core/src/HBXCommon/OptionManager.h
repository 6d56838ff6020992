#pragma once

#include <HBXCommon/HBXExport.h>

/// Single options of the global configuration file (`getConfigurationFile()`), by their path from the root of
/// its message: "/data/system/configuration/sorting_order". The file is read and parsed at each call, so
/// these are for start-up and reconfiguration. They stand in the library HBXFunctionalityCore, for int.
namespace HBX {

/// Reads one option. Failures are logged at level 1.
/// @param value  set on success, untouched on failure.
/// @return 0; -1: the file's message gives no iterator; 1: every other failure (no file, no such option, or
///         one that does not convert).
template <class T>
int oh_read_global_config_option(const char* path, T* value);

/// Reads one option that has bounds.
/// @param value      set only when the read succeeded and the option lies in range; else the caller's default
///                   stays in it.
/// @param inclusive  whether the bounds themselves are in range.
/// @return what the read gives; so 0 also for an option out of range, which is logged at level 1.
template <class T>
int oh_get_global_config_option(const char* path, T* value, const T* min, const T* max, bool inclusive);

/// The one type of options that there is.
extern template HBX_EXPORT int oh_read_global_config_option<int>(const char*, int*);
extern template HBX_EXPORT int oh_get_global_config_option<int>(const char*, int*, const int*, const int*,
                                                                bool);

} // namespace HBX
