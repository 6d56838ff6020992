#include "EnvTable.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "Columns.h"
#include "EnvTree.h"

namespace HBX::tool {

namespace {

struct NumberWord {
    int number;
    const char* word;
    const char* colour = ""; ///< as a terminal takes it
};

constexpr NumberWord kStates[] = {
    {1, "absent"}, {3, "down"}, {4, "mounted"}, {5, "suspended"}, {6, "running"}, {7, "repairing"},
};

constexpr NumberWord kAlerts[] = {
    {HBXAlertData::GREEN, "green", "32"},
    {HBXAlertData::YELLOW, "yellow", "33"},
    {HBXAlertData::RED, "red", "31"},
    {HBXAlertData::BLACK, "black", "7"},
};

/// Null when the number has none.
const NumberWord* findWord(int number, std::span<const NumberWord> words) {
    const auto found = std::find_if(words.begin(), words.end(),
                                    [number](const NumberWord& word) { return word.number == number; });
    return found == words.end() ? nullptr : &*found;
}

std::string wordOf(int number, std::span<const NumberWord> words) {
    const NumberWord* found = findWord(number, words);
    return found == nullptr ? std::to_string(number) : found->word;
}

std::string alertCell(HBXAlertData::AlertType alert, bool coloured) {
    const NumberWord* found = findWord(alert, kAlerts);
    return coloured && found != nullptr ? std::string("\x1b[") + found->colour + 'm' + found->word + "\x1b[0m"
                                        : alertWord(alert);
}

} // namespace

EnvRow rowOf(const HBXEnv& env) {
    return {env.getEID(),        env.getParentEID(), env.getTitle(),
            env.getType().str(), env.getStatus(),    env.getMaxAlertType()};
}

std::string stateWord(int state) { return wordOf(state, kStates); }

std::string stateWords(const std::string& separator) {
    std::string words;
    for (const NumberWord& state : kStates) {
        words += (words.empty() ? "" : separator) + state.word;
    }
    return words;
}

std::optional<int> stateOf(const std::string& word) {
    const auto* found = std::find_if(std::begin(kStates), std::end(kStates),
                                     [&word](const NumberWord& state) { return state.word == word; });
    if (found != std::end(kStates)) {
        return found->number;
    }
    const bool isNumber = !word.empty() && word.size() < 10 &&
                          std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; });
    return isNumber ? std::optional(std::stoi(word)) : std::nullopt;
}

std::string statusText(const HBXEnvStatus& status) {
    const std::string word = stateWord(status.state);
    return status.transition == 0 ? word : word + " (operation " + std::to_string(status.transition) + ')';
}

std::string alertWord(HBXAlertData::AlertType alert) { return wordOf(alert, kAlerts); }

std::string oneLine(const std::string& text) {
    // Written as JSON and read again, what is no UTF-8 has been replaced.
    using Json = nlohmann::json;
    std::string line = Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace));
    for (std::size_t i = 0; i < line.size(); ++i) {
        const auto byte = static_cast<unsigned char>(line[i]);
        const bool isSecond = i > 0 && line[i - 1] == '\xC2' && byte < 0xA0; // U+0080 to U+009F
        if (isSecond) {
            line.replace(--i, 2, "?");
        } else if (byte < 0x20 || byte == 0x7F) {
            line[i] = '?';
        }
    }
    return line;
}

std::string parentText(const EnvRow& row, const EnvTitles& titles) {
    if (!row.parent.isValid()) {
        return "-";
    }
    const auto found = titles.find(row.parent);
    return found == titles.end() ? row.parent.toString() : oneLine(found->second);
}

std::string tableText(const std::vector<EnvRow>& rows, const EnvTitles& titles, bool coloured) {
    std::vector<std::vector<std::string>> lines{{"TITLE", "TYPE", "STATE", "ALERT", "PARENT", "IDENTIFIER"}};
    for (const EnvRow& row : rows) {
        lines.push_back({oneLine(row.title), oneLine(row.type), statusText(row.status),
                         alertCell(row.alert, coloured), parentText(row, titles), row.eid.toString()});
    }
    return alignColumns(lines);
}

namespace {

std::string noteOf(const TreeRow& place, const EnvTitles& titles) {
    switch (place.why) {
    case TreeRow::Why::Orphan:
        return "parent " + parentText(place.row, titles) + " is not listed";
    case TreeRow::Why::Circle:
        return "parents go round in a circle";
    case TreeRow::Why::Place:
        break;
    }
    return "";
}

} // namespace

std::string treeText(const std::vector<EnvRow>& rows, const EnvTitles& titles, bool coloured) {
    std::vector<std::vector<std::string>> lines{{"TITLE", "TYPE", "STATE", "ALERT", "IDENTIFIER"}};
    for (const TreeRow& place : treeOf(rows)) {
        const EnvRow& row = place.row;
        lines.push_back({place.branch + oneLine(row.title), oneLine(row.type), statusText(row.status),
                         alertCell(row.alert, coloured), row.eid.toString(), noteOf(place, titles)});
    }
    return alignColumns(lines);
}

nlohmann::ordered_json toJson(const EnvRow& row) {
    nlohmann::ordered_json json{{"eid", row.eid.toString()},
                                {"title", row.title},
                                {"type", row.type},
                                {"state", stateWord(row.status.state)},
                                {"transition", row.status.transition},
                                {"alert", alertWord(row.alert)}};
    if (row.parent.isValid()) {
        json["parent"] = row.parent.toString();
    }
    return json;
}

} // namespace HBX::tool
