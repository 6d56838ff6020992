#pragma once

#include <memory>

#include <HBXCommon/HBXDebugSettings.h>
#include <HBXCommon/HBXExport.h>
#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

namespace HBX::Debug {

/// The log's settings as a configuration's section "system" has them (the sorting order: as the global
/// configuration file has it). What is absent has its default; nothing is kept from one call to the next.
class HBX_EXPORT Configuration : public SettingsProvider {
public:
    /// Shares the configuration's message.
    explicit Configuration(const HBXConfiguration& configuration);
    /// Copies take over the section: the source then gives the defaults.
    Configuration(Configuration& other);
    Configuration& operator=(Configuration& other);
    ~Configuration() override = default;

    /// "log_level", -1 when there is none. What is no number, or not 0 to 6, is logged; a number out of range
    /// is returned all the same.
    int level() override;
    /// "sorting_order" of the global file when it is 0 or 1, else 0.
    int order() override;
    /// "log_func_name_level", 0 when there is none.
    int format() override;
    /// "log_process_plugins" and "log_ignore_plugins", each empty when there is none, which is logged.
    ModuleFilter filter() override;

private:
    HBXConfiguration configuration_;
    std::unique_ptr<HBXConfigurationIterator> section_; ///< null: there is no section "system"
};

} // namespace HBX::Debug
