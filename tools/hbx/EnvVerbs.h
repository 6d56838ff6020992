#pragma once

#include "Command.h"

namespace HBX::tool {

// The verbs of "hbx env" that have a file of their own.

ExitCode listEnvironments(const Arguments& arguments);
ExitCode showCacheStatus(const Arguments& arguments);
ExitCode showReaders(const Arguments& arguments);
ExitCode checkCache(const Arguments& arguments);
ExitCode watchCache(const Arguments& arguments);

} // namespace HBX::tool
