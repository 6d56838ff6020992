#pragma once

#include <string>
#include <utility>
#include <vector>

#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

/// A control that goes with a search request to a directory service: the base of the control family. On a
/// message the derived class is told by its complex type; a kind that this library does not know reads as
/// this one.
struct HBX_EXPORT HBXDirControl {
    bool critical = true; ///< The service must refuse the request when it does not know the control.
    std::string value;    ///< The control's value as the service gets it.
    std::string oid;      ///< Object identifier of the kind of control.

    HBXDirControl() = default;
    explicit HBXDirControl(std::string objectId) : oid(std::move(objectId)) {}
    HBXDirControl(const HBXDirControl&) = default;
    HBXDirControl(HBXDirControl&&) noexcept = default;
    HBXDirControl& operator=(const HBXDirControl&) = default;
    HBXDirControl& operator=(HBXDirControl&&) noexcept = default;
    virtual ~HBXDirControl();

    static const HBXRecordTable table;
    static const HBXPointerType family;
    using Reader = HBXTableReader<HBXDirControl>;
    using Writer = HBXTableWriter<HBXDirControl>;
};

/// Asks for a window of a sorted result (virtual list view).
struct HBX_EXPORT HBXDirVlvControl : virtual HBXDirControl {
    int beforeCount = 0;  ///< entries wanted before the target
    int afterCount = 0;   ///< entries wanted after it
    int offset = 0;       ///< position of the target, from 1
    int contentCount = 0; ///< the requester's estimate of the size of the whole list; 0: none

    HBXDirVlvControl() : HBXDirControl("2.16.840.1.113730.3.4.9") {}

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDirVlvControl>;
    using Writer = HBXTableWriter<HBXDirVlvControl>;
};

/// Asks the service to sort the result.
struct HBX_EXPORT HBXDirSortControl : virtual HBXDirControl {
    std::string attribute; ///< what to sort by
    bool reverse = false;

    HBXDirSortControl() : HBXDirControl("1.2.840.113556.1.4.473") {}

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDirSortControl>;
    using Writer = HBXTableWriter<HBXDirSortControl>;
};

/// The controls of one request, in order, directly below its element.
struct HBX_EXPORT HBXDirControlList {
    std::vector<boost::shared_ptr<HBXDirControl>> controls;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDirControlList>;
    using Writer = HBXTableWriter<HBXDirControlList>;
};

/// The one registry of the family in the process.
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXDirControl>;

} // namespace HBX
