#include "ProgressBar.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include <unistd.h>

namespace HBX::tool {

namespace {

constexpr int kWidth = 40; // of the bar, in characters

/// A name from a message must not steer the terminal.
void maskControls(std::string& text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; },
        '?');
}

} // namespace

ProgressBar::ProgressBar(std::string what, std::int64_t totalBytes)
    : what_(std::move(what)), total_(totalBytes), isWanted_(::isatty(STDERR_FILENO) == 1) {
    maskControls(what_);
    advance(0);
}

ProgressBar::~ProgressBar() {
    if (isWanted_) {
        std::cerr << '\n';
    }
}

void ProgressBar::advance(std::int64_t bytes) {
    done_ += bytes;
    const int percent = total_ > 0 ? static_cast<int>(100 * std::min(done_, total_) / total_) : 100;
    if (isWanted_ && percent != shown_) {
        draw(percent);
    }
}

void ProgressBar::draw(int percent) {
    const auto filled = static_cast<std::size_t>(kWidth * percent / 100);
    std::cerr << '\r' << what_ << " [" << std::string(filled, '=') << std::string(kWidth - filled, ' ')
              << "] " << percent << '%' << std::flush;
    shown_ = percent;
}

} // namespace HBX::tool
