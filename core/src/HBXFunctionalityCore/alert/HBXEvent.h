#pragma once

#include <string>
#include <utility>
#include <vector>

#include <HBXFunctionalityCore/alert/HBXEventData.h>
#include <HBXFunctionalityCore/alert/HBXInfo.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>

namespace HBX {

/// Something that happened, as it is sent to subscribers.
struct HBX_EXPORT HBXEvent : HBXPolymorphic {
    HBXEID eid;            ///< the environment in which it happened
    std::int64_t time = 0; ///< seconds since 1970-01-01 UTC
    std::string source;    ///< the module that tells it
    std::string category;
    std::string subject;
    int count = 0; ///< how often it happened
    HBXGUID id;
    HBXOptionalProperty<std::vector<boost::shared_ptr<HBXEventData>>> data; ///< none of them null
    HBXInfo info;                                                           ///< what it is for people

    HBXEvent() = default;
    explicit HBXEvent(std::string eventSource) : source(std::move(eventSource)) {}

    static const HBXRecordTable table;
    static const HBXPointerType family;

    /// Subject and data are taken as far as they read; without a time it is that of the message, else 0. All
    /// else must be there (-1).
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXEvent& event) const;
    };
    /// Stops at the first member that cannot be written: -1.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXEvent> {
        int operator()(HBXMessageIterator& it, const HBXEvent& event) const;
    };
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXEvent>;

} // namespace HBX
