#pragma once

#include <algorithm>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCore/HBXCacheCheck.h>
#include <HBXCore/HBXCacheLogic.h>
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
    HBXCacheFindings findings;
    if (checkCacheFile(name, format, findings) != 0) {
        return getErrorMessage();
    }
    if (!findings.list.empty()) {
        return std::to_string(findings.list[0].offset) + ": " + findings.list[0].what;
    }
    const std::string lockFile = contentOf(name + ".lock");
    const auto& tables = *reinterpret_cast<const internal::Sidecar*>(lockFile.data());
    if (lockFile.size() < sizeof tables || tables.head.fileSize / 16 != findings.fileSize / 16) {
        return "the noted size is not the file's";
    }
    const bool isAlone =
        std::all_of(std::begin(tables.attachments), std::end(tables.attachments), [](const auto& process) {
            return process.inUse == 0 || process.pid == static_cast<std::uint32_t>(getpid());
        });
    return isAlone ? "" : "a dead process is still attached";
}

} // namespace HBX::test
