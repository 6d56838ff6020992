#pragma once

#include <span>
#include <string_view>

#include <HBXCommon/HBXExport.h>
#include <HBXMessage/HBXAnyRecord.h>

namespace HBX {

/// Every record type that the library knows, in the order of the agent's modules. What it is made of also
/// registers the polymorphic families.
HBX_EXPORT std::span<const HBXRecordEntry> recordCatalogue();

/// The record type of this class name, null when there is none.
HBX_EXPORT const HBXRecordEntry* findRecord(std::string_view name);

} // namespace HBX
