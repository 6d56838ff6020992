#include "RecordNames.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include <boost/algorithm/string/case_conv.hpp>

#include <HBXFunctionalityCore/HBXCatalogue.h>

#include "Failure.h"

namespace HBX::tool {

namespace {

constexpr std::size_t kMostNames = 5;
constexpr std::size_t kLongestWord = 100; ///< no record has as long a name

/// How many letters to insert, drop or change to make one word of the other.
std::size_t editsBetween(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

/// What counts when names are compared: letters without their case, and not the beginning of all.
std::string wordOf(std::string_view name) {
    std::string word = boost::algorithm::to_lower_copy(std::string(name));
    return word.starts_with("hbx") ? word.substr(3) : word;
}

std::string similarNames(const std::string& name) {
    const std::string wanted = wordOf(name.substr(0, kLongestWord));
    std::vector<std::pair<std::size_t, std::string_view>> found;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        const std::string word = wordOf(entry.table->name);
        const bool holds = wanted.size() > 2 && word.find(wanted) != std::string::npos;
        const std::size_t edits = holds ? 1 : editsBetween(wanted, word);
        if (edits <= std::max<std::size_t>(1, wanted.size() / 4)) {
            found.emplace_back(edits, entry.table->name);
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string names;
    for (std::size_t i = 0; i < std::min(found.size(), kMostNames); ++i) {
        names.append(i == 0 ? "; similar: " : ", ").append(found[i].second);
    }
    return names;
}

} // namespace

const HBXRecordEntry& recordNamed(const std::string& name) {
    const HBXRecordEntry* entry = findRecord(name);
    if (entry == nullptr) {
        throw Failure(ExitCode::NothingMatched, "there is no record \"" + name + '"' + similarNames(name));
    }
    return *entry;
}

} // namespace HBX::tool
