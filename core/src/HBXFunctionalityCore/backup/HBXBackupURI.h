#pragma once

#include <string>
#include <utility>

#include <HBXFunctionalityCore/backup/HBXURI.h>
#include <HBXFunctionalityCore/modules/HBXDataStorageMBase.h>

namespace HBX {

/// Names a backup: its identifier, a path inside it, and where it is kept if that is not the usual place. As
/// text "backup://STORAGE&ID/PATH" (docs/backups.md).
///
/// An identifier has one "/" of its own: reading takes everything up to the second one for it, so one that
/// has none does not come back.
class HBX_EXPORT HBXBackupURI {
public:
    HBXBackupURI() = default;
    /// Ask `isValid` whether the text was a reference. A storage that cannot be read is logged.
    explicit HBXBackupURI(const std::string& text);

    /// The backup's identifier.
    [[nodiscard]] const std::string& id() const { return id_; }
    void id(const std::string& value) { id_ = value; }
    /// The path inside the backup; empty: the whole of it.
    [[nodiscard]] const std::string& path() const { return path_; }
    void path(const std::string& value) { path_ = value; }
    /// Null when there is none.
    [[nodiscard]] const HBXDSLocation* storage() const {
        return storage_.isSet() ? &storage_.get() : nullptr;
    }
    /// Says where the backup is kept.
    void storage(const HBXDSLocation& value) { storage_.set(value); }

    /// Whether it names anything: the identifier is not empty.
    [[nodiscard]] bool isValid() const { return !id_.empty(); }
    /// @return true on *failure*, with `out` as it was: the reference is not valid, or its storage cannot be
    ///         encoded.
    bool uri(HBXURI& out) const;

private:
    static constexpr const char* TYPE = "backup";

    std::string id_;
    std::string path_;
    HBXOptionalProperty<HBXDSLocation> storage_;
};

} // namespace HBX
