#include "TimeText.h"

#include <ctime>

#include <HBXCommon/HBXStringUtil.h>

namespace HBX::tool {

namespace {

/// "0000-00-00 00:00:00" with as many of the parts as the text has.
bool hasShapeOfDate(const std::string& text) {
    constexpr std::string_view kShape = "0000-00-00 00:00:00";
    if (text.size() != 10 && text.size() != 16 && text.size() != kShape.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kShape[i] == '0' ? !isDigit : text[i] != kShape[i]) {
            return false;
        }
    }
    return true;
}

bool readFields(const std::string& text, std::tm& fields) {
    constexpr std::string_view kFormat = "%Y-%m-%d %H:%M:%S";
    const std::string format(kFormat.substr(0, text.size() == 10   ? 8
                                               : text.size() == 16 ? 14
                                                                   : kFormat.size()));
    const char* end = hasShapeOfDate(text) ? strptime(text.c_str(), format.c_str(), &fields) : nullptr;
    return end != nullptr && *end == '\0' && fields.tm_sec < 60;
}

int parseDate(const std::string& text, bool isUtc, std::int64_t& moment) {
    std::tm fields{};
    if (!readFields(text, fields)) {
        return -1;
    }
    std::tm normalised = fields;
    normalised.tm_isdst = -1;
    const std::time_t time = isUtc ? timegm(&normalised) : std::mktime(&normalised);
    // A day that the month does not have would have become one of the next month.
    if (normalised.tm_mon != fields.tm_mon || time < 0) {
        return -1;
    }
    moment = time;
    return 0;
}

} // namespace

std::int64_t presentMoment() { return std::time(nullptr); }

int parseMoment(const std::string& text, std::int64_t& moment) {
    std::int64_t seconds = 0;
    if (parseInt64(text, seconds)) {
        if (seconds < 0) {
            return -1;
        }
        moment = seconds;
        return 0;
    }
    const bool isUtc = text.ends_with('Z');
    return parseDate(isUtc ? text.substr(0, text.size() - 1) : text, isUtc, moment);
}

} // namespace HBX::tool
