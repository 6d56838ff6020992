#include <HBXMessage/internal/ElementPath.h>

#include <algorithm>
#include <vector>

namespace HBX::internal {
namespace {

constexpr std::size_t kShownName = 64; // bytes

} // namespace

std::string shownName(const NameList& names, Ref id) {
    const std::string_view name = elementName(names, id);
    if (name.empty()) {
        return std::to_string(id);
    }
    std::string shown(name.substr(0, kShownName));
    std::replace_if(
        shown.begin(), shown.end(), [](unsigned char c) { return c <= ' ' || c == '/' || c == 0x7F; }, '?');
    return name.size() > kShownName ? shown + "..." : shown;
}

std::string elementPath(const Tree& tree, NodeIndex index) {
    std::vector<Ref> ids;
    for (; index != kRoot && index != kNoNode; index = tree[index].parent) {
        ids.push_back(tree[index].id);
    }
    std::string path;
    for (auto id = ids.rbegin(); id != ids.rend(); ++id) {
        path += '/' + shownName(tree.names(), *id);
    }
    return path.empty() ? "/" : path;
}

} // namespace HBX::internal
