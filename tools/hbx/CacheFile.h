#pragma once

#include <string>

#include <boost/program_options/options_description.hpp>

#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

#include "Command.h"

namespace HBX::tool {

using EnvCache = boost::intrusive_ptr<HBXEnvCache>;

/// Where a verb finds the environment cache, and what it may do to open it.
struct CacheFile {
    std::string path;
    bool make = false;  ///< A file that is missing is made, with its folder.
    bool force = false; ///< The file is used whatever it holds, and replaced when it is no cache in order.
};

void declareCacheOption(boost::program_options::options_description_easy_init& option);

/// The file of --cache, else environments.cache in $HBX_HOME, else in the user's data folder.
std::string cachePath(const Arguments& arguments);

/// Names the cache that requests work on, in place of the one that they find without --cache.
void useForRequests(const std::string& path);
/// That cache, opened or made. @throws Failure
EnvCache requestCache();

/// Opens a cache. Unless forced, a file that is missing, not in order, or not ours is left as it is.
/// @throws Failure  with the exit code that fits.
EnvCache openCache(const CacheFile& file);

/// Passes 0; else the line and the exit code for what the library's operation on a cache file answered.
/// @throws Failure
void demandSuccess(const std::string& path, int code);

/// The environments of this moment. @throws Failure
boost::intrusive_ptr<HBXEnvCache::EnvValuesList> listOf(HBXEnvCache& cache);

} // namespace HBX::tool
