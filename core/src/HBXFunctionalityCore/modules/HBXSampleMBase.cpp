#include <HBXFunctionalityCore/modules/HBXSampleMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kEnvSample[] = {
    member<&HBXEnvSample::id>(1010),          member<&HBXEnvSample::name>(1026),
    member<&HBXEnvSample::description>(1496), member<&HBXEnvSample::os>(1277),
    polymorphic<&HBXEnvSample::config>(1185), polymorphic<&HBXEnvSample::virtualConfig>(1872),
};

constexpr HBXRow kSampleConf[] = {
    member<&HBXSampleConf::id>(1010),          member<&HBXSampleConf::name>(1026),
    member<&HBXSampleConf::type>(3165),        memberAs<&HBXSampleConf::modified>(HBXKind::Time, 1004),
    polymorphic<&HBXSampleConf::native>(3264),
};

} // namespace

constinit const HBXRecordTable HBXEnvSample::table =
    recordTable<HBXEnvSample>("HBXEnvSample", 417, 5121, kEnvSample);
constinit const HBXRecordTable HBXSampleConf::table =
    recordTable<HBXSampleConf>("HBXSampleConf", 417, 5122, kSampleConf);

HBXSampleMBase::~HBXSampleMBase() = default;

} // namespace HBX
