#include "TriggerFile.h"

#include "Failure.h"
#include "MessageFile.h"

#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX::tool {

boost::shared_ptr<HBXSchedulerTrigger> loadTrigger(const std::string& file) {
    const Cursor element = cursorOn(loadMessage(file));
    const auto family = HBXDerivedParserFactory<HBXSchedulerTrigger>::factoryData();
    do {
        const auto entry = family->factories().find(element->curType());
        if (entry == family->factories().end()) {
            continue;
        }
        boost::shared_ptr<HBXSchedulerTrigger> trigger;
        if (entry->second->read(*element, trigger) != 0) {
            throw Failure(ExitCode::InvalidInput, file + ": " + takePath(*element) + ": this " +
                                                      entry->first + " lacks something or does not convert");
        }
        return trigger;
    } while (advance(*element));
    throw Failure(ExitCode::NothingMatched, file + ": there is no trigger in it");
}

} // namespace HBX::tool
