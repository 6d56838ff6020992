#pragma once

#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXFunctionalityCore/property/HBXProperty.h>
#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A named list of texts with an operation: the unit of a directory modification.
class HBX_EXPORT HBXNamedOpStrListProperty : public HBXNamedProperty<std::vector<std::string>> {
public:
    HBXNamedOpStrListProperty() = default;
    /// With a name or values, the rest empty.
    explicit HBXNamedOpStrListProperty(std::string propertyName) { name = std::move(propertyName); }
    explicit HBXNamedOpStrListProperty(std::vector<std::string> values) { value_ = std::move(values); }

    static const HBXRecordTable table;

    /// The name must be there (-1); a missing operation leaves the present one; no values are an empty list.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXNamedOpStrListProperty& property) const;
    };
    /// Leaves the operation out when there is none (-1); always 0.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXNamedOpStrListProperty> {
        int operator()(HBXMessageIterator& it, const HBXNamedOpStrListProperty& property) const;
    };

private:
    friend struct HBXNamedOpStrListPropertyRows;
};

/// Orders by name without regard to case, so that "cn" and "CN" are one key. A null pointer ends the program.
struct HBX_EXPORT HBXLessNamedOpStrListPropertyPtr {
    bool operator()(const boost::shared_ptr<HBXNamedOpStrListProperty>& a,
                    const boost::shared_ptr<HBXNamedOpStrListProperty>& b) const;
};

} // namespace HBX
