#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/modules/HBXSettingsReaders.h>
#include <HBXFunctionalityCore/security/HBXAuthName.h>
#include <HBXFunctionalityCore/security/HBXToken.h>
#include <HBXFunctionalityCore/time/HBXTimeZone.h>

namespace HBX {

/// The agent's module for sessions, and for what users keep from one to the next.
class HBX_EXPORT HBXSessionMBase {
public:
    virtual ~HBXSessionMBase();
};

/// A user who is logged in.
struct HBX_EXPORT HBXSession {
    std::string id;
    HBXAuthName user;
    HBXOptionalProperty<HBXToken> token;
    HBXOptionalProperty<std::string> address; ///< from where
    std::int64_t started = 0;
    HBXOptionalProperty<std::int64_t> lastActive;
    HBXOptionalProperty<int> timeout; ///< seconds without a request until it ends

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXSession>;
    using Writer = HBXTableWriter<HBXSession>;
};

/// By what a list is sorted.
struct HBX_EXPORT HBXPagerSortCondition {
    std::string column; ///< its name
    HBXOptionalProperty<bool> descending;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPagerSortCondition>;
    using Writer = HBXTableWriter<HBXPagerSortCondition>;
};

/// A window of a sorted list.
struct HBX_EXPORT HBXRowSet {
    int offset = 0;                          ///< of the first row, from 0
    int limit = 0;                           ///< rows at most
    HBXOptionalProperty<int> total;          ///< rows of the whole list
    std::vector<HBXPagerSortCondition> sort; ///< the first condition counts most

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXRowSet>;
    using Writer = HBXTableWriter<HBXRowSet>;
};

/// A column of a list.
struct HBX_EXPORT HBXBrowseColumn {
    std::string name;
    HBXOptionalProperty<std::string> title; ///< for people
    HBXOptionalProperty<int> width;         ///< pixels
    HBXOptionalProperty<bool> hidden;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXBrowseColumn>;
    using Writer = HBXTableWriter<HBXBrowseColumn>;
};

/// A list that can be shown.
struct HBX_EXPORT HBXBrowseInfo {
    std::string id;
    HBXOptionalProperty<std::string> title; ///< for people
    std::vector<HBXBrowseColumn> columns;
    HBXOptionalProperty<int> pageSize; ///< rows

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXBrowseInfo>;
    using Writer = HBXTableWriter<HBXBrowseInfo>;
};

/// How a user wants to see a list.
struct HBX_EXPORT HBXBrowseSettings {
    std::string id;                       ///< HBXBrowseInfo::id
    std::vector<HBXBrowseColumn> columns; ///< in this order
    std::vector<HBXPagerSortCondition> sort;
    HBXOptionalProperty<int> pageSize;       ///< rows
    HBXOptionalProperty<std::string> filter; ///< only rows with this text

    // Over the items of a list of browses.
    using FilterReader = HBXSettingsFilterReader<HBXBrowseSettings, 3290, 3303>;
    using IntersectionReader = HBXSettingsIntersectionReader<HBXBrowseSettings, 3290, 3303>;
    using DifferenceReader = HBXSettingsDifferenceReader<HBXBrowseSettings, 3290, 3303>;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXBrowseSettings>;
    using Writer = HBXTableWriter<HBXBrowseSettings>;
};

/// A part of a screen.
struct HBX_EXPORT HBXDashboardSection {
    std::string id;
    HBXOptionalProperty<std::string> title; ///< for people
    HBXOptionalProperty<int> position;      ///< from the top
    HBXOptionalProperty<bool> collapsed;
    std::vector<std::string> parameters; ///< of what it shows

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDashboardSection>;
    using Writer = HBXTableWriter<HBXDashboardSection>;
};

/// A screen that can be shown.
struct HBX_EXPORT HBXScreenInfo {
    std::string id;
    HBXOptionalProperty<std::string> title; ///< for people
    HBXOptionalProperty<std::string> url;
    std::vector<HBXDashboardSection> sections;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXScreenInfo>;
    using Writer = HBXTableWriter<HBXScreenInfo>;
};

/// How a user wants to see a screen.
struct HBX_EXPORT HBXScreenSettings {
    std::string id; ///< HBXScreenInfo::id
    std::vector<HBXDashboardSection> sections;
    std::vector<HBXBrowseSettings> browses; ///< its lists
    HBXOptionalProperty<int> refresh;       ///< seconds

    // Over the items of a list of screens.
    using FilterReader = HBXSettingsFilterReader<HBXScreenSettings, 3299, 3311>;
    using IntersectionReader = HBXSettingsIntersectionReader<HBXScreenSettings, 3299, 3311>;
    using DifferenceReader = HBXSettingsDifferenceReader<HBXScreenSettings, 3299, 3311>;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXScreenSettings>;
    using Writer = HBXTableWriter<HBXScreenSettings>;
};

/// Something that a user can start from the desktop.
struct HBX_EXPORT HBXDesktopAction {
    std::string id;
    std::string title;                     ///< for people
    HBXOptionalProperty<std::string> icon; ///< its name
    HBXOptionalProperty<std::string> url;
    HBXOptionalProperty<bool> disabled;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDesktopAction>;
    using Writer = HBXTableWriter<HBXDesktopAction>;
};

/// How a user wants to see the desktop.
struct HBX_EXPORT HBXDesktopSettings {
    std::vector<HBXDesktopAction> actions;
    HBXOptionalProperty<std::string> theme;    ///< its name
    HBXOptionalProperty<std::string> language; ///< such as "en"

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXDesktopSettings>;
    using Writer = HBXTableWriter<HBXDesktopSettings>;
};

/// All that a user has set.
struct HBX_EXPORT HBXPersonalSettings {
    HBXAuthName user;
    HBXOptionalProperty<HBXDesktopSettings> desktop;
    std::vector<HBXScreenSettings> screens;
    HBXOptionalProperty<HBXTimeZone> timeZone;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXPersonalSettings>;
    using Writer = HBXTableWriter<HBXPersonalSettings>;
};

/// Settings under a name, that users can be given.
struct HBX_EXPORT HBXProfile {
    HBXGUID id;
    std::string name;
    HBXOptionalProperty<std::string> description;
    HBXOptionalProperty<HBXPersonalSettings> settings;
    HBXOptionalProperty<bool> builtin; ///< cannot be removed

    // Over the items of a list of profiles.
    using FilterReader = HBXSettingsFilterReader<HBXProfile, 1010, 3325>;
    using IntersectionReader = HBXSettingsIntersectionReader<HBXProfile, 1010, 3325>;
    using DifferenceReader = HBXSettingsDifferenceReader<HBXProfile, 1010, 3325>;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXProfile>;
    using Writer = HBXTableWriter<HBXProfile>;
};

} // namespace HBX
