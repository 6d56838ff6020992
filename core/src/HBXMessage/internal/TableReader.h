#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXRecordTable.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/Tree.h>
#include <HBXMessage/internal/ValueText.h>

namespace HBX::internal {

/// Fills records by walking over the children of an element, each visited once, in the order in which they
/// come: its row is looked up from where the last one was found, so a record written by its own table never
/// searches. Absent members cost nothing and unknown children are passed over. The first child of an id
/// counts.
///
/// `Source` is a concrete cursor:
///   Walk walk(Place)              over the children of a place
///   Place next(Walk&)             the next child, 0 at the end; good until the walk moves on
///   bool takeText(Walk&, row, text&)
///                                 the text of the next child, if that is the plain element of the row;
///                                 the walk moves on only then
///   size_t count(Place, Ref id)   children of this id
///   Ref id(Place)
///   bool text(Place, text&, xml&) false without a value
///   int callAt(Place, function)   runs the function with the cursor standing there
///   bool lost()                   a function has removed what is being read
///   uint32_t& recordDepth()       records being read at present, one within the other
template <class Source>
class TableReader {
public:
    using Place = typename Source::Place;
    using Walk = typename Source::Walk;

    explicit TableReader(Source& source)
        : source_(source), traces_(debug_level.load(std::memory_order_relaxed) >= 4) {}

    int read(Place at, void* record, const HBXRecordTable& table) {
        if (!table.simple || traces_) [[unlikely]] {
            return readSpecial(at, record, table);
        }
        return readMembers(at, record, table) ? 0 : -1;
    }

private:
    int readSpecial(Place at, void* record, const HBXRecordTable& table) {
        if (traces_) {
            traceRecord(table, "Reader");
        }
        if (table.text != nullptr) {
            return readText(at, table.text->kind, *table.text, record) ? 0 : -1;
        }
        if (table.read != nullptr) {
            return source_.callAt(at, [&](const HBXMessageIterator& it) { return table.read(it, record); });
        }
        return (table.base == nullptr || readBase(at, record, table)) && readMembers(at, record, table) ? 0
                                                                                                        : -1;
    }

    /// A built tree may be deeper than the stack, hence the limit: as deep as encoded elements can be, and
    /// the record at the top.
    bool readMembers(Place at, void* record, const HBXRecordTable& table) {
        if (source_.recordDepth() > kMaxDepth) [[unlikely]] {
            return false;
        }
        ++source_.recordDepth();
        const bool good = readRows(at, record, table);
        --source_.recordDepth();
        return good;
    }

    bool readBase(Place at, void* record, const HBXRecordTable& table) {
        return read(at, const_cast<void*>(table.toBase(record)), *table.base) == 0;
    }

    bool readRows(Place at, void* record, const HBXRecordTable& table) {
        std::uint64_t seen = 0;
        std::uint32_t expected = 0;
        Walk walk = source_.walk(at);
        for (;;) {
            while (expected < table.rowCount && takeExpected(walk, table, expected, seen, record)) {
                ++expected;
            }
            const Place child = source_.next(walk);
            if (child == 0) {
                break;
            }
            const std::uint32_t index = find(table, expected, static_cast<int>(source_.id(child)));
            if (index == table.rowCount) {
                continue;
            }
            const HBXRow& row = table.rows[index];
            if (row.id == 0) { // an item directly below the record's element
                expected = index;
                if (!addItem(child, row, table.at(row, record))) {
                    return false;
                }
                continue;
            }
            expected = index + 1;
            const std::uint64_t bit = std::uint64_t{1} << index;
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

    /// The short way: the next child is the plain value that the next row waits for.
    bool takeExpected(Walk& walk, const HBXRecordTable& table, std::uint32_t index, std::uint64_t& seen,
                      void* record) {
        const HBXRow& row = table.rows[index];
        const std::uint64_t bit = std::uint64_t{1} << index;
        const Walk before = walk;
        std::string_view text;
        if (!row.plain || (seen & bit) != 0 || !source_.takeText(walk, row, text)) {
            return false;
        }
        if (!parseScalar(row.kind, *row.type, text, false, table.at(row, record))) {
            walk = before; // the long way knows what to do with it
            return false;
        }
        table.markSet(row, record);
        seen |= bit;
        return true;
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
            return row.list->resize != nullptr ? readSequence(child, row, value) : readSet(child, row, value);
        }
        if (row.kind == HBXKind::Pointer || row.presence == HBXPresence::Mandatory ||
            row.presence == HBXPresence::UnlessEmpty) {
            return readValue(child, row, value);
        }
        if (row.kind == HBXKind::Record ? readFresh(child, row, value) : readValue(child, row, value)) {
            table.markSet(row, record);
        }
        return !source_.lost(); // an unreadable optional leaves its member alone
    }

    bool readValue(Place at, const HBXRow& row, void* value) {
        switch (row.kind) {
        case HBXKind::Record:
            return read(at, value, *row.type->record) == 0;
        case HBXKind::Pointer:
            return source_.callAt(at, [&](const HBXMessageIterator& it) {
                return row.type->pointer->read(it, value);
            }) == 0;
        default:
            return readText(at, row.kind, *row.type, value);
        }
    }

    bool readText(Place at, HBXKind kind, const HBXValueType& type, void* value) {
        std::string_view text;
        bool xml = false;
        return source_.text(at, text, xml) && parseScalar(kind, type, text, xml, value);
    }

    /// The common kinds without a call.
    static bool parseScalar(HBXKind kind, const HBXValueType& type, std::string_view text, bool xml,
                            void* value) {
        std::int64_t number = 0;
        if (kind == HBXKind::String) {
            static_cast<std::string*>(value)->assign(text.data(), text.size());
            return true;
        }
        if ((kind == HBXKind::Int64 || kind == HBXKind::Time) && parseShortNumber(text, number)) {
            *static_cast<std::int64_t*>(value) = number;
            return true;
        }
        if (kind == HBXKind::Int && parseShortNumber(text, number) &&
            number == static_cast<std::int32_t>(number)) {
            *static_cast<std::int32_t*>(value) = static_cast<std::int32_t>(number);
            return true;
        }
        return parseMember(kind, type, text, xml, value);
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

    bool readSet(Place wrapper, const HBXRow& row, void* list) {
        Walk walk = source_.walk(wrapper);
        for (Place item = source_.next(walk); item != 0; item = source_.next(walk)) {
            if (source_.id(item) == static_cast<Ref>(row.itemId) && !addItem(item, row, list)) {
                return false;
            }
        }
        return true;
    }

    /// Counts first: one growth of the container instead of many, in steps that a hostile count cannot abuse.
    bool readSequence(Place wrapper, const HBXRow& row, void* list) {
        const auto itemId = static_cast<Ref>(row.itemId);
        std::size_t left = source_.count(wrapper, itemId);
        std::size_t filled = row.list->size(list);
        std::size_t room = filled;
        char* items = nullptr;
        Walk walk = source_.walk(wrapper);
        for (Place item = 0; left != 0 && (item = source_.next(walk)) != 0;) {
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
    const bool traces_;
};

} // namespace HBX::internal
