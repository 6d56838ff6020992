#pragma once

#include <string>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A time zone by name and by description.
struct HBX_EXPORT HBXTimeZone {
    std::string zoneId;
    std::string zoneText;

    static const HBXRecordTable table;

    /// What is absent stays as it was; -1 when it is there but has no text.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXTimeZone& value) const;
    };
    /// Writes both, empty ones too, and always succeeds.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXTimeZone> {
        int operator()(HBXMessageIterator& it, const HBXTimeZone& value) const;
    };
};

} // namespace HBX
