#pragma once

#include <set>
#include <utility>
#include <vector>

#include <HBXMessage/HBXCombinators.h>
#include <HBXMessage/HBXRecord.h>

/// Readers that take only part of a list of settings. The cursor stands on the list's element; its children
/// `ItemElement` are settings, told from each other by their member `id`, whose element is `IdElement`. An
/// item whose identifier cannot be read is -1. No item at all is an empty list.
namespace HBX {

/// The identifier of the settings in the current element.
template <class Settings, int IdElement>
struct HBXSettingsIdReader {
    using Id = decltype(Settings::id);

    int operator()(const HBXMessageIterator& it, Id& id) const {
        if constexpr (HBXRecord<Id>) {
            return it.getObject(id, IdElement);
        } else {
            return it.getValue(id, IdElement);
        }
    }
};

/// Appends the items that are wanted; the others are passed over without being read.
template <class Settings, int IdElement, int ItemElement>
class HBXSettingsFilterReader {
public:
    using Id = decltype(Settings::id);

    explicit HBXSettingsFilterReader(std::set<Id> wanted) : list_(Sink{std::move(wanted)}, ItemElement, 0) {}

    int operator()(const HBXMessageIterator& it, std::vector<Settings>& settings) const {
        return list_(it, settings);
    }

private:
    struct Sink {
        std::set<Id> wanted;

        int operator()(const HBXMessageIterator& it, std::vector<Settings>& settings) const {
            Id id;
            if (HBXSettingsIdReader<Settings, IdElement>()(it, id) != 0) {
                return -1;
            }
            return wanted.count(id) == 0 ? 0 : HBXReaderListDataT<typename Settings::Reader>()(it, settings);
        }
    };

    HBXReaderListT<int, Sink> list_;
};

/// Removes settings at hand: those that the list lacks (`Keep` true), or those that it has (false). They are
/// untouched when the list cannot be read.
template <class Settings, int IdElement, int ItemElement, bool Keep>
struct HBXSettingsSetReader {
    int operator()(const HBXMessageIterator& it, std::vector<Settings>& settings) const {
        using Ids = HBXReaderSetDataT<HBXSettingsIdReader<Settings, IdElement>>;
        std::set<decltype(Settings::id)> listed;
        if (HBXReaderListT<int, Ids>(Ids(), ItemElement, 0)(it, listed) != 0) {
            return -1;
        }
        std::erase_if(settings, [&](const Settings& item) { return (listed.count(item.id) != 0) != Keep; });
        return 0;
    }
};

template <class Settings, int IdElement, int ItemElement>
using HBXSettingsIntersectionReader = HBXSettingsSetReader<Settings, IdElement, ItemElement, true>;

template <class Settings, int IdElement, int ItemElement>
using HBXSettingsDifferenceReader = HBXSettingsSetReader<Settings, IdElement, ItemElement, false>;

} // namespace HBX
