#pragma once

#include <cstdint>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A span of time in wall-clock seconds of a zone: both ends are seconds since 1970-01-01 already shifted by
/// the zone's offset. No operation fails on numbers that leave 64 bits; they wrap.
struct HBX_EXPORT HBXTimeInterval {
    std::int64_t startTime = 0; ///< shifted by the offset
    std::int64_t endTime = 0;   ///< shifted by the offset
    int zone = 0;               ///< offset as a decimal number of the form +-HHMM: -530 is minus 5 hours 30

    HBXTimeInterval() = default;
    /// Takes the ends as they are, without a shift.
    HBXTimeInterval(std::int64_t start, std::int64_t end, int zoneOffset)
        : startTime(start), endTime(end), zone(zoneOffset) {}

    /// The zone's offset in seconds; a negative zone counts its hours and its minutes as negative.
    std::int64_t getOffset() const;

    /// The ends in universal time.
    std::int64_t getStartTime() const;
    std::int64_t getEndTime() const;
    /// Set an end from universal time, by the present zone: set the zone first.
    void setStartTime(std::int64_t time);
    void setEndTime(std::int64_t time);

    /// Makes an empty span at a time that is already shifted.
    void setStart(std::int64_t time) { startTime = endTime = time; }

    /// Setting the zone leaves the ends as they are.
    void setZone(int zoneOffset) { zone = zoneOffset; }
    /// The offset as a decimal number.
    std::int64_t getZone() const { return zone; }

    /// Length in seconds; negative when the span ends before it starts.
    std::int64_t getInterval() const;

    /// Makes an empty span one second long: its end moves on, or its start back when the end is 2147483647.
    void setNotNullInterval();

    /// Moves both ends. -1 and no change when the start would fall below -2147483648 (`delta` negative; the
    /// end may) or the end would exceed 2147483647 (otherwise; the start may).
    int increment(int delta);

    /// Bits of the writer's mask.
    static constexpr int kWriteStart = 1;
    static constexpr int kWriteEnd = 2;

    static const HBXRecordTable table;

    /// Each end travels as a time with zone; the zone of the end wins. What is absent stays as it was.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXTimeInterval& value) const;
    };
    /// Writes the ends that the mask names, and always succeeds.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXTimeInterval> {
        explicit Writer(int writeMask = kWriteStart | kWriteEnd) : mask(writeMask) {}
        int operator()(HBXMessageIterator& it, const HBXTimeInterval& value) const;

        int mask;
    };
};

} // namespace HBX
