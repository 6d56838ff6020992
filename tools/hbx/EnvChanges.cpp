#include "EnvChanges.h"

#include <string_view>
#include <utility>

namespace HBX::tool {

namespace {

/// The record without its head, which counts the snapshots that hold it.
std::string_view contentOf(const HBXEnvCoreBasic& record) {
    const std::string_view bytes(reinterpret_cast<const char*>(&record), record.length());
    return bytes.substr(HBXEnvCoreBasic::kKeyOffset);
}

void note(EnvChange& change, const char* member, const std::string& before, const std::string& after) {
    if (before != after) {
        change.details.push_back({member, before, after});
    }
}

std::string parentText(const EnvRow& row) { return row.parent.isValid() ? row.parent.toString() : "none"; }

} // namespace

EnvMemory::Copy EnvMemory::copyOf(const HBXEnvCoreBasic& record, const HBXEnv& env) {
    return {rowOf(env), std::string(contentOf(record)), record.configSize};
}

EnvChange EnvMemory::compare(const Copy& before, const Copy& after) {
    EnvChange change{EnvChange::Kind::Changed, after.row, {}};
    note(change, "title", before.row.title, after.row.title);
    note(change, "type", before.row.type, after.row.type);
    note(change, "state", statusText(before.row.status), statusText(after.row.status));
    note(change, "alert", alertWord(before.row.alert), alertWord(after.row.alert));
    note(change, "parent", parentText(before.row), parentText(after.row));
    constexpr std::size_t kData = HBXEnvCoreBasic::kDataOffset - HBXEnvCoreBasic::kKeyOffset;
    const auto part = [](const Copy& copy, std::size_t at, std::size_t size) {
        return std::string_view(copy.bytes).substr(at, size);
    };
    const auto rest = std::string_view::npos;
    if (part(before, kData, before.configSize) != part(after, kData, after.configSize)) {
        change.details.push_back({"configuration", "", ""});
    }
    if (part(before, kData + before.configSize, rest) != part(after, kData + after.configSize, rest)) {
        change.details.push_back({"virtual configuration", "", ""});
    }
    if (change.details.empty()) {
        change.details.push_back({"alert levels", "", ""}); // none of them the worst
    }
    return change;
}

std::vector<EnvChange> EnvMemory::look(const HBXEnvCache::EnvValuesList& list) {
    std::vector<EnvChange> changes;
    auto before = copies_.begin();
    const auto dropBefore = [&](const HBXEID* end) {
        while (before != copies_.end() && (end == nullptr || before->first < *end)) {
            changes.push_back({EnvChange::Kind::Removed, std::move(before->second.row), {}});
            before = copies_.erase(before);
        }
    };
    for (const HBXEnvCoreBasic& record : list.values()) {
        dropBefore(&record.eid);
        const bool known = before != copies_.end() && before->first == record.eid;
        if (!known || before->second.bytes != contentOf(record)) {
            Copy copy = copyOf(record, *list.getEnv(record.eid));
            changes.push_back(known ? compare(before->second, copy)
                                    : EnvChange{EnvChange::Kind::Added, copy.row, {}});
            before = copies_.insert_or_assign(before, record.eid, std::move(copy));
        }
        ++before;
    }
    dropBefore(nullptr);
    return changes;
}

namespace {

constexpr std::pair<const char*, const char*> kKinds[] = {{"+", "added"}, {"~", "changed"}, {"-", "removed"}};

} // namespace

std::string describe(const EnvChange& change) {
    std::string text = std::string(kKinds[static_cast<int>(change.kind)].first) + ' ' +
                       oneLine(change.row.title) + ' ' + change.row.eid.toString();
    const char* separator = ": ";
    for (const EnvChange::Detail& detail : change.details) {
        text += separator + detail.member;
        if (!detail.before.empty() || !detail.after.empty()) {
            text += " \"" + oneLine(detail.before) + "\" -> \"" + oneLine(detail.after) + '"';
        }
        separator = ", ";
    }
    return text;
}

nlohmann::ordered_json toJson(const EnvChange& change) {
    nlohmann::ordered_json json{{"change", kKinds[static_cast<int>(change.kind)].second},
                                {"environment", toJson(change.row)}};
    for (const EnvChange::Detail& detail : change.details) {
        nlohmann::ordered_json& what = json["what"].emplace_back();
        what["member"] = detail.member;
        if (!detail.before.empty() || !detail.after.empty()) {
            what["before"] = detail.before;
            what["after"] = detail.after;
        }
    }
    return json;
}

} // namespace HBX::tool
