#include "FileOperator.h"

#include <filesystem>
#include <vector>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/files/HBXFileDownload.h>
#include <HBXFunctionalityCore/files/HBXFileUpload.h>
#include <HBXFunctionalityCore/modules/HBXSecurityMBase.h>

#include "Home.h"
#include "ProgressBar.h"

namespace HBX::tool {

namespace {

constexpr std::int64_t kMostBytes = std::int64_t{64} << 20; // of one reply

constexpr int kPath = 3074;
constexpr int kSize = 3056;
constexpr int kOffset = 3114;
constexpr int kChunks = 3507;
constexpr int kFile = 3119;

struct UploadArguments {
    std::string path;
    HBXOptionalProperty<std::int64_t> offset;
    HBXOptionalProperty<std::int64_t> size;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<UploadArguments>;
};

constexpr HBXRow kUploadArguments[] = {
    member<&UploadArguments::path>(kPath),
    member<&UploadArguments::offset>(kOffset),
    member<&UploadArguments::size>(kSize),
};

struct UploadResult {
    std::string name;
    std::int64_t size = 0;
    std::vector<HBXFileInfo> chunks;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<UploadResult>;
    using Writer = HBXTableWriter<UploadResult>;
};

constexpr HBXRow kUploadResult[] = {
    member<&UploadResult::name>(1026),
    member<&UploadResult::size>(kSize),
    list<&UploadResult::chunks>(kChunks, kFile),
};

struct DownloadArguments {
    std::string path;
    HBXOptionalProperty<std::int64_t> offset;
    HBXOptionalProperty<int> flags;
    HBXOptionalProperty<int> mode;
    std::vector<HBXFileInfo> chunks;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<DownloadArguments>;
};

constexpr HBXRow kDownloadArguments[] = {
    member<&DownloadArguments::path>(kPath),          member<&DownloadArguments::offset>(kOffset),
    member<&DownloadArguments::flags>(3122),          member<&DownloadArguments::mode>(3272),
    list<&DownloadArguments::chunks>(kChunks, kFile),
};

struct DownloadResult {
    std::int64_t size = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<DownloadResult>;
    using Writer = HBXTableWriter<DownloadResult>;
};

constexpr HBXRow kDownloadResult[] = {member<&DownloadResult::size>(kSize)};

constinit const HBXRecordTable UploadArguments::table =
    recordTable<UploadArguments>("UploadArguments", 0, 0, kUploadArguments);
constinit const HBXRecordTable UploadResult::table =
    recordTable<UploadResult>("UploadResult", 0, 0, kUploadResult);
constinit const HBXRecordTable DownloadArguments::table =
    recordTable<DownloadArguments>("DownloadArguments", 0, 0, kDownloadArguments);
constinit const HBXRecordTable DownloadResult::table =
    recordTable<DownloadResult>("DownloadResult", 0, 0, kDownloadResult);

Outcome badArgument(const char* reason) { return RequestFailure{RequestError::BadArguments, reason}; }

/// What the library says about the file.
Outcome noAnswer() { return RequestFailure{RequestError::NoAnswer, getErrorMessage()}; }

/// Paths begin at the program's home.
std::string localPath(const std::string& path) {
    return (std::filesystem::path(homeFolder()) / path).string();
}

Outcome readChunks(HBXFileUploadFromFile& file, std::vector<HBXFileInfo>& chunks) {
    ProgressBar bar(file.name, file.size);
    std::int64_t done = 0;
    while (done < file.size) {
        const char* bytes = nullptr;
        int length = static_cast<int>(std::min(file.size - done, HBXFileUploadFromFile::kMostBytes));
        if (file.fillBuffer(bytes, length) != 0) {
            return noAnswer();
        }
        HBXFileInfo& chunk = chunks.emplace_back();
        chunk.name = file.name;
        chunk.size = length;
        chunk.offset = file.offset + done;
        chunk.data.assign(bytes, static_cast<std::size_t>(length));
        done += length;
        bar.advance(length);
    }
    return {};
}

Outcome upload(const UploadArguments& arguments, UploadResult& result) {
    if (arguments.offset.get() < 0 || arguments.size.get() < 0) {
        return badArgument("file_offset and size are not negative");
    }
    const std::filesystem::path path = localPath(arguments.path);
    HBXFileUploadFromFile file(path.string(), path.filename().string(),
                               arguments.size.isSet() ? arguments.size.get() : HBXFileInfo::kWholeFile,
                               arguments.offset.get());
    if (file.start() != 0) {
        return noAnswer();
    }
    if (file.size > kMostBytes) {
        return badArgument("more than 67108864 bytes: ask for parts with file_offset and size");
    }
    result.name = file.name;
    result.size = file.size;
    return readChunks(file, result.chunks);
}

/// Sizes are those of bytes that are there; offsets may be any number.
bool follows(const HBXFileInfo& chunk, const HBXFileInfo& before) {
    return chunk.offset >= before.size && chunk.offset - before.size == before.offset;
}

Outcome checkChunks(const std::vector<HBXFileInfo>& chunks) {
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        if (chunks[i].size != static_cast<std::int64_t>(chunks[i].data.size())) {
            return badArgument("chunks: one has not as many bytes as it says");
        }
        if (i > 0 && !follows(chunks[i], chunks[i - 1])) {
            return badArgument("chunks: one does not follow the one before");
        }
    }
    return {};
}

Outcome writeChunks(HBXFileDownloadToFile& file, const std::vector<HBXFileInfo>& chunks) {
    ProgressBar bar(file.name, file.size);
    for (const HBXFileInfo& chunk : chunks) {
        if (file.saveBuffer(chunk.data.data(), static_cast<int>(chunk.data.size())) != 0) {
            return noAnswer();
        }
        bar.advance(chunk.size);
    }
    return {};
}

Outcome download(const DownloadArguments& arguments, DownloadResult& result) {
    if (arguments.offset.get() < HBXFileInfo::kTruncate) {
        return badArgument("file_offset is -2, -1 or a position");
    }
    if (Outcome failure = checkChunks(arguments.chunks)) {
        return failure;
    }
    for (const HBXFileInfo& chunk : arguments.chunks) {
        result.size += chunk.size;
    }
    HBXFilerOptions options;
    options.flags = arguments.flags.get();
    HBXSecurityAttributes attributes;
    attributes.mode = arguments.mode;
    const std::filesystem::path path = localPath(arguments.path);
    HBXFileDownloadToFile file(path.string(), path.filename().string(), result.size, arguments.offset.get(),
                               options, &attributes);
    return file.start() != 0 ? noAnswer() : writeChunks(file, arguments.chunks);
}

constexpr OperatorVerb kVerbs[] = {
    {3505, answer<UploadArguments, UploadResult, upload>},
    {3506, answer<DownloadArguments, DownloadResult, download>},
};

} // namespace

constinit const Operator kFileOperator{kFile, kVerbs};

} // namespace HBX::tool
