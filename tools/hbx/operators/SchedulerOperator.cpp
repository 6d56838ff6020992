#include "SchedulerOperator.h"

#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXFunctionalityCore/schedule/HBXScheduleText.h>
#include <HBXFunctionalityCore/schedule/HBXSchedulerTrigger.h>

#include "RunList.h"

namespace HBX::tool {

namespace {

struct NextArguments {
    boost::shared_ptr<HBXSchedulerTrigger> trigger;
    std::int64_t time = 0;
    int count = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<NextArguments>;
};

constexpr HBXRow kNextArguments[] = {
    polymorphic<&NextArguments::trigger>(3071),
    memberAs<&NextArguments::time>(HBXKind::Time, 1004),
    member<&NextArguments::count>(1259),
};

struct RunRecord {
    std::int64_t time = 0;
    std::string text;
    HBXOptionalProperty<std::string> note;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<RunRecord>;
};

constexpr HBXRow kRunRecord[] = {
    memberAs<&RunRecord::time>(HBXKind::Time, 1004),
    member<&RunRecord::text>(2007),
    member<&RunRecord::note>(3411),
};

struct NextResult {
    std::vector<RunRecord> runs;
    HBXOptionalProperty<std::string> ending;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<NextResult>;
    using Writer = HBXTableWriter<NextResult>;
};

constexpr HBXRow kNextResult[] = {
    list<&NextResult::runs>(3402, 3403),
    member<&NextResult::ending>(3412),
};

struct ExplainArguments {
    boost::shared_ptr<HBXSchedulerTrigger> trigger;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<ExplainArguments>;
};

constexpr HBXRow kExplainArguments[] = {polymorphic<&ExplainArguments::trigger>(3071)};

struct ExplainResult {
    std::string text;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<ExplainResult>;
    using Writer = HBXTableWriter<ExplainResult>;
};

constexpr HBXRow kExplainResult[] = {member<&ExplainResult::text>(3009)};

constinit const HBXRecordTable NextArguments::table =
    recordTable<NextArguments>("NextArguments", 0, 0, kNextArguments);
constinit const HBXRecordTable RunRecord::table = recordTable<RunRecord>("RunRecord", 0, 0, kRunRecord);
constinit const HBXRecordTable NextResult::table = recordTable<NextResult>("NextResult", 0, 0, kNextResult);
constinit const HBXRecordTable ExplainArguments::table =
    recordTable<ExplainArguments>("ExplainArguments", 0, 0, kExplainArguments);
constinit const HBXRecordTable ExplainResult::table =
    recordTable<ExplainResult>("ExplainResult", 0, 0, kExplainResult);

RequestFailure badArgument(std::string reason) { return {RequestError::BadArguments, std::move(reason)}; }

Outcome checkArguments(const NextArguments& arguments) {
    if (!arguments.trigger) {
        return badArgument("trigger is missing");
    }
    if (arguments.time < 0) {
        return badArgument("time is negative");
    }
    if (arguments.count < 1 || arguments.count > kMaxRuns) {
        return badArgument("count is 1 to " + std::to_string(kMaxRuns));
    }
    return {};
}

Outcome next(const NextArguments& arguments, NextResult& result) {
    if (Outcome failure = checkArguments(arguments)) {
        return failure;
    }
    const RunList list = nextRuns(*arguments.trigger, arguments.time, arguments.count);
    if (list.runs.empty() && list.ending == RunList::Ending::Unusable) {
        return RequestFailure{RequestError::NoAnswer, list.reason};
    }
    for (const Run& run : list.runs) {
        RunRecord& record = result.runs.emplace_back();
        record.time = run.time;
        record.text = run.text;
        if (!run.note.empty()) {
            record.note = run.note;
        }
    }
    if (!list.reason.empty()) {
        result.ending = list.reason;
    }
    return {};
}

Outcome explain(const ExplainArguments& arguments, ExplainResult& result) {
    if (!arguments.trigger) {
        return badArgument("trigger is missing");
    }
    result.text = describeTrigger(*arguments.trigger);
    return {};
}

constexpr OperatorVerb kVerbs[] = {
    {3401, answer<NextArguments, NextResult, next>},
    {3410, answer<ExplainArguments, ExplainResult, explain>},
};

} // namespace

constinit const Operator kSchedulerOperator{3400, kVerbs};

} // namespace HBX::tool
