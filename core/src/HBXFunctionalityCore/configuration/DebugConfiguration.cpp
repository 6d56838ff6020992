#include <HBXFunctionalityCore/configuration/DebugConfiguration.h>

#include <utility>

#include <HBXCommon/HBXLog.h>
#include <HBXCommon/OptionManager.h>

namespace HBX::Debug {

namespace {

constexpr int kNoLevel = -1;
constexpr int kMinLevel = 0;
constexpr int kMaxLevel = 6;

constexpr const char* kLevelFunction = "HBX::Debug::Configuration::level";
constexpr const char* kFilterFunction = "HBX::Debug::Configuration::filter";

Log2 logAt(int line, const char* function) {
    return {"HBXFunctionalityCore", "core/src/HBXFunctionalityCore/HBXConfig", line, function, function};
}

/// The text of a filter setting, "" when it cannot be read.
std::string readFilter(HBXConfigurationIterator& section, const char* key) {
    std::string text;
    if (section.getValue(text, key) != 0) {
        logAt(__LINE__, kFilterFunction)
            .put(1, "[%s] Failed to read %s from configuration.", kFilterFunction, key);
    }
    return text;
}

} // namespace

Configuration::Configuration(const HBXConfiguration& configuration)
    : configuration_(configuration), section_(configuration_.getIterator()) {
    if (section_ != nullptr && section_->seek("system") != 0) {
        section_.reset();
    }
}

Configuration::Configuration(Configuration& other)
    : SettingsProvider(other), configuration_(other.configuration_), section_(std::move(other.section_)) {}

Configuration& Configuration::operator=(Configuration& other) {
    if (this != &other) {
        configuration_ = other.configuration_;
        section_ = std::move(other.section_);
    }
    return *this;
}

int Configuration::level() {
    int value = kNoLevel;
    if (section_ != nullptr && section_->getValue(value, "log_level") != 0) {
        logAt(__LINE__, kLevelFunction)
            .put(1, "[%s] Reconfigure. Failed to read log_level from configuration.", kLevelFunction);
    }
    if (value < kMinLevel || value > kMaxLevel) {
        logAt(__LINE__, kLevelFunction)
            .put(1, "[%s] Invalid log_level value. It must be an integer between %d and %d", kLevelFunction,
                 kMinLevel, kMaxLevel);
    }
    return value;
}

int Configuration::format() {
    int value = 0;
    return section_ != nullptr && section_->getValue(value, "log_func_name_level") == 0 ? value : 0;
}

int Configuration::order() {
    constexpr int kMin = 0;
    constexpr int kMax = 1;
    int value = 0;
    oh_get_global_config_option("/data/system/configuration/sorting_order", &value, &kMin, &kMax, true);
    return value;
}

ModuleFilter Configuration::filter() {
    if (section_ == nullptr) {
        return {};
    }
    std::string process = readFilter(*section_, "log_process_plugins");
    std::string ignore = readFilter(*section_, "log_ignore_plugins");
    return {std::move(process), std::move(ignore)};
}

} // namespace HBX::Debug
