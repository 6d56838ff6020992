#pragma once

#include <string>
#include <string_view>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// The limit of a network interface for one class of traffic.
struct HBX_EXPORT HBXInterfaceRate {
    int trafficClass = 0;
    int rate = 0; ///< 0: no limit

    /// "*:CLASS:RATE"; "" when there is no limit.
    [[nodiscard]] std::string toString() const;
    /// Takes exactly "*:CLASS:RATE", decimal numbers of 32 bits. @return true; false and unchanged when the
    /// text is something else, "" included.
    bool fromStringEx(std::string_view text);

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXInterfaceRate>;
    using Writer = HBXTableWriter<HBXInterfaceRate>;
};

} // namespace HBX
