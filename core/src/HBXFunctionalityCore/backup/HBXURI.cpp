#include <HBXFunctionalityCore/backup/HBXURI.h>

#include <algorithm>

namespace HBX {

namespace {

bool isTypeCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' ||
           c == '-' || c == '.';
}

} // namespace

void HBXURI::uri(std::string_view text) {
    constexpr std::string_view kMark = "://";
    const std::size_t mark = text.find(kMark);
    const bool isSplit = mark != std::string_view::npos;
    type_ = isSplit ? text.substr(0, mark) : "";
    path_ = isSplit ? text.substr(mark + kMark.size()) : "";
}

bool HBXURI::isValid() const {
    return !type_.empty() && std::all_of(type_.begin(), type_.end(), isTypeCharacter);
}

} // namespace HBX
