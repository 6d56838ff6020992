#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <HBXMessage/HBXAnyRecord.h>

namespace HBX::tool {

/// What there is to say of one member of a record type.
struct MemberDescription {
    std::string name; ///< in C++
    std::string kind; ///< of the value or of each item: a plain kind, a record type or the base of a family
    std::string
        element; ///< "nameservers (1281)"; of a list with its items: "nameservers (1281) / value (1018)"
    std::string presence;
};

std::vector<MemberDescription> describeMembers(const HBXRecordTable& table);

/// The base record of the family that a record belongs to; "" for most.
std::string familyOf(const HBXRecordTable& table);

/// The records of a catalogue, one a line.
std::string recordLines();
nlohmann::ordered_json recordLinesJson();

/// A record type with all its members, the base record's first.
std::string describeRecord(const HBXRecordEntry& type);
nlohmann::ordered_json describeRecordJson(const HBXRecordEntry& type);

/// The page that lists all records, in Markdown.
std::string recordPage();

} // namespace HBX::tool
