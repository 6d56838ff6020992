#pragma once

#include <HBXFunctionalityCore/alert/HBXEventData.h>
#include <HBXMessage/HBXMessageContent.h>

namespace HBX {

/// Whatever an element holds, its value and all below it, carried on as it is. The marks of the element
/// itself are not part of it.
struct HBX_EXPORT HBXAnyData {
    HBXMessageContent content; ///< A message whose root holds it; without a message: nothing.

    static const HBXRecordTable table;

    /// Takes all that the current element holds.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXAnyData& data) const;
    };
    /// Puts it there again.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXAnyData> {
        int operator()(HBXMessageIterator& it, const HBXAnyData& data) const;
    };
};

/// Event data of a kind that this library does not know.
struct HBX_EXPORT HBXAnyEventData : HBXEventData {
    HBXAnyData data;

    static const HBXRecordTable table;

    /// Takes all that the current element holds.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXAnyEventData& value) const;
    };
    /// Puts it there again.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXAnyEventData> {
        int operator()(HBXMessageIterator& it, const HBXAnyEventData& value) const;
    };
};

} // namespace HBX
