#include <HBXFunctionalityCore/alert/HBXInfo.h>

#include <algorithm>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kInfo[] = {
    member<&HBXInfo::name>(1026),
    member<&HBXInfo::text>(3009),
    optional<&HBXInfo::translatable>(3010),
    list<&HBXInfo::parameters>(3011, 1017),
};

} // namespace

constinit const HBXRecordTable HBXInfo::table = recordTable<HBXInfo>("HBXInfo", 401, 5007, kInfo);

void HBXInfo::setParameter(const HBXInfo& parameter) {
    const auto present = std::find_if(parameters.begin(), parameters.end(), [&](const HBXInfo& candidate) {
        return candidate.name == parameter.name;
    });
    if (present == parameters.end()) {
        parameters.push_back(parameter);
    } else {
        *present = HBXInfo(parameter); // a copy first: the parameter may be a part of what it replaces
    }
}

} // namespace HBX
