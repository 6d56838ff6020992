#pragma once

#include <HBXFunctionalityCore/environment/HBXEnv.h>

namespace HBX {

/// Makes the environments of one type. The core record may lie in a read-only mapped file.
class HBX_EXPORT HBXEnvChildFactory {
public:
    HBXEnvChildFactory() = default;
    HBXEnvChildFactory(const HBXEnvChildFactory&) = default;
    HBXEnvChildFactory(HBXEnvChildFactory&&) noexcept = default;
    HBXEnvChildFactory& operator=(const HBXEnvChildFactory&) = default;
    HBXEnvChildFactory& operator=(HBXEnvChildFactory&&) noexcept = default;

    /// An environment, or a virtual configuration, over the record; never null.
    virtual boost::shared_ptr<HBXEnv> createEnv(const boost::shared_ptr<HBXEnvCoreBasic>& core) = 0;
    virtual boost::shared_ptr<HBXVEnvConfig>
    createVEnvConfig(const boost::shared_ptr<HBXEnvCoreBasic>& core) = 0;

    virtual ~HBXEnvChildFactory();
};

} // namespace HBX
