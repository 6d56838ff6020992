#pragma once

#include <cstdint>
#include <string>

#include <HBXCommon/HBXExport.h>

namespace HBX {

struct HBXFilerOptions;
struct HBXSecurityAttributes;

/// Owns the descriptor of a file. Failed operations give -1 with errno.
class HBX_EXPORT HBXFile {
public:
    HBXFile() = default;
    HBXFile(HBXFile&& other) noexcept;
    HBXFile& operator=(HBXFile&& other) noexcept;
    ~HBXFile() { close(); }

    /// Whether a file is open.
    [[nodiscard]] bool isOpened() const { return descriptor_ >= 0; }
    /// Closes it, if one is open.
    void close();

    /// Opens a file, unless one is open already, and goes to an offset above 0. The file is closed again when
    /// that, or what `remaining` asks, fails.
    /// @param flags       of open(2).
    /// @param attributes  may be null; their mode, else octal 777, is that of a new file, under the umask.
    /// @param remaining   unless null: receives the number of bytes from the offset to the end, at least 0.
    int openFile(const std::string& path, int flags, std::int64_t offset,
                 const HBXSecurityAttributes* attributes, std::int64_t* remaining);
    /// For reading; a null `remaining` is not asked.
    int openRead(const std::string& path, std::int64_t offset, std::int64_t* remaining);
    /// Creates the file; one that is there already is taken only if the options allow overwriting.
    /// @param offset  HBXFileInfo::kAppend, kTruncate or a position. Bytes behind what is written then stay.
    int openWrite(const std::string& path, std::int64_t offset, const HBXFilerOptions& options,
                  const HBXSecurityAttributes* attributes);

    /// One piece, not interrupted by signals: the number of bytes, 0 at the end.
    std::int64_t read(char* bytes, std::size_t size);
    /// 0 when all is written. -1 with ENOSPC when the system took only a part.
    int write(const char* bytes, std::size_t size);

private:
    int descriptor_ = -1;
};

} // namespace HBX
