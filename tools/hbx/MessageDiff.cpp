#include "MessageDiff.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace HBX::tool {

namespace {

using Kind = Difference::Kind;
using Children = std::vector<Outline>;

bool same(const Outline& left, const Outline& right) { return left.hash == right.hash && left == right; }

/// "run", or "run[2]" where there are several.
std::string stepTo(const Children& siblings, std::size_t index) {
    const std::string& tag = siblings[index].tag;
    const auto isNamesake = [&](const Outline& element) { return element.tag == tag; };
    const auto position = siblings.begin() + static_cast<std::ptrdiff_t>(index);
    const auto before = std::count_if(siblings.begin(), position, isNamesake);
    const bool single = before == 0 && std::none_of(position + 1, siblings.end(), isNamesake);
    return single ? tag : tag + '[' + std::to_string(before + 1) + ']';
}

class Comparison {
public:
    void compare(const std::string& path, const Outline& left, const Outline& right) {
        compareAttributes(path, left, right);
        addChange(path, "value", left.value, right.value);
        compareChildren(path, left.children, right.children);
    }

    std::vector<Difference> found;

private:
    void addChange(const std::string& path, const std::string& what, const std::optional<std::string>& left,
                   const std::optional<std::string>& right) {
        if (left != right) {
            found.push_back({Kind::Changed, path.empty() ? "/" : path, what, left, right});
        }
    }

    void addOneSided(Kind kind, const std::string& path, const Children& siblings, std::size_t index) {
        found.push_back({kind, path + '/' + stepTo(siblings, index), "", {}, {}});
    }

    void compareAttributes(const std::string& path, const Outline& left, const Outline& right) {
        std::map<std::string, std::pair<std::optional<std::string>, std::optional<std::string>>> values;
        for (const auto& [key, value] : left.attributes) {
            values[key].first = value;
        }
        for (const auto& [key, value] : right.attributes) {
            values[key].second = value;
        }
        for (const auto& [key, sides] : values) {
            addChange(path, key, sides.first, sides.second);
        }
    }

    /// Equal heads and tails are set aside first, so that one inserted item does not shift all behind it.
    void compareChildren(const std::string& path, const Children& left, const Children& right) {
        std::size_t start = 0;
        std::size_t leftEnd = left.size();
        std::size_t rightEnd = right.size();
        while (start < std::min(leftEnd, rightEnd) && same(left[start], right[start])) {
            ++start;
        }
        while (std::min(leftEnd, rightEnd) > start && same(left[leftEnd - 1], right[rightEnd - 1])) {
            --leftEnd;
            --rightEnd;
        }
        compareMiddle(path, left, leftEnd, right, rightEnd, start);
    }

    /// Pairs elements of one name in order; one whose name comes later on the other side waits for it.
    void compareMiddle(const std::string& path, const Children& left, std::size_t leftEnd,
                       const Children& right, std::size_t rightEnd, std::size_t start) {
        std::unordered_map<std::string_view, std::size_t> waiting;
        for (std::size_t i = start; i < rightEnd; ++i) {
            ++waiting[right[i].tag];
        }
        std::size_t l = start;
        std::size_t r = start;
        while (l < leftEnd || r < rightEnd) {
            if (l < leftEnd && r < rightEnd && left[l].tag == right[r].tag) {
                if (!same(left[l], right[r])) {
                    compare(path + '/' + stepTo(left, l), left[l], right[r]);
                }
                --waiting[right[r].tag];
                ++l;
                ++r;
            } else if (l == leftEnd || (r < rightEnd && waiting[left[l].tag] != 0)) {
                addOneSided(Kind::Added, path, right, r);
                --waiting[right[r].tag];
                ++r;
            } else {
                addOneSided(Kind::Removed, path, left, l);
                ++l;
            }
        }
    }
};

std::string quoted(const std::optional<std::string>& text) {
    return text ? nlohmann::json(*text).dump() : "none";
}

} // namespace

std::vector<Difference> differencesOf(const Outline& left, const Outline& right) {
    Comparison comparison;
    comparison.compare("", left, right);
    return std::move(comparison.found);
}

std::string describe(const Difference& difference) {
    switch (difference.kind) {
    case Kind::Removed:
        return "- " + difference.path;
    case Kind::Added:
        return "+ " + difference.path;
    case Kind::Changed:
        break;
    }
    return "~ " + difference.path + ": " + difference.what + ' ' + quoted(difference.left) + " -> " +
           quoted(difference.right);
}

nlohmann::ordered_json toJson(const Difference& difference) {
    switch (difference.kind) {
    case Kind::Removed:
        return {{"path", difference.path}, {"change", "removed"}};
    case Kind::Added:
        return {{"path", difference.path}, {"change", "added"}};
    case Kind::Changed:
        break;
    }
    nlohmann::ordered_json json{{"path", difference.path}, {"change", difference.what}};
    if (difference.left) {
        json["left"] = *difference.left;
    }
    if (difference.right) {
        json["right"] = *difference.right;
    }
    return json;
}

} // namespace HBX::tool
