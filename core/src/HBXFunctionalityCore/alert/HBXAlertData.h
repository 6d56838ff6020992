#pragma once

#include <cstdint>

#include <HBXMessage/HBXCombinators.h>

namespace HBX {

/// The levels of alerts and what they are raised for.
class HBX_EXPORT HBXAlertData {
public:
    /// Readers keep any number: it may come from a peer that knows more levels.
    enum AlertType : std::int32_t { GREEN, YELLOW, RED, BLACK };
    enum AlertReason : std::int32_t { RESOURCE, SERVER_GROUP, BACKUP, LICENSE, OTHER };

    static constexpr int kReasons = OTHER + 1;
};

/// A level as the number that is the current element's value.
struct HBX_EXPORT HBXAlertTypeReader {
    int operator()(const HBXMessageIterator& it, HBXAlertData::AlertType& type) const;
};
struct HBX_EXPORT HBXAlertTypeWriter : HBXPlainMarks {
    static int getTypeID() { return 50; }
    int operator()(HBXMessageIterator& it, HBXAlertData::AlertType type) const;
};

} // namespace HBX
