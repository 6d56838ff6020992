#include "RecordDescription.h"

#include <HBXFunctionalityCore/HBXCatalogue.h>

namespace HBX::tool {

namespace {

constexpr const char* kIntroduction =
    R"(<!-- Made by `hbx record list --markdown`; do not edit. -->
# Records

The record types that travel in messages, by the agent's module. `hbx record describe NAME` shows one with its kinds of
values, `hbx record template NAME` an example. [Add a record](add-a-record.md) says how they are made.

**Type** is the complex type that marks the record's element, by names and by numbers; a record without one only travels
inside others. Members follow in the order of writing, each as `member`: element (id). Behind them, `?` is a member that
may be absent, `[]` a list or set with the element of the whole and of each item, `*` a pointer to any class of a
family, and `!` a member that is read and written by hand. A record that extends another has its members first.
)";

const char* markOf(HBXPresence presence) {
    switch (presence) {
    case HBXPresence::Mandatory:
        return "";
    case HBXPresence::Optional:
    case HBXPresence::UnlessEmpty:
        return "?";
    case HBXPresence::List:
    case HBXPresence::Set:
        return "[]";
    case HBXPresence::Polymorphic:
        return "*";
    case HBXPresence::ValueOnly:
        return "!";
    }
    return "";
}

std::string membersCell(const HBXRecordTable& table) {
    if (table.text != nullptr) {
        return "one text";
    }
    std::string cell;
    const std::vector<MemberDescription> members = describeMembers(table);
    for (std::size_t i = 0; i < members.size(); ++i) {
        cell += (i == 0 ? "`" : ", `") + members[i].name + '`' + markOf(table.rows[i].presence);
        cell += members[i].element.empty() ? "" : ": " + members[i].element;
    }
    return cell;
}

std::string typeCell(const HBXRecordTable& table) {
    const std::string type = qualifiedTypeName(table);
    return type.empty()
               ? ""
               : '`' + type + "` (" + std::to_string(table.nsid) + ", " + std::to_string(table.typeId) + ')';
}

std::string line(const HBXRecordTable& table) {
    std::string name = '`' + std::string(table.name) + '`';
    if (table.base != nullptr) {
        name += ", extends `" + std::string(table.base->name) + '`';
    }
    return "| " + name + " | " + typeCell(table) + " | " + membersCell(table) + " |\n";
}

} // namespace

std::string recordPage() {
    std::string page = kIntroduction;
    std::string_view module;
    for (const HBXRecordEntry& entry : recordCatalogue()) {
        if (entry.module != module) {
            module = entry.module;
            page += "\n## " + std::string(module) + "\n\n| Record | Type | Members |\n|---|---|---|\n";
        }
        page += line(*entry.table);
    }
    return page;
}

} // namespace HBX::tool
