#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXRecordTable.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/ValueText.h>

namespace HBX::internal {

/// Fills records by walking over the children of an element, each visited once, in the order in which they
/// come: its row is looked up from where the last one was found, so a record written by its own table never
/// searches. Absent members cost nothing and unknown children are passed over. The first child of an id
/// counts.
///
/// `Source` is a concrete cursor:
///   Place firstChild(Place), Place next(Place)     0 at the end; a place is good until its parent moves on
///   Ref id(Place)
///   bool text(Place, std::string_view&, bool& xml) false without a value
///   int callAt(Place, function)                    runs the function with the cursor standing there
///   std::uint32_t& recordDepth()                   records being read at present, one within the other
template <class Source>
class TableReader {
public:
    using Place = typename Source::Place;

    explicit TableReader(Source& source) : source_(source) {}

    int read(Place at, void* record, const HBXRecordTable& table) {
        if (debug_level >= 4) [[unlikely]] {
            traceRecord(table, "Reader");
        }
        if (table.text != nullptr) {
            return readScalar(at, table.text->kind, *table.text, record) ? 0 : -1;
        }
        if (table.read != nullptr) {
            return source_.callAt(at, [&](const HBXMessageIterator& it) { return table.read(it, record); });
        }
        if (source_.recordDepth() == kMaxDepth) {
            return -1; // a built tree may be deeper than the stack
        }
        ++source_.recordDepth();
        const bool good =
            (table.base == nullptr || readBase(at, record, table)) && readRows(at, record, table);
        --source_.recordDepth();
        return good ? 0 : -1;
    }

private:
    bool readBase(Place at, void* record, const HBXRecordTable& table) {
        return read(at, const_cast<void*>(table.toBase(record)), *table.base) == 0;
    }

    bool readRows(Place at, void* record, const HBXRecordTable& table) {
        if (table.rowCount == 0) {
            return true;
        }
        std::uint64_t seen = 0;
        std::uint32_t expected = 0;
        for (Place child = source_.firstChild(at); child != 0; child = source_.next(child)) {
            const std::uint32_t index = find(table, expected, static_cast<int>(source_.id(child)));
            if (index == table.rowCount) {
                continue;
            }
            const HBXRow& row = table.rows[index];
            const std::uint64_t bit = std::uint64_t{1} << index;
            if (row.id == 0) { // an item directly below the record's element
                expected = index;
                if (!addItem(child, row, table.at(row, record))) {
                    return false;
                }
                continue;
            }
            expected = index + 1;
            if ((seen & bit) != 0) {
                continue;
            }
            seen |= bit;
            if (!readRow(child, row, table, record)) {
                return false;
            }
        }
        return (seen & table.mandatory) == table.mandatory;
    }

    static std::uint32_t find(const HBXRecordTable& table, std::uint32_t from, int id) {
        for (std::uint32_t i = from; i < table.rowCount; ++i) {
            if (table.rows[i].key == id) {
                return i;
            }
        }
        for (std::uint32_t i = 0; i < from; ++i) {
            if (table.rows[i].key == id) {
                return i;
            }
        }
        return table.rowCount;
    }

    bool readRow(Place child, const HBXRow& row, const HBXRecordTable& table, void* record) {
        void* value = table.at(row, record);
        if (row.list != nullptr) {
            return readList(child, row, value);
        }
        if (row.kind == HBXKind::Pointer) {
            return readPointer(child, row, value);
        }
        if (row.presence == HBXPresence::Mandatory) {
            return readValue(child, row, value);
        }
        if (row.kind == HBXKind::Record ? readFresh(child, row, value) : readValue(child, row, value)) {
            table.markSet(row, record);
        }
        return true; // an unreadable optional leaves its member alone
    }

    bool readValue(Place at, const HBXRow& row, void* value) {
        if (row.kind == HBXKind::Record) {
            return read(at, value, *row.type->record) == 0;
        }
        return row.kind == HBXKind::Pointer ? readPointer(at, row, value)
                                            : readScalar(at, row.kind, *row.type, value);
    }

    bool readScalar(Place at, HBXKind kind, const HBXValueType& type, void* value) {
        std::string_view text;
        bool xml = false;
        return source_.text(at, text, xml) && parseMember(kind, type, text, xml, value);
    }

    bool readPointer(Place at, const HBXRow& row, void* value) {
        return source_.callAt(
                   at, [&](const HBXMessageIterator& it) { return row.type->pointer->read(it, value); }) == 0;
    }

    /// What filling a new value needs to know.
    struct Item {
        TableReader& reader;
        Place at;
        const HBXRow& row;
    };

    static bool fillItem(void* context, void* value) {
        const Item& item = *static_cast<const Item*>(context);
        return item.reader.readValue(item.at, item.row, value);
    }

    bool readFresh(Place at, const HBXRow& row, void* value) {
        Item item{*this, at, row};
        return row.type->replace(value, {&fillItem, &item});
    }

    bool addItem(Place at, const HBXRow& row, void* list) {
        Item item{*this, at, row};
        return row.list->add(list, {&fillItem, &item});
    }

    bool readList(Place wrapper, const HBXRow& row, void* list) {
        return row.list->resize != nullptr ? readSequence(wrapper, row, list) : readSet(wrapper, row, list);
    }

    bool readSet(Place wrapper, const HBXRow& row, void* list) {
        for (Place item = source_.firstChild(wrapper); item != 0; item = source_.next(item)) {
            if (source_.id(item) == static_cast<Ref>(row.itemId) && !addItem(item, row, list)) {
                return false;
            }
        }
        return true;
    }

    /// Counts first: one growth of the container instead of many, in steps that a hostile count cannot abuse.
    bool readSequence(Place wrapper, const HBXRow& row, void* list) {
        const auto itemId = static_cast<Ref>(row.itemId);
        std::size_t left = 0;
        for (Place item = source_.firstChild(wrapper); item != 0; item = source_.next(item)) {
            left += source_.id(item) == itemId ? 1 : 0;
        }
        std::size_t filled = row.list->size(list);
        std::size_t room = filled;
        char* items = nullptr;
        for (Place item = left != 0 ? source_.firstChild(wrapper) : Place{}; item != 0;
             item = source_.next(item)) {
            if (source_.id(item) != itemId) {
                continue;
            }
            if (filled == room) {
                room += std::min(left, kGrowthStep);
                items = row.list->resize(list, room);
            }
            if (!readValue(item, row, items + filled * row.list->stride)) {
                row.list->resize(list, filled);
                return false;
            }
            ++filled;
            --left;
        }
        return true;
    }

    static constexpr std::size_t kGrowthStep = 4096;

    Source& source_;
};

} // namespace HBX::internal
