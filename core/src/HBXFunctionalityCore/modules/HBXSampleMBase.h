#pragma once

#include <cstdint>
#include <string>

#include <HBXFunctionalityCore/environment/HBXEnvConfig.h>
#include <HBXFunctionalityCore/environment/HBXOS.h>
#include <HBXFunctionalityCore/modules/HBXEnvMBase.h>

namespace HBX {

/// The agent's module for samples, from which environments are made.
class HBX_EXPORT HBXSampleMBase {
public:
    virtual ~HBXSampleMBase();
};

/// What a new environment begins with.
struct HBX_EXPORT HBXEnvSample {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<HBXOS> os;
    boost::shared_ptr<HBXEnvConfig> config;
    boost::shared_ptr<HBXEnvConfig> virtualConfig;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXEnvSample>;
    using Writer = HBXTableWriter<HBXEnvSample>;
};

/// A sample as the software of an environment type keeps it.
struct HBX_EXPORT HBXSampleConf {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> type;      ///< environment type
    HBXOptionalProperty<std::int64_t> modified; ///< when it was last changed
    boost::shared_ptr<HBXNativeConfig> native;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSampleConf>;
    using Writer = HBXTableWriter<HBXSampleConf>;
};

} // namespace HBX
