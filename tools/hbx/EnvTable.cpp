#include "EnvTable.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "Columns.h"

namespace HBX::tool {

namespace {

struct NumberWord {
    int number;
    const char* word;
};

constexpr NumberWord kStates[] = {
    {1, "absent"}, {3, "down"}, {4, "mounted"}, {5, "suspended"}, {6, "running"}, {7, "repairing"},
};

constexpr NumberWord kAlerts[] = {
    {HBXAlertData::GREEN, "green"},
    {HBXAlertData::YELLOW, "yellow"},
    {HBXAlertData::RED, "red"},
    {HBXAlertData::BLACK, "black"},
};

template <std::size_t N>
std::string wordOf(int number, const NumberWord (&words)[N]) {
    const auto* found = std::find_if(std::begin(words), std::end(words),
                                     [number](const NumberWord& word) { return word.number == number; });
    return found == std::end(words) ? std::to_string(number) : found->word;
}

std::string parentText(const EnvRow& row, const std::map<HBXEID, const EnvRow*>& known) {
    if (!row.parent.isValid()) {
        return "-";
    }
    const auto found = known.find(row.parent);
    return found == known.end() ? row.parent.toString() : oneLine(found->second->title);
}

} // namespace

EnvRow rowOf(const HBXEnv& env) {
    return {env.getEID(),        env.getParentEID(), env.getTitle(),
            env.getType().str(), env.getStatus(),    env.getMaxAlertType()};
}

std::string stateWord(int state) { return wordOf(state, kStates); }

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

std::string tableText(const std::vector<EnvRow>& rows) {
    std::map<HBXEID, const EnvRow*> known;
    for (const EnvRow& row : rows) {
        known[row.eid] = &row;
    }
    std::vector<std::vector<std::string>> lines{{"TITLE", "TYPE", "STATE", "ALERT", "PARENT", "IDENTIFIER"}};
    for (const EnvRow& row : rows) {
        lines.push_back({oneLine(row.title), oneLine(row.type), statusText(row.status), alertWord(row.alert),
                         parentText(row, known), row.eid.toString()});
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
