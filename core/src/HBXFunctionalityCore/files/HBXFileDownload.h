#pragma once

#include <string>

#include <HBXFunctionalityCore/files/HBXFile.h>
#include <HBXFunctionalityCore/files/HBXFileInfo.h>
#include <HBXFunctionalityCore/modules/HBXComputerMBase.h>

namespace HBX {

/// Bytes on their way from a peer, here into `data`. The transfer layer calls `start`, `saveBuffer` for every
/// piece, `finish`. Results: 0, or -1 with the reason in the thread's error message.
class HBX_EXPORT HBXFileDownloadInfo : public HBXFileInfo {
public:
    /// @param securityAttributes  of a new file; may be null, is not owned.
    HBXFileDownloadInfo(std::string localPath, std::string peerName, std::int64_t bytesSize,
                        std::int64_t startOffset, const HBXFilerOptions& filerOptions,
                        const HBXSecurityAttributes* securityAttributes);
    HBXFileDownloadInfo(const HBXFileDownloadInfo&) = delete;
    HBXFileDownloadInfo& operator=(const HBXFileDownloadInfo&) = delete;

    /// Before the first piece.
    virtual int start();
    /// Takes the next piece of `length` bytes.
    virtual int saveBuffer(const char* buffer, int length);
    /// Ends the transfer, also one that was not completed.
    virtual void finish();

    std::string path; ///< the local file
    HBXFilerOptions options;
    const HBXSecurityAttributes* attributes;
};

/// The same into a file.
class HBX_EXPORT HBXFileDownloadToFile : public HBXFileDownloadInfo {
public:
    using HBXFileDownloadInfo::HBXFileDownloadInfo;

    int start() override;
    int saveBuffer(const char* buffer, int length) override;
    void finish() override { file_.close(); }

private:
    HBXFile file_;
};

} // namespace HBX
