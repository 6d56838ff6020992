#include "ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace HBX::bench {
namespace {

constexpr const char* kMemoryFolder = "/dev/shm";

std::string parentFolder() {
    return access(kMemoryFolder, W_OK) == 0 ? kMemoryFolder : std::filesystem::temp_directory_path().string();
}

} // namespace

ScratchFolder::ScratchFolder() : path(parentFolder() + "/hbx_bench_XXXXXX") {
    if (mkdtemp(path.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), path);
    }
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

} // namespace HBX::bench
