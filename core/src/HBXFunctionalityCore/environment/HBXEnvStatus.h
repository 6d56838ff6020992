#pragma once

#include <cstdint>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// What state an environment is in, and what is being done to it. Part of the core record's storage format.
struct HBX_EXPORT HBXEnvStatus {
    /// 1 absent, 3 down, 4 mounted, 5 suspended, 6 running, 7 repairing; other numbers are carried unchanged.
    std::int32_t state = 1;
    /// The operation under way, 0 = none.
    std::int32_t transition = 0;

    constexpr HBXEnvStatus() = default;
    constexpr HBXEnvStatus(int stateCode, int transitionCode)
        : state(stateCode), transition(transitionCode) {}

    /// Whether there is nothing, and nothing under way.
    [[nodiscard]] bool isAbsent() const { return state == 1 && transition == 0; }
    [[nodiscard]] bool empty() const { return isAbsent(); }
    /// Whether there is something, running or not.
    [[nodiscard]] bool isExisted() const { return state >= 3; }
    /// It is there and does not run.
    [[nodiscard]] bool isDown() const { return state == 3; }
    /// Suspended, running and repairing environments are mounted too.
    [[nodiscard]] bool isMounted() const { return state >= 4; }
    [[nodiscard]] bool isSuspended() const { return state == 5; }
    [[nodiscard]] bool isRunning() const { return state == 6; }
    [[nodiscard]] bool isRepairing() const { return state == 7; }

    static const HBXRecordTable table;

    /// The state must be there (-1); a transition that is not leaves the present one.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXEnvStatus& status) const;
    };
    /// Leaves the transition out when there is none.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXEnvStatus> {
        int operator()(HBXMessageIterator& it, const HBXEnvStatus& status) const;
    };
};

} // namespace HBX
