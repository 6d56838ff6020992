#pragma once

#include <string>

namespace HBX::bench {

/// A new folder for files to be measured, removed with its object. It lies in memory where the system offers
/// that, so that no disk writes back what a benchmark has changed.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    std::string file(const std::string& name) const { return path + "/" + name; }

private:
    std::string path;
};

} // namespace HBX::bench
