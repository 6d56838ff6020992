#include "CacheFile.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCore/HBXCacheCheck.h>
#include <HBXCore/HBXMemoryMappedFile.h>

#include "Console.h"
#include "Home.h"

namespace HBX::tool {

namespace {

namespace po = boost::program_options;

constexpr const char* kRebuild = "; \"hbx env check\" says where, \"hbx env put --force\" makes it anew";
constexpr const char* kNoRoom = "; \"hbx env stat\" shows the sizes";

/// What a code of the library means to people.
struct CodeRow {
    int code;
    ExitCode exit;
    const char* what;
    const char* remedy;
};

constexpr CodeRow kCodes[] = {
    {-1, ExitCode::OutputFailed, "no room: the memory, the disk or the file's maximum is used up", kNoRoom},
    {-2, ExitCode::InvalidInput, "the file cannot be mapped", ""},
    {-8, ExitCode::Damaged, "damaged: there is no readable state of the environments", kRebuild},
    {-9, ExitCode::LockedOrTimedOut, "locked: a process does not let go of the lock",
     "; look for a stopped process that has the file open"},
    {-10, ExitCode::OutputFailed, "the file has grown and cannot be mapped again",
     "; give the process more memory"},
    {-11, ExitCode::Damaged, "damaged: the header size is wrong", kRebuild},
    {-12, ExitCode::Damaged, "damaged: the signature is wrong", kRebuild},
    {-13, ExitCode::Damaged, "damaged: the key size is wrong", kRebuild},
    {-14, ExitCode::Damaged, "the file is marked as abandoned", kRebuild},
    {-15, ExitCode::Damaged, "damaged: the format constant is wrong", kRebuild},
    {-16, ExitCode::Damaged, "damaged: the value size is wrong", kRebuild},
};

/// The library's logic without the repairs that HBXEnvCache makes when it opens a file.
class Probe : public HBXCacheLogic<HBXEID, HBXEnvCoreBasic, HBXMappedMemoryManager> {
public:
    explicit Probe(const std::string& path)
        : HBXCacheLogic(path, 0, HBXEnvCache::kMaximumLists, HBXEnvCache::kMaximumFileSize) {}
};

std::string defaultPath() { return homeFolder() + "/environments.cache"; }

std::string requestPath; // "": the default

void demandCache(const CacheFile& file) {
    HBXCacheFileKind kind{};
    if (recogniseCacheFile(file.path, HBXEnvCache::kFormat, kind) != 0) {
        throw Failure(exitCodeOf(errno), file.path + ": " + getErrorMessage());
    }
    if (kind == HBXCacheFileKind::Missing && !file.make) {
        throw Failure(ExitCode::InvalidInput, file.path + ": there is no such cache file");
    }
    if (kind == HBXCacheFileKind::Other && !file.force) {
        throw Failure(ExitCode::InvalidInput, file.path + ": this is no cache file, it is left as it is");
    }
}

void makeFolderOf(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code error;
    if (!folder.empty() && !std::filesystem::exists(folder, error)) {
        std::filesystem::create_directories(folder, error);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
    }
}

/// The library gives a cache up when it does not get the lock. People are to look for the culprit first, so
/// they are told before it tries, and sooner.
int tryLock(const std::string& path) {
    constexpr std::chrono::seconds kPatience{10};
    HBXMemoryMappedFile file(0, kPatience);
    if (file.map(path, HBXMemoryMappedFile::getMemoryPageSize(), kSharedMapping) == nullptr) {
        return -2;
    }
    if (file.lock(false) != 0) {
        return -9;
    }
    file.unlock();
    return 0;
}

/// Whether the file can be opened as it is; the code when not.
int tryOpen(const std::string& path) {
    clearErrorMessage();
    errno = 0;
    if (const int code = tryLock(path); code != 0) {
        return code;
    }
    const boost::intrusive_ptr<Probe> probe(new Probe(path));
    return probe->initialize(true, false);
}

ExitCode exitCodeOfMapping(int error) {
    return error == ETIMEDOUT ? ExitCode::LockedOrTimedOut
           : error == ENOSPC  ? ExitCode::OutputFailed
                              : exitCodeOf(error);
}

} // namespace

void declareCacheOption(po::options_description_easy_init& option) {
    option("cache", po::value<std::string>()->value_name("FILE"),
           "cache file; else environments.cache in $HBX_HOME or in the user's data folder");
}

std::string cachePath(const Arguments& arguments) {
    return arguments.has("cache") ? arguments.get<std::string>("cache") : defaultPath();
}

void useForRequests(const std::string& path) { requestPath = path; }

EnvCache requestCache() { return openCache({requestPath.empty() ? defaultPath() : requestPath, true}); }

EnvCache openCache(const CacheFile& file) {
    demandCache(file);
    if (file.make) {
        makeFolderOf(file.path);
    }
    if (const int code = tryOpen(file.path); !file.force) {
        demandSuccess(file.path, code);
    }
    finiEnvCache();
    initEnvCache(file.path, false);
    EnvCache cache = envCache();
    if (cache == nullptr) {
        demandSuccess(file.path, -2);
    }
    clearErrorMessage(); // of a file that was replaced
    return cache;
}

void demandSuccess(const std::string& path, int code) {
    if (code == 0) {
        return;
    }
    const int error = errno;
    const auto* row = std::find_if(std::begin(kCodes), std::end(kCodes),
                                   [code](const CodeRow& candidate) { return candidate.code == code; });
    if (row == std::end(kCodes)) {
        throw Failure(ExitCode::InvalidInput, path + ": refused with code " + std::to_string(code));
    }
    const std::string& reason = getErrorMessage();
    throw Failure(code == -2 ? exitCodeOfMapping(error) : row->exit,
                  path + ": " + row->what + (reason.empty() ? "" : ": " + reason) + row->remedy);
}

boost::intrusive_ptr<HBXEnvCache::EnvValuesList> listOf(HBXEnvCache& cache) {
    auto list = cache.getEnvList();
    if (!list->holdsSnapshot()) {
        HBXCacheStatus status;
        const int code = cache.getStatus(status);
        demandSuccess(cache.getID(), code != 0 ? code : -8);
    }
    return list;
}

} // namespace HBX::tool
