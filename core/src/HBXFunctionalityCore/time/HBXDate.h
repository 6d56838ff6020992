#pragma once

#include <cstdint>
#include <string>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A point in time, as a number, as a text, or both.
struct HBX_EXPORT HBXDate {
    std::int64_t time = 0; ///< seconds since 1970-01-01 UTC; 0: not given
    std::string text;      ///< empty: not given

    /// Whether neither is given.
    bool isEmpty() const { return time == 0 && text.empty(); }

    static const HBXRecordTable table;

    /// What is absent or unreadable stays as it was; -1 when the date is empty then.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXDate& value) const;
    };
    /// Writes what is given; -1 and nothing written for an empty date.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXDate> {
        int operator()(HBXMessageIterator& it, const HBXDate& value) const;
    };
};

} // namespace HBX
