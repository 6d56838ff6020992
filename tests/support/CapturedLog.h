#pragma once

#include <string>
#include <utility>

#include <HBXCommon/HBXLog.h>

namespace HBX::test {

/// Keeps what is logged, in lines of "level text", as long as it lives.
class CapturedLog {
public:
    /// @param passedOver  lines that begin so are not kept.
    explicit CapturedLog(const std::string& passedOver = "\n") {
        previous_ = setLogSink([this, passedOver](const HBXLogLine& line) {
            if (!line.text.starts_with(passedOver)) {
                text_ += std::to_string(line.level) + ' ' + std::string(line.text) + '\n';
            }
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
