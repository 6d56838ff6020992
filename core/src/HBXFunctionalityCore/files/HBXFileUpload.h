#pragma once

#include <memory>
#include <string>

#include <HBXFunctionalityCore/files/HBXFile.h>
#include <HBXFunctionalityCore/files/HBXFileInfo.h>

namespace HBX {

/// Bytes on their way to a peer, here from memory. The transfer layer calls `start`, then `fillBuffer` until
/// it has `size` bytes, then `finish`. Results: 0, or -1 with the reason in the thread's error message.
class HBX_EXPORT HBXFileUploadInfo : public HBXFileInfo {
public:
    /// @param bytes  null: `data` is filled later. Else `bytesSize` of them are copied; kWholeFile: up to the
    ///               zero byte.
    HBXFileUploadInfo(std::string localPath, std::string peerName, std::int64_t bytesSize,
                      std::int64_t startOffset, const char* bytes);
    HBXFileUploadInfo(const HBXFileUploadInfo&) = delete;
    HBXFileUploadInfo& operator=(const HBXFileUploadInfo&) = delete;

    /// Before the first piece.
    virtual int start();
    /// Hands out the next piece.
    /// @param buffer  receives its place, good until the next call.
    /// @param length  on entry the most that the caller takes, of which a transfer from memory takes no
    ///                notice: it hands out all at once; receives the length of the piece.
    virtual int fillBuffer(const char*& buffer, int& length);
    /// Ends the transfer, also one that was not completed.
    virtual void finish();

    std::string path; ///< the local file
};

/// The same from a file. `size` is not counted down: the caller knows how much it has asked for.
class HBX_EXPORT HBXFileUploadFromFile : public HBXFileUploadInfo {
public:
    static constexpr std::int64_t kMostBytes = 524288; ///< in one piece

    /// kWholeFile is replaced by what the file holds from the offset on; it stays when that cannot be told,
    /// `start` then tries again.
    HBXFileUploadFromFile(std::string localPath, std::string peerName, std::int64_t bytesSize = kWholeFile,
                          std::int64_t startOffset = 0);
    ~HBXFileUploadFromFile() override { close(); }

    /// Fails when the file holds less than `size` by now.
    int start() override;
    /// The end of the file is a failure.
    int fillBuffer(const char*& buffer, int& length) override;
    /// Closes the file.
    void finish() override { close(); }

private:
    void close();

    HBXFile file_;
    std::unique_ptr<char[]> buffer_; ///< only between `start` and `finish`
    std::int64_t bufferSize_ = 0;
};

} // namespace HBX
