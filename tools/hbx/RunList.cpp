#include "RunList.h"

#include <limits>
#include <stdexcept>

#include <HBXFunctionalityCore/schedule/HBXScheduleText.h>

namespace HBX::tool {

namespace {

constexpr std::int64_t kNever = -1;

class Walk {
public:
    Walk(const HBXSchedulerTrigger& trigger, std::int64_t from) : trigger_(trigger), now_(from) {}

    RunList take(int count) {
        while (static_cast<int>(list_.runs.size()) < count && step()) {
        }
        return std::move(list_);
    }

private:
    bool step() {
        std::int64_t next = kNever;
        // A weekly trigger answers the run itself when asked at the moment of a run, the others the one after
        // it.
        if (!ask(now_, next) || (next == previous_ && next != kNever && !askAfter(next, next))) {
            return false;
        }
        if (next == kNever) {
            return end(RunList::Ending::Over, "the schedule is over");
        }
        if (next < now_ || next <= previous_) {
            return end(RunList::Ending::Past,
                       "the trigger answers a moment in the past, " + describeMoment(next));
        }
        list_.runs.push_back({next, describeMoment(next), clockChangeNote(trigger_, next, previous_)});
        now_ = previous_ = next;
        return true;
    }

    bool askAfter(std::int64_t run, std::int64_t& next) {
        return run == std::numeric_limits<std::int64_t>::max() || ask(run + 1, next);
    }

    bool ask(std::int64_t now, std::int64_t& next) {
        try {
            return trigger_.getNextRunTime(now, next) == 0 ||
                   end(RunList::Ending::Unusable,
                       "the trigger's numbers name no run after " + describeMoment(now));
        } catch (const std::out_of_range& error) {
            return end(RunList::Ending::Unusable, std::string("the calendar refuses: ") + error.what());
        }
    }

    bool end(RunList::Ending ending, std::string reason) {
        list_.ending = ending;
        list_.reason = std::move(reason);
        return false;
    }

    const HBXSchedulerTrigger& trigger_;
    std::int64_t now_;
    std::int64_t previous_ = kNever;
    RunList list_;
};

} // namespace

RunList nextRuns(const HBXSchedulerTrigger& trigger, std::int64_t from, int count) {
    return Walk(trigger, from).take(count);
}

} // namespace HBX::tool
