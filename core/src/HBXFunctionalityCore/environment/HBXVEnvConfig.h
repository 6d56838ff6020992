#pragma once

#include <set>

#include <HBXFunctionalityCore/environment/HBXEnvConfig.h>
#include <HBXFunctionalityCore/environment/HBXQoS.h>

namespace HBX {

/// The virtual configuration of an environment: what its host grants it.
class HBX_EXPORT HBXVEnvConfig : public HBXEnvConfig {
public:
    HBXVEnvConfig() : HBXVEnvConfig(nullptr) {}
    /// Over the virtual configuration in a core record.
    explicit HBXVEnvConfig(boost::shared_ptr<const HBXEnvCoreBasic> core)
        : HBXEnvConfig(std::move(core), VIRTUAL_CONFIG) {}

    /// False when the message does not say.
    int getDisabled(bool& value) const;
    int setDisabled(bool value);

    /// One limit or a set of them, in the same place: setting either replaces the other.
    int getQoS(HBXOptionalProperty<HBXQoS>& value) const;
    int setQoS(const HBXOptionalProperty<HBXQoS>& value);
    int getQoSes(HBXOptionalProperty<std::set<HBXQoS>>& value) const;
    int setQoSes(const HBXOptionalProperty<std::set<HBXQoS>>& value);

    static const HBXRecordTable table;
    /// As those of the base, for a virtual configuration.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXVEnvConfig& config) const;
    };
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXVEnvConfig> {
        int operator()(HBXMessageIterator& it, const HBXVEnvConfig& config) const;
    };
};

} // namespace HBX
