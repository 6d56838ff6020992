#include "Columns.h"

#include <algorithm>

namespace HBX::tool {

namespace {

/// Characters of a UTF-8 text that are seen: none of "ESC [ ... m", which sets colours.
std::size_t widthOf(const std::string& text) {
    std::size_t width = 0;
    bool isColour = false;
    for (const char byte : text) {
        isColour = isColour || byte == '\x1b';
        width += !isColour && (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U ? 1 : 0;
        isColour = isColour && byte != 'm';
    }
    return width;
}

} // namespace

std::string alignColumns(const std::vector<std::vector<std::string>>& lines) {
    std::vector<std::size_t> widths;
    for (const auto& line : lines) {
        widths.resize(std::max(widths.size(), line.size()));
        for (std::size_t i = 0; i < line.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(line[i]));
        }
    }
    std::string text;
    for (const auto& line : lines) {
        std::string shown;
        for (std::size_t i = 0; i < line.size(); ++i) {
            shown += line[i] + std::string(widths[i] - widthOf(line[i]) + 2, ' ');
        }
        shown.erase(shown.find_last_not_of(' ') + 1);
        text += shown + '\n';
    }
    return text;
}

} // namespace HBX::tool
