#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace HBX::test {

inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    std::string bytes(stream ? static_cast<std::size_t>(stream.tellg()) : 0, '\0');
    stream.seekg(0).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

/// A folder that is gone at the end.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "hbx-test-XXXXXX";
        folder_ = mkdtemp(pattern.data());
    }
    ~ScratchFolder() { std::filesystem::remove_all(folder_); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string path(const std::string& name = "") const { return name.empty() ? folder_ : folder_ / name; }

    /// The path of the file that holds the bytes now.
    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    std::ptrdiff_t files() const { return std::distance(std::filesystem::directory_iterator(folder_), {}); }

private:
    std::filesystem::path folder_;
};

} // namespace HBX::test
