#pragma once

#include <optional>
#include <string>

#include <HBXFunctionalityCore/modules/HBXDataStorageMBase.h>

namespace HBX::tool {

/// The parts of a backup reference.
struct BackupReference {
    std::string id;
    HBXOptionalProperty<std::string> path;
    HBXOptionalProperty<HBXDSLocation> storage;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<BackupReference>;
    using Writer = HBXTableWriter<BackupReference>;
};

/// Nothing when the text is no reference.
std::optional<BackupReference> parseBackupReference(const std::string& text);

/// The text of a reference.
/// @param reason  why there is none: what would be written does not read back as these parts, for example.
std::optional<std::string> textOfReference(const BackupReference& reference, std::string& reason);

} // namespace HBX::tool
