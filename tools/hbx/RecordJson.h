#pragma once

#include <nlohmann/json.hpp>

#include <HBXMessage/HBXRecord.h>

namespace HBX::tool {

/// A record as JSON, from its table: members by their labels, unset ones left out. A record that has a
/// complex type says it under "type". Numbers and flags are such, every other value is its text.
nlohmann::ordered_json recordJson(const void* record, const HBXRecordTable& table);

} // namespace HBX::tool
