#pragma once

#include <string>
#include <utility>

#include <HBXCommon/HBXLog.h>

namespace HBX::test {

/// Keeps what is logged, in lines of "level text", as long as it lives.
class CapturedLog {
public:
    CapturedLog() {
        previous_ = setLogSink([this](const HBXLogLine& line) {
            text_ += std::to_string(line.level) + ' ' + std::string(line.text) + '\n';
        });
    }
    ~CapturedLog() { setLogSink(std::move(previous_)); }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    /// What was written since the last time.
    std::string take() { return std::exchange(text_, ""); }

private:
    HBXLogSink previous_;
    std::string text_;
};

} // namespace HBX::test
