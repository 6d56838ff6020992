#pragma once

#include <string>

#include <HBXMessage/HBXAnyRecord.h>

namespace HBX::tool {

/// The record type of this name.
/// @throws Failure  there is none (NothingMatched); names similar ones.
const HBXRecordEntry& recordNamed(const std::string& name);

} // namespace HBX::tool
