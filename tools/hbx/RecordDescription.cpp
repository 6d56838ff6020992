#include "RecordDescription.h"

#include <array>

#include <HBXFunctionalityCore/HBXCatalogue.h>
#include <HBXMessage/HBXDefaultMap.h>
#include <HBXMessage/HBXRecordCheck.h>

#include "Columns.h"

namespace HBX::tool {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<const char*, 7> kPresences = {"mandatory",   "optional",     "list",   "set",
                                                   "polymorphic", "unless empty", "by hand"};

std::string presenceOf(const HBXRow& row) { return kPresences[static_cast<std::size_t>(row.presence)]; }

std::string familyName(const HBXPointerType* family) {
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        if (family != nullptr && entry.table->family == family && entry.table->base == nullptr) {
            return std::string(entry.table->name);
        }
    }
    return "";
}

std::string kindOf(const HBXRow& row) {
    if (row.kind == HBXKind::Pointer) {
        return familyName(row.type->pointer);
    }
    return std::string(row.type->record != nullptr ? row.type->record->name : kindName(row.kind));
}

std::string elementOf(int id) {
    return std::string(HBXDefaultMap::findElemID(id)) + " (" + std::to_string(id) + ')';
}

std::string elementsOf(const HBXRow& row) {
    std::string text = row.id > 0 ? elementOf(row.id) : "";
    if (row.itemId > 0) {
        text += (text.empty() ? "" : " / ") + elementOf(row.itemId);
    }
    return text;
}

/// The tables of a record and of those that it derives from, the last of these first.
std::vector<const HBXRecordTable*> levelsOf(const HBXRecordTable& table) {
    std::vector<const HBXRecordTable*> levels;
    for (const HBXRecordTable* level = &table; level != nullptr; level = level->base) {
        levels.insert(levels.begin(), level);
    }
    return levels;
}

Json memberJson(const HBXRow& row) {
    Json member = {{"name", row.name}, {"kind", kindOf(row)}, {"presence", presenceOf(row)}};
    if (row.id > 0) {
        member["id"] = row.id;
        member["element"] = HBXDefaultMap::findElemID(row.id);
    }
    if (row.itemId > 0) {
        member["item_id"] = row.itemId;
        member["item_element"] = HBXDefaultMap::findElemID(row.itemId);
    }
    if (row.kind == HBXKind::Record || row.kind == HBXKind::Text) {
        member["record"] = row.type->record->name;
    }
    return member;
}

Json headJson(const HBXRecordEntry& type) {
    const HBXRecordTable& table = *type.table;
    Json head = {{"name", table.name}, {"module", type.module}};
    if (const std::string mark = qualifiedTypeName(table); !mark.empty()) {
        head["type"] = mark;
        head["namespace_id"] = table.nsid;
        head["type_id"] = table.typeId;
    }
    if (table.base != nullptr) {
        head["base"] = table.base->name;
    }
    if (table.family != nullptr) {
        head["family"] = familyOf(table);
    }
    return head;
}

std::string orDash(const std::string& text) { return text.empty() ? "-" : text; }

} // namespace

std::vector<MemberDescription> describeMembers(const HBXRecordTable& table) {
    std::vector<MemberDescription> members;
    for (const HBXRow& row : table) {
        members.push_back({std::string(row.name), kindOf(row), elementsOf(row), presenceOf(row)});
    }
    return members;
}

std::string familyOf(const HBXRecordTable& table) { return familyName(table.family); }

std::string recordLines() {
    std::vector<std::vector<std::string>> lines = {{"RECORD", "MODULE", "FAMILY", "TYPE"}};
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        lines.push_back({std::string(entry.table->name), std::string(entry.module),
                         orDash(familyOf(*entry.table)), orDash(qualifiedTypeName(*entry.table))});
    }
    return alignColumns(lines);
}

Json recordLinesJson() {
    Json list = Json::array();
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        list.push_back(headJson(entry));
    }
    return {{"records", std::move(list)}};
}

std::string describeRecord(const HBXRecordEntry& type) {
    const HBXRecordTable& table = *type.table;
    std::vector<std::vector<std::string>> head = {{"record", std::string(table.name)},
                                                  {"module", std::string(type.module)}};
    if (const std::string mark = qualifiedTypeName(table); !mark.empty()) {
        head.push_back(
            {"type", mark + " (" + std::to_string(table.nsid) + ", " + std::to_string(table.typeId) + ')'});
    }
    if (table.base != nullptr) {
        head.push_back({"base", std::string(table.base->name)});
    }
    if (table.family != nullptr) {
        head.push_back({"family", familyOf(table)});
    }
    std::vector<std::vector<std::string>> lines = {{"MEMBER", "KIND", "PRESENCE", "ELEMENT"}};
    for (const HBXRecordTable* level : levelsOf(table)) {
        for (const MemberDescription& member : describeMembers(*level)) {
            lines.push_back({member.name, member.kind, member.presence, orDash(member.element)});
        }
    }
    return alignColumns(head) + '\n' +
           (table.text != nullptr ? "the value is one text\n" : alignColumns(lines));
}

Json describeRecordJson(const HBXRecordEntry& type) {
    Json description = headJson(type);
    description["members"] = Json::array();
    for (const HBXRecordTable* level : levelsOf(*type.table)) {
        for (const HBXRow& row : *level) {
            description["members"].push_back(memberJson(row));
        }
    }
    return description;
}

} // namespace HBX::tool
