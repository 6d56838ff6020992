#include <HBXFunctionalityCore/modules/HBXEnvMBase.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

constexpr HBXRow kEnvMListOptions[] = {
    list<&HBXEnvMListOptions::types>(3164, 3165),  member<&HBXEnvMListOptions::parentEid>(1866),
    list<&HBXEnvMListOptions::states>(3166, 1421), member<&HBXEnvMListOptions::withConfig>(3068),
    member<&HBXEnvMListOptions::recursive>(3167),
};

constexpr HBXRow kNativeConfig[] = {
    member<&HBXNativeConfig::text>(3009),
    member<&HBXNativeConfig::format>(3134),
    memberAs<&HBXNativeConfig::modified>(HBXKind::Time, 1004),
};

constexpr HBXRow kVtInfo[] = {
    member<&HBXVtInfo::version>(1897),
    member<&HBXVtInfo::maxEnvs>(3168),
    list<&HBXVtInfo::features>(3169, 3170),
    member<&HBXVtInfo::license>(3171),
};

constexpr HBXRow kMigratorCloneOptions[] = {
    member<&HBXMigratorCloneOptions::name>(1026),       member<&HBXMigratorCloneOptions::hostname>(1261),
    member<&HBXMigratorCloneOptions::count>(1259),      list<&HBXMigratorCloneOptions::addresses>(1687, 1008),
    member<&HBXMigratorCloneOptions::startAfter>(3081), member<&HBXMigratorCloneOptions::sampleId>(1895),
};

constexpr HBXRow kP2VMigrateOptions[] = {
    member<&HBXP2VMigrateOptions::source>(1876),       polymorphic<&HBXP2VMigrateOptions::config>(1872),
    list<&HBXP2VMigrateOptions::disks>(3172, 3173),    member<&HBXP2VMigrateOptions::excludes>(3064),
    member<&HBXP2VMigrateOptions::stopServices>(3174),
};

constexpr HBXRow kV2PMigrateOptions[] = {
    member<&HBXV2PMigrateOptions::eid>(1870),
    member<&HBXV2PMigrateOptions::destination>(1876),
    list<&HBXV2PMigrateOptions::disks>(3175, 3176),
    member<&HBXV2PMigrateOptions::keepSource>(3177),
};

constexpr HBXRow kV2VMigrateOptions[] = {
    member<&HBXV2VMigrateOptions::eid>(1870),       member<&HBXV2VMigrateOptions::destination>(1876),
    member<&HBXV2VMigrateOptions::live>(3178),      member<&HBXV2VMigrateOptions::keepSource>(3177),
    member<&HBXV2VMigrateOptions::bandwidth>(3069), member<&HBXV2VMigrateOptions::timeout>(3047),
};

} // namespace

constinit const HBXRecordTable HBXEnvMListOptions::table =
    recordTable<HBXEnvMListOptions>("HBXEnvMListOptions", 408, 5077, kEnvMListOptions);
constinit const HBXRecordTable HBXNativeConfig::table =
    recordTable<HBXNativeConfig>("HBXNativeConfig", 408, 5078, kNativeConfig);
constinit const HBXRecordTable HBXVtInfo::table = recordTable<HBXVtInfo>("HBXVtInfo", 408, 5079, kVtInfo);
constinit const HBXRecordTable HBXMigratorCloneOptions::table =
    recordTable<HBXMigratorCloneOptions>("HBXMigratorCloneOptions", 408, 5081, kMigratorCloneOptions);
constinit const HBXRecordTable HBXP2VMigrateOptions::table =
    recordTable<HBXP2VMigrateOptions>("HBXP2VMigrateOptions", 408, 5082, kP2VMigrateOptions);
constinit const HBXRecordTable HBXV2PMigrateOptions::table =
    recordTable<HBXV2PMigrateOptions>("HBXV2PMigrateOptions", 408, 5083, kV2PMigrateOptions);
constinit const HBXRecordTable HBXV2VMigrateOptions::table =
    recordTable<HBXV2VMigrateOptions>("HBXV2VMigrateOptions", 408, 5084, kV2VMigrateOptions);

HBXEnvMBase::~HBXEnvMBase() = default;

} // namespace HBX
