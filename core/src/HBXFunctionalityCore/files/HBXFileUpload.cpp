#include <HBXFunctionalityCore/files/HBXFileUpload.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include <HBXFunctionalityCore/files/internal/FileFailure.h>

namespace HBX {

HBXFileUploadInfo::HBXFileUploadInfo(std::string localPath, std::string peerName, std::int64_t bytesSize,
                                     std::int64_t startOffset, const char* bytes)
    : path(std::move(localPath)) {
    name = std::move(peerName);
    size = bytesSize;
    offset = startOffset;
    if (bytes == nullptr) {
        return;
    }
    if (size == kWholeFile) {
        size = static_cast<std::int64_t>(std::strlen(bytes));
    }
    data.assign(bytes, static_cast<std::size_t>(std::max<std::int64_t>(size, 0)));
}

int HBXFileUploadInfo::start() { return 0; }

int HBXFileUploadInfo::fillBuffer(const char*& buffer, int& length) {
    if (size > std::numeric_limits<int>::max() || size != static_cast<std::int64_t>(data.size())) {
        setErrorMessage("Invalid data size of file \"" + name + '"');
        return -1;
    }
    buffer = data.data();
    length = static_cast<int>(size);
    return 0;
}

void HBXFileUploadInfo::finish() {}

HBXFileUploadFromFile::HBXFileUploadFromFile(std::string localPath, std::string peerName,
                                             std::int64_t bytesSize, std::int64_t startOffset)
    : HBXFileUploadInfo(std::move(localPath), std::move(peerName), bytesSize, startOffset, nullptr) {
    if (size == kWholeFile) {
        file_.openRead(path, offset, &size);
        file_.close();
    }
}

int HBXFileUploadFromFile::start() {
    close();
    std::int64_t remaining = 0;
    if (file_.openRead(path, offset, &remaining) != 0) {
        return internal::failOnFile("open src file", path);
    }
    if (size == kWholeFile) {
        size = remaining;
    }
    if (size > remaining) {
        close();
        setErrorMessage("Src file size was changed \"" + path + '"');
        return -1;
    }
    bufferSize_ = std::clamp<std::int64_t>(size, 0, kMostBytes);
    buffer_.reset(new char[static_cast<std::size_t>(bufferSize_)]);
    return 0;
}

int HBXFileUploadFromFile::fillBuffer(const char*& buffer, int& length) {
    std::int64_t count = -1;
    if (length < 1) {
        errno = EINVAL;
    } else {
        // A file that has grown since `start` holds more than the buffer.
        count =
            file_.read(buffer_.get(), static_cast<std::size_t>(std::min<std::int64_t>(length, bufferSize_)));
    }
    buffer = buffer_.get();
    length = static_cast<int>(count);
    return count < 1 ? internal::failOnFile("read from file", path) : 0;
}

void HBXFileUploadFromFile::close() {
    buffer_.reset();
    bufferSize_ = 0;
    file_.close();
}

} // namespace HBX
