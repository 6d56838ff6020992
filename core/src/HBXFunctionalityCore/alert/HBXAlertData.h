#pragma once

#include <cstdint>
#include <string>

#include <HBXFunctionalityCore/alert/HBXEventData.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXMessage/HBXCombinators.h>

namespace HBX {

struct HBXInfo;

/// That something about an environment needs attention: what all alerts have in common.
struct HBX_EXPORT HBXAlertData : HBXEventData {
    /// Readers keep any number: it may come from a peer that knows more levels.
    enum AlertType : std::int32_t { GREEN, YELLOW, RED, BLACK };
    /// What a level is about; an environment has one level for each.
    enum AlertReason : std::int32_t { RESOURCE, SERVER_GROUP, BACKUP, LICENSE, OTHER };

    static constexpr int kReasons = OTHER + 1;

    HBXEID eid; ///< the environment that it is about
    int level = GREEN;

    /// "green", "yellow", "red" or "black"; "" for any other level.
    static const char* getAlertTypeString(int level);

    /// Shows the alert as a text with parameters; those of an alert without a kind are added to what `info`
    /// holds, every kind replaces it.
    virtual void toInfo(HBXInfo& info) const;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXAlertData>;
    using Writer = HBXTableWriter<HBXAlertData>;
};

/// A resource of an environment has gone beyond a limit, or returned.
struct HBX_EXPORT HBXResourceAlertData : HBXAlertData {
    std::string resourceId;
    std::int64_t current = 0; ///< this and the limits in the unit of the resource
    HBXOptionalProperty<std::int64_t> soft;
    std::int64_t hard = 0;

    void toInfo(HBXInfo& info) const override;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXResourceAlertData>;
    using Writer = HBXTableWriter<HBXResourceAlertData>;
};

/// A part of the agent's group of servers has failed.
struct HBX_EXPORT HBXServerGroupAlertData : HBXAlertData {
    HBXGUID envId; ///< the server that has failed; `eid` may be another one
    std::string reason;
    int code = 0; ///< of the failure
    std::string subsystem;

    void toInfo(HBXInfo& info) const override;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXServerGroupAlertData>;
    using Writer = HBXTableWriter<HBXServerGroupAlertData>;
};

/// A level as the number that is the current element's value.
struct HBX_EXPORT HBXAlertTypeReader {
    int operator()(const HBXMessageIterator& it, HBXAlertData::AlertType& type) const;
};
struct HBX_EXPORT HBXAlertTypeWriter : HBXPlainMarks {
    /// The type that marks a level.
    static int getTypeID() { return 50; }
    int operator()(HBXMessageIterator& it, HBXAlertData::AlertType type) const;
};

} // namespace HBX
