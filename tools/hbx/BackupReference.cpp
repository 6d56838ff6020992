#include "BackupReference.h"

#include <HBXFunctionalityCore/backup/HBXBackupURI.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX::tool {

namespace {

constexpr HBXRow kBackupReference[] = {
    member<&BackupReference::id>(3054),
    member<&BackupReference::path>(3074),
    member<&BackupReference::storage>(3057),
};

} // namespace

constinit const HBXRecordTable BackupReference::table =
    recordTable<BackupReference>("BackupReference", 0, 0, kBackupReference);

std::optional<BackupReference> parseBackupReference(const std::string& text) {
    const HBXBackupURI parsed(text);
    if (!parsed.isValid()) {
        return std::nullopt;
    }
    BackupReference reference;
    reference.id = parsed.id();
    reference.path = parsed.path();
    if (parsed.storage() != nullptr) {
        reference.storage = *parsed.storage();
    }
    return reference;
}

std::optional<std::string> textOfReference(const BackupReference& reference, std::string& reason) {
    HBXBackupURI made;
    made.id(reference.id);
    made.path(reference.path.get());
    if (reference.storage.isSet()) {
        made.storage(reference.storage.get());
    }
    HBXURI uri;
    if (made.uri(uri)) {
        reason = reference.id.empty() ? "the identifier is empty" : "the storage cannot be encoded";
        return std::nullopt;
    }
    const HBXBackupURI back(uri.uri());
    if (back.id() != made.id() || back.path() != made.path()) {
        reason =
            uri.uri() + " would read back as identifier \"" + back.id() + "\", path \"" + back.path() + '"';
        return std::nullopt;
    }
    return uri.uri();
}

} // namespace HBX::tool
