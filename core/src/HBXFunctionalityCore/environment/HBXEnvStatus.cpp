#include <HBXFunctionalityCore/environment/HBXEnvStatus.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr int kState = 1421;
constexpr int kTransition = 1588;

constexpr HBXRow kEnvStatus[] = {
    member<&HBXEnvStatus::state>(kState),
    optional<&HBXEnvStatus::transition>(kTransition),
};

} // namespace

constinit const HBXRecordTable HBXEnvStatus::table =
    recordTable<HBXEnvStatus>("HBXEnvStatus", 0, 0, kEnvStatus);

int HBXEnvStatus::Reader::operator()(const HBXMessageIterator& it, HBXEnvStatus& status) const {
    if (it.getValue(status.state, kState) != 0) {
        return -1;
    }
    it.getValue(status.transition, kTransition);
    return 0;
}

int HBXEnvStatus::Writer::operator()(HBXMessageIterator& it, const HBXEnvStatus& status) const {
    const int result = it.putValue(status.state, kState);
    return result != 0 || status.transition == 0 ? result : it.putValue(status.transition, kTransition);
}

} // namespace HBX
