#pragma once

#include <cstdint>
#include <string>

namespace HBX::tool {

/// How far a transfer is, on standard error; nothing when that is no terminal.
class ProgressBar {
public:
    ProgressBar(std::string what, std::int64_t totalBytes);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    /// Leaves the bar as it is and goes to the next line.
    ~ProgressBar();

    void advance(std::int64_t bytes);

private:
    void draw(int percent);

    std::string what_;
    std::int64_t total_;
    std::int64_t done_ = 0;
    int shown_ = -1; ///< per cent; -1 before the bar is drawn
    bool isWanted_;
};

} // namespace HBX::tool
