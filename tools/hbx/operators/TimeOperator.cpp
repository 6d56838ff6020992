#include "TimeOperator.h"

#include <HBXFunctionalityCore/schedule/HBXScheduleText.h>
#include <HBXFunctionalityCore/time/HBXDate.h>
#include <HBXFunctionalityCore/time/HBXTimeInterval.h>

#include "TimeText.h"

namespace HBX::tool {

namespace {

struct NoArguments {
    static const HBXRecordTable table;
    using Reader = HBXTableReader<NoArguments>;
};

struct IntervalRecord {
    HBXTimeInterval interval;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<IntervalRecord>;
    using Writer = HBXTableWriter<IntervalRecord>;
};

constexpr HBXRow kIntervalRecord[] = {member<&IntervalRecord::interval>(3031)};

struct UniversalResult {
    std::int64_t startTime = 0;
    std::int64_t endTime = 0;
    std::int64_t seconds = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<UniversalResult>;
    using Writer = HBXTableWriter<UniversalResult>;
};

constexpr HBXRow kUniversalResult[] = {
    memberAs<&UniversalResult::startTime>(HBXKind::Time, 1063),
    memberAs<&UniversalResult::endTime>(HBXKind::Time, 1064),
    member<&UniversalResult::seconds>(3409),
};

struct ShiftArguments {
    HBXTimeInterval interval;
    int seconds = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<ShiftArguments>;
};

constexpr HBXRow kShiftArguments[] = {
    member<&ShiftArguments::interval>(3031),
    member<&ShiftArguments::seconds>(3409),
};

constinit const HBXRecordTable NoArguments::table = recordTable<NoArguments>("NoArguments", 0, 0);
constinit const HBXRecordTable IntervalRecord::table =
    recordTable<IntervalRecord>("IntervalRecord", 0, 0, kIntervalRecord);
constinit const HBXRecordTable UniversalResult::table =
    recordTable<UniversalResult>("UniversalResult", 0, 0, kUniversalResult);
constinit const HBXRecordTable ShiftArguments::table =
    recordTable<ShiftArguments>("ShiftArguments", 0, 0, kShiftArguments);

Outcome now(const NoArguments&, HBXDate& result) {
    result.time = presentMoment();
    result.text = describeMoment(result.time);
    return {};
}

Outcome universal(const IntervalRecord& arguments, UniversalResult& result) {
    result.startTime = arguments.interval.getStartTime();
    result.endTime = arguments.interval.getEndTime();
    result.seconds = arguments.interval.getInterval();
    return {};
}

Outcome shift(const ShiftArguments& arguments, IntervalRecord& result) {
    result.interval = arguments.interval;
    if (result.interval.increment(arguments.seconds) != 0) {
        return RequestFailure{RequestError::NoAnswer, "the interval would leave the range of 32-bit seconds"};
    }
    return {};
}

constexpr OperatorVerb kVerbs[] = {
    {3406, answer<NoArguments, HBXDate, now>},
    {3407, answer<IntervalRecord, UniversalResult, universal>},
    {3408, answer<ShiftArguments, IntervalRecord, shift>},
};

} // namespace

constinit const Operator kTimeOperator{3405, kVerbs};

} // namespace HBX::tool
