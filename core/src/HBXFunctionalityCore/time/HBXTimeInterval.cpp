#include <HBXFunctionalityCore/time/HBXTimeInterval.h>

#include <cinttypes>
#include <limits>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr int kStartTime = 1063;
constexpr int kEndTime = 1064;

constexpr HBXRow kTimeInterval[] = {
    memberAs<&HBXTimeInterval::startTime>(HBXKind::Time, kStartTime, HBXPresence::Optional),
    memberAs<&HBXTimeInterval::endTime>(HBXKind::Time, kEndTime, HBXPresence::Optional),
    valueOnly<&HBXTimeInterval::zone>(),
};

std::int64_t wrappingAdd(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

std::int64_t wrappingSubtract(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

Log2 log(int line, const char* function) {
    return {"HBXFunctionalityCore", "core/src/HBXFunctionalityCore/time/HBXTimeInterval", line, function,
            function};
}

constexpr std::int64_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();

} // namespace

constinit const HBXRecordTable HBXTimeInterval::table =
    recordTable<HBXTimeInterval>("HBXTimeInterval", 292, 130, kTimeInterval);

std::int64_t HBXTimeInterval::getOffset() const {
    return std::int64_t{zone / 100} * 3600 + std::int64_t{zone % 100} * 60;
}

std::int64_t HBXTimeInterval::getStartTime() const { return wrappingSubtract(startTime, getOffset()); }

std::int64_t HBXTimeInterval::getEndTime() const { return wrappingSubtract(endTime, getOffset()); }

void HBXTimeInterval::setStartTime(std::int64_t time) { startTime = wrappingAdd(time, getOffset()); }

void HBXTimeInterval::setEndTime(std::int64_t time) { endTime = wrappingAdd(time, getOffset()); }

std::int64_t HBXTimeInterval::getInterval() const { return wrappingSubtract(endTime, startTime); }

void HBXTimeInterval::setNotNullInterval() {
    if (startTime != endTime) {
        return;
    }
    if (endTime == kHighest) {
        --startTime;
    } else {
        endTime = wrappingAdd(endTime, 1);
    }
}

int HBXTimeInterval::increment(int delta) {
    constexpr const char* kFunction = "HBX::HBXTimeInterval::increment";
    if (delta < 0 && kLowest - delta > startTime) {
        log(__LINE__, kFunction).put(1, "[%s] INT_MIN oberflow", kFunction);
        return -1;
    }
    if (delta >= 0 && kHighest - delta < endTime) {
        log(__LINE__, kFunction).put(1, "[%s] INT_MAX oberflow", kFunction);
        return -1;
    }
    startTime = wrappingAdd(startTime, delta);
    endTime = wrappingAdd(endTime, delta);
    return 0;
}

int HBXTimeInterval::Reader::operator()(const HBXMessageIterator& it, HBXTimeInterval& value) const {
    if (it.getValueTimeZone(value.startTime, value.zone, kStartTime) == -1 ||
        it.getValueTimeZone(value.endTime, value.zone, kEndTime) == -1) {
        return -1;
    }
    constexpr const char* kFunction = "HBX::HBXTimeInterval::Reader::operator ()";
    log(__LINE__, kFunction)
        .put(4, "[%s] data.startTime: %" PRId64 ", data.endTime: %" PRId64 ", data.zone: %d", kFunction,
             value.startTime, value.endTime, value.zone);
    return 0;
}

int HBXTimeInterval::Writer::operator()(HBXMessageIterator& it, const HBXTimeInterval& value) const {
    if ((mask & kWriteStart) != 0) {
        it.putValueTimeZone(value.startTime, value.zone, kStartTime);
    }
    if ((mask & kWriteEnd) != 0) {
        it.putValueTimeZone(value.endTime, value.zone, kEndTime);
    }
    return 0;
}

} // namespace HBX
