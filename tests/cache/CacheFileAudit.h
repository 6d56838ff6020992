#pragma once

#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <HBXCore/HBXCacheLogic.h>
#include <HBXCore/internal/CacheAudit.h>
#include <HBXCore/internal/Sidecar.h>

#include <unistd.h>

#include "support/ScratchFolder.h"

namespace HBX::test {

/// Overwrites what the file holds, without making it a new one.
inline void writeFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

/// Changes bytes of a file where they lie, under those who have it mapped.
inline void writeAt(const std::string& path, std::size_t offset, std::string_view bytes) {
    std::fstream(path, std::ios::in | std::ios::out | std::ios::binary)
        .seekp(static_cast<std::streamoff>(offset))
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}
inline void writeNumberAt(const std::string& path, std::size_t offset, std::uint32_t number) {
    writeAt(path, offset, {reinterpret_cast<const char*>(&number), sizeof number});
}

inline std::uint64_t numberAt(const std::string& content, std::size_t offset) {
    std::uint64_t number = 0;
    std::memcpy(&number, content.data() + offset, sizeof number);
    return number;
}

/// Checks every count and every block of a cache that nobody is changing at the moment, and that nobody but
/// this process stands in its tables.
/// @return what is wrong, empty when nothing is.
inline std::string auditFile(const std::string& name, const HBXCacheFormat& format) {
    std::string content = contentOf(name);
    const std::string lockFile = contentOf(name + ".lock");
    if (content.size() < kCacheMinimumSize || lockFile.size() < sizeof(internal::Sidecar)) {
        return "a file is too short";
    }
    const auto& tables = *reinterpret_cast<const internal::Sidecar*>(lockFile.data());
    if (tables.head.fileSize / 16 != content.size() / 16) {
        return "the noted size is not the file's";
    }
    for (const internal::SidecarAttachment& process : tables.attachments) {
        if (process.inUse != 0 && process.pid != static_cast<std::uint32_t>(getpid())) {
            return "a dead process is still attached";
        }
    }
    std::map<std::uint64_t, std::uint32_t> counts{{numberAt(content, offsetof(HBXCacheHead, snapshot)), 1}};
    for (const internal::SidecarPin& pin : tables.pins) {
        if (!pin.holder.isFree() && tables.attachments[pin.holder.attachment() - 1].inUse == 0) {
            return "a dead process still holds a snapshot";
        }
        if (!pin.holder.isFree() && pin.generation == tables.head.generation) {
            counts[pin.snapshot] += pin.holder.references();
        }
    }
    std::vector<internal::CacheRoot> roots;
    for (const auto& [offset, references] : counts) {
        roots.push_back({offset, references});
    }
    try {
        const internal::CacheView view(content.data(), content.size() / 16 * 16, format);
        internal::CacheAudit(content.data(), view, roots).check();
    } catch (const internal::CacheDamage& damage) {
        return std::to_string(damage.offset) + ": " + damage.what;
    }
    return "";
}

} // namespace HBX::test
