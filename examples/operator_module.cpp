#include <cstdio>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/HBXFunctionalityCore.h>
#include <HBXMessage/HBXRecordTable.h>

using namespace HBX;

struct OverdueArguments {
    std::vector<HBXScheduleTask> tasks;
    std::int64_t time = 0;
    static const HBXRecordTable table;
    using Reader = HBXTableReader<OverdueArguments>;
};
constexpr HBXRow kArguments[] = {
    list<&OverdueArguments::tasks>(3426, 1008),
    memberAs<&OverdueArguments::time>(HBXKind::Time, 1004),
};
constinit const HBXRecordTable OverdueArguments::table =
    recordTable<OverdueArguments>("Arguments", 0, 0, kArguments);

struct OverdueResult {
    std::vector<std::string> names;
    static const HBXRecordTable table;
    using Reader = HBXTableReader<OverdueResult>;
    using Writer = HBXTableWriter<OverdueResult>;
};
constexpr HBXRow kResult[] = {list<&OverdueResult::names>(3426, 1026)};
constinit const HBXRecordTable OverdueResult::table = recordTable<OverdueResult>("Result", 0, 0, kResult);

/// The verb: which of the tasks should have run since their last run?
OverdueResult findOverdue(const OverdueArguments& arguments) {
    OverdueResult result;
    for (const HBXScheduleTask& task : arguments.tasks) {
        std::int64_t next = -1;
        const bool runs = task.trigger && task.trigger->getNextRunTime(task.lastRun.get() + 1, next) == 0;
        if (runs && next != -1 && next < arguments.time) {
            result.names.push_back(task.name);
        }
    }
    return result;
}

/// An operator module with one verb, data/schedule/overdue: reads a request, writes the reply.
int main(int argc, char** argv) {
    const auto request = adoptMessage(HBXMsgFactory::createNew());
    const std::unique_ptr<HBXMessageIterator> from(request->newIterator());
    OverdueArguments arguments;
    if (argc != 3 || request->fromTextFile(argv[1]) != 0 || from->seek("/data/schedule/overdue") != 0 ||
        from->getObject(arguments, 0) != 0) {
        std::fprintf(stderr, "no request that can be answered: %s\n", getErrorMessage().c_str());
        return 1;
    }
    const auto reply = adoptMessage(HBXMsgFactory::createNew());
    const std::unique_ptr<HBXMessageIterator> to(reply->newIterator());
    const bool written = to->putChild("data") == 0 && to->putChild("schedule") == 0 &&
                         to->putChild("overdue") == 0 && to->putObject(findOverdue(arguments), 0) == 0;
    return written && reply->toTextFile(argv[2]) == 0 ? 0 : 1;
}
