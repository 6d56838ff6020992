#pragma once

#include <HBXFunctionalityCore/property/HBXNamedOpStrListProperty.h>

namespace HBX {

/// One modification of a directory entry: the attribute by name, what is done with it (`operation`), and the
/// values that it is done with. It travels as the property that it is.
class HBX_EXPORT HBXDirMod : public HBXNamedOpStrListProperty {
public:
    using HBXNamedOpStrListProperty::HBXNamedOpStrListProperty;
};

} // namespace HBX
