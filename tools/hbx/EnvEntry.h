#pragma once

#include <string>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXEnvCache.h>
#include <HBXMessage/HBXRecord.h>

#include "MessageFile.h"

namespace HBX::tool {

/// An environment together with its type, which its own record leaves out of messages.
struct EnvEntry {
    HBXOptionalProperty<std::string> type;
    HBXEnv env;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<EnvEntry>;
    using Writer = HBXTableWriter<EnvEntry>;
};

EnvEntry entryOf(const HBXEnv& env);

/// Whether an environment type can have this name.
bool isTypeName(const std::string& name);

/// The environment of the entry with its type: that of the entry, else the one that it has in the cache, else
/// the generic one. @throws Failure  its configurations are too large for a record.
HBXEnv typedEnv(const EnvEntry& entry, HBXEnvCache& cache);

/// All environments in a message, with the types that stand beside them.
/// @throws Failure  there is none, or one does not read.
std::vector<EnvEntry> loadEntries(const std::string& file);

} // namespace HBX::tool
