#include "Operator.h"

#include <HBXMessage/HBXDefaultMap.h>

namespace HBX::tool {

namespace {

/// "trigger", or with its complex type "trigger (scheduler:hourly_trigger)".
std::string nameWithType(const HBXMessageIterator& request, int id) {
    const std::string name = HBXDefaultMap::findElemID(id);
    const bool isThere = request.seek(id) == 0;
    const std::string type = isThere ? request.curType() : "";
    if (isThere) {
        request.seekUp();
    }
    return type.empty() ? name : name + " (" + type + ')';
}

} // namespace

std::string describeBadArgument(const HBXMessageIterator& request, void* scratch,
                                const HBXRecordTable& table) {
    for (const HBXRow& row : table) {
        HBXRecordTable single = table;
        single.rows = &row;
        single.rowCount = 1;
        single.mandatory = row.presence == HBXPresence::Mandatory ? 1 : 0;
        if (request.readTable(scratch, single) != 0) {
            const bool isThere = request.seekPresence(row.id) == 0;
            return nameWithType(request, row.id) + (isThere ? " cannot be read" : " is missing");
        }
    }
    return "the arguments cannot be read";
}

std::string describeUnreadArgument(const HBXMessageIterator& request, const void* arguments,
                                   const HBXRecordTable& table) {
    for (const HBXRow& row : table) {
        if (!table.isSet(row, arguments) && request.seekPresence(row.id) == 0) {
            return nameWithType(request, row.id) + " cannot be read";
        }
    }
    return {};
}

} // namespace HBX::tool
