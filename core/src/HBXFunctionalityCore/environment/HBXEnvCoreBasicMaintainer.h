#pragma once

#include <HBXFunctionalityCore/environment/HBXVEnvConfig.h>

namespace HBX {

/// Makes the core record of an environment that begins with its configuration.
class HBX_EXPORT HBXEnvCoreBasicMaintainer {
public:
    /// The configuration must be there and no virtual one, or the program ends.
    HBXEnvCoreBasicMaintainer(const HBXEID& parentEid, boost::shared_ptr<HBXEnvConfig> config);

    /// The record with its two configurations; none of them null.
    [[nodiscard]] const boost::shared_ptr<HBXEnvCoreBasic>& getCoreBasic() const { return core_; }
    [[nodiscard]] const boost::shared_ptr<HBXEnvConfig>& getConfig() const { return config_; }
    [[nodiscard]] const boost::shared_ptr<HBXVEnvConfig>& getVirtualConfig() const { return virtualConfig_; }
    /// Whether the configuration's message did not go into the record, which is an empty one then, with an
    /// empty configuration over it. Such a record must not be stored in place of another.
    [[nodiscard]] bool isConfigLost() const { return configLost_; }
    /// Never, as long as only configurations are taken.
    [[nodiscard]] bool isVirtualConfigLost() const { return virtualConfigLost_; }

private:
    boost::shared_ptr<HBXEnvCoreBasic> core_;
    boost::shared_ptr<HBXEnvConfig> config_;
    boost::shared_ptr<HBXVEnvConfig> virtualConfig_;
    bool configLost_ = false;
    bool virtualConfigLost_ = false;
};

} // namespace HBX
