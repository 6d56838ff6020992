#pragma once

#include <string>
#include <utility>
#include <vector>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A text for people with named parameters. "%name%" in the text stands for the parameter of that name, which
/// is such a record itself; whoever shows the text fills them in.
struct HBX_EXPORT HBXInfo {
    std::string name; ///< As a parameter of another text; empty for a text that stands alone.
    std::string text;
    bool translatable = false; ///< The text may be shown in another language; false: as it is.
    std::vector<HBXInfo> parameters;

    HBXInfo() = default;
    HBXInfo(std::string infoName, std::string infoText, bool mayBeTranslated)
        : name(std::move(infoName)), text(std::move(infoText)), translatable(mayBeTranslated) {}

    /// Adds a parameter, in the place of the one that has this name already.
    void setParameter(const HBXInfo& parameter);

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXInfo>;
    using Writer = HBXTableWriter<HBXInfo>;
};

} // namespace HBX
