#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <HBXCommon/HBXExport.h>
#include <HBXMessage/HBXAnyRecord.h>

namespace HBX {

/// Where and why an element is no record of some type.
struct HBXMisfit {
    std::string
        path; ///< below the record's element: "/interfaces/interface[2]/mask"; "": that element itself
    std::string expected; ///< a kind (`kindName`) or the name of a record type
    std::string found; ///< what is there instead; a quoted value is cut and shown without control characters
};

/// The first misfit of the current element, in the order of the document; what is missing comes behind what
/// is there, and a base record's members before the others. Nothing when the element fits: it then reads.
///
/// Stricter than reading in one point: an optional member that is there and does not read is a misfit, too,
/// where reading would pass over it. (Not so in records whose reader is written by hand: what that accepts
/// fits, and only when it refuses an element, the rows are asked for the reason.)
HBX_EXPORT std::optional<HBXMisfit> findMisfit(const HBXMessageIterator& it, const HBXRecordEntry& type);

/// How people call a kind of value: "int", "time", "record".
HBX_EXPORT std::string_view kindName(HBXKind kind);

} // namespace HBX
