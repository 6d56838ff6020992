#pragma once

#include <string>

#include <HBXFunctionalityCore/environment/HBXVtVersion.h>
#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

/// Settings of a virtualization technology. The only member of its family so far.
struct HBX_EXPORT HBXVtSettings {
    HBXOptionalProperty<HBXVtVersion> version;
    std::string description;

    HBXVtSettings() = default;
    HBXVtSettings(const HBXVtSettings&) = default;
    HBXVtSettings(HBXVtSettings&&) noexcept = default;
    HBXVtSettings& operator=(const HBXVtSettings&) = default;
    HBXVtSettings& operator=(HBXVtSettings&&) noexcept = default;
    virtual ~HBXVtSettings();

    static const HBXRecordTable table;
    static const HBXPointerType family;

    /// What is absent or unreadable stays as it was; always 0.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXVtSettings& settings) const;
    };
    /// Leaves an empty description out.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXVtSettings> {
        int operator()(HBXMessageIterator& it, const HBXVtSettings& settings) const;
    };
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXVtSettings>;

} // namespace HBX
