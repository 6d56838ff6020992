#include "InfoText.h"

#include <map>
#include <string_view>

namespace HBX::tool {

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 20;

/// Fills each parameter once, however often it is named, and counts all bytes that come out: parameters
/// within parameters could otherwise double with every level.
class Filler {
public:
    bool fill(const HBXInfo& info, std::string& out) {
        std::map<std::string_view, std::string> values;
        for (const HBXInfo& parameter : info.parameters) {
            const auto [at, isNew] = values.try_emplace(parameter.name);
            if (isNew && !fill(parameter, at->second)) {
                return false;
            }
        }
        return replaceNames(info.text, values, out);
    }

private:
    bool replaceNames(std::string_view text, const std::map<std::string_view, std::string>& values,
                      std::string& out) {
        for (;;) {
            const std::size_t begin = text.find('%');
            const std::size_t end = begin == std::string_view::npos ? begin : text.find('%', begin + 1);
            if (end == std::string_view::npos) {
                return append(text, out);
            }
            const auto value = values.find(text.substr(begin + 1, end - begin - 1));
            const bool isNamed = value != values.end();
            if (!append(text.substr(0, isNamed ? begin : end), out) ||
                (isNamed && !append(value->second, out))) {
                return false;
            }
            text.remove_prefix(isNamed ? end + 1 : end); // the second mark may begin a name
        }
    }

    bool append(std::string_view text, std::string& out) {
        if (text.size() > left_) {
            return false;
        }
        left_ -= text.size();
        out += text;
        return true;
    }

    std::size_t left_ = kMostBytes;
};

} // namespace

std::optional<std::string> filledText(const HBXInfo& info) {
    std::string text;
    return Filler().fill(info, text) ? std::optional(std::move(text)) : std::nullopt;
}

} // namespace HBX::tool
