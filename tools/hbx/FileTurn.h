#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace HBX::tool {

/// Held from reading a file to replacing it, so that of several programs each changes what the one before has
/// left. Kept on the file itself, which leaves nothing behind.
class FileTurn {
public:
    /// Waits for its turn. Of a file that cannot be opened there is none; who reads it will say why.
    /// @throws Failure  another program does not let go of the file.
    explicit FileTurn(const std::string& file);

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> held_;
};

} // namespace HBX::tool
