#include <HBXFunctionalityCore/files/HBXFileDownload.h>

#include <utility>

#include <HBXFunctionalityCore/files/internal/FileFailure.h>

namespace HBX {

HBXFileDownloadInfo::HBXFileDownloadInfo(std::string localPath, std::string peerName, std::int64_t bytesSize,
                                         std::int64_t startOffset, const HBXFilerOptions& filerOptions,
                                         const HBXSecurityAttributes* securityAttributes)
    : path(std::move(localPath)), options(filerOptions), attributes(securityAttributes) {
    name = std::move(peerName);
    size = bytesSize;
    offset = startOffset;
}

int HBXFileDownloadInfo::start() { return 0; }

int HBXFileDownloadInfo::saveBuffer(const char* buffer, int length) {
    if (length > 0) {
        data.append(buffer, static_cast<std::size_t>(length));
    }
    return 0;
}

void HBXFileDownloadInfo::finish() {}

int HBXFileDownloadToFile::start() {
    file_.close();
    return file_.openWrite(path, offset, options, attributes) == 0
               ? 0
               : internal::failOnFile("open dst file", path);
}

int HBXFileDownloadToFile::saveBuffer(const char* buffer, int length) {
    if (length < 0) {
        errno = EINVAL;
    } else if (file_.write(buffer, static_cast<std::size_t>(length)) == 0) {
        return 0;
    }
    return internal::failOnFile("write to file", path);
}

} // namespace HBX
