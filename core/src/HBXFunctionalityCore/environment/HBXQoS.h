#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// One quality-of-service limit of an environment.
struct HBX_EXPORT HBXQoS {
    std::string id;
    HBXOptionalProperty<std::int64_t> barrier;
    std::int64_t limit = 0;

    static constexpr std::int64_t unlimited = std::numeric_limits<std::int64_t>::max();

    HBXQoS() = default;
    /// As `fromString`; a text that does not parse leaves barrier and limit as they are by default.
    explicit HBXQoS(const std::string& text) { fromString(text); }

    /// "barrier:limit", or one number for both. -1 and unchanged when no number begins the text.
    int fromString(const std::string& text);

    /// By id, limit, then barrier: below 0, 0 or above 0. A limit without barrier equals every one of its id
    /// and limit, so what a set holds is only defined when it does not mix both kinds under one id and limit.
    [[nodiscard]] int compare(const HBXQoS& other) const;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXQoS>;
    using Writer = HBXTableWriter<HBXQoS>;
};

} // namespace HBX
