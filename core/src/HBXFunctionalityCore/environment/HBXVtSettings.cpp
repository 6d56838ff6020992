#include <HBXFunctionalityCore/environment/HBXVtSettings.h>

#include <utility>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

constexpr int kVersion = 1897;
constexpr int kDescription = 1496;

constexpr HBXRow kVtSettings[] = {
    member<&HBXVtSettings::version>(kVersion),
    optional<&HBXVtSettings::description>(kDescription),
};

} // namespace

constinit const HBXRecordTable HBXVtSettings::table =
    recordTable<HBXVtSettings>("HBXVtSettings", 408, 5080, kVtSettings);

HBXVtSettings::~HBXVtSettings() = default;

int HBXVtSettings::Reader::operator()(const HBXMessageIterator& it, HBXVtSettings& settings) const {
    HBXVtVersion fresh;
    if (it.getObject(fresh, kVersion) == 0) {
        settings.version = std::move(fresh);
    }
    it.getValue(settings.description, kDescription);
    return 0;
}

int HBXVtSettings::Writer::operator()(HBXMessageIterator& it, const HBXVtSettings& settings) const {
    if (settings.version.isSet() && it.putObject(settings.version.get(), kVersion) != 0) {
        return -1;
    }
    return settings.description.empty() ? 0 : it.putValue(settings.description, kDescription);
}

} // namespace HBX
