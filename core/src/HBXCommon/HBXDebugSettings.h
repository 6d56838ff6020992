#pragma once

#include <string>
#include <utility>

namespace HBX::Debug {

/// Which modules' lines are wanted, as the lists that the settings give.
class ModuleFilter {
public:
    ModuleFilter() = default;
    ModuleFilter(std::string process, std::string ignore)
        : process_(std::move(process)), ignore_(std::move(ignore)) {}

    /// Modules whose lines are written; empty: all.
    [[nodiscard]] const std::string& process() const { return process_; }
    /// Modules whose lines are not.
    [[nodiscard]] const std::string& ignore() const { return ignore_; }

private:
    std::string process_;
    std::string ignore_;
};

/// Where the log's settings come from; each call reads afresh.
class SettingsProvider {
public:
    SettingsProvider() = default;
    SettingsProvider(const SettingsProvider&) = default;
    SettingsProvider& operator=(const SettingsProvider&) = default;
    virtual ~SettingsProvider() = default;

    /// As for `debug_level`; whatever the settings say, so the caller judges numbers that are no level.
    virtual int level() = 0;
    /// How lines are sorted, 0 or 1.
    virtual int order() = 0;
    /// How much of a function's name lines show.
    virtual int format() = 0;
    /// Modules whose lines are wanted or not.
    virtual ModuleFilter filter() = 0;
};

} // namespace HBX::Debug
