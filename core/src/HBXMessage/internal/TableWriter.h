#pragma once

#include <string>
#include <string_view>

#include <HBXCommon/HBXLog.h>
#include <HBXMessage/HBXRecordTable.h>
#include <HBXMessage/internal/Tree.h>
#include <HBXMessage/internal/ValueText.h>

namespace HBX::internal {

/// Writes records as children of the sink's current element, in the order of their rows.
///
/// `Sink` is a concrete cursor:
///   int call(function)            runs the function with the cursor on the current element
///   bool hasChildren()            of the current element
///   void removeFirst(int id)
///   void expect(table)            the rows of this table come next
///   int open(int id, ids)         a new child; `ids` (bit id mod 64) is not 0 when children of these ids are
///                                 certain to follow, at least one, and nothing before them
///   void close()                  back to the parent
///   int value(id, head, text), number(id, head, number), xml(id, text)
///                                 as putRawValue
///   void mark(int nsid, int typeId)
///                                 namespace for what comes, complex type of the current element
///   void unmark()                 no namespace from now on
template <class Sink>
class TableWriter {
public:
    explicit TableWriter(Sink& sink)
        : sink_(sink), traces_(debug_level.load(std::memory_order_relaxed) >= 4) {}

    int write(const void* record, const HBXRecordTable& table) {
        if (traces_) [[unlikely]] {
            traceRecord(table, "Writer");
        }
        if (table.text != nullptr) {
            return writeText(record, *table.text);
        }
        if (table.write != nullptr) {
            return sink_.call([&](HBXMessageIterator& it) { return table.write(it, record); });
        }
        if (table.base != nullptr) {
            if (const int result = write(table.toBase(record), *table.base); result != 0) {
                return result;
            }
        }
        const bool mayReplace = sink_.hasChildren();
        sink_.expect(table);
        return writeRows(record, table, mayReplace);
    }

private:
    int writeText(const void* record, const HBXValueType& type) {
        return sink_.value(0, {}, printMember(type.kind, type, record, scratch_));
    }

    int writeRows(const void* record, const HBXRecordTable& table, bool mayReplace) {
        for (const HBXRow& row : table) {
            const int result = row.plain && row.flag == nullptr && row.kind != HBXKind::Text
                                   ? writeScalar(row.id, row, table.at(row, record))
                                   : writeRow(row, table, record, mayReplace);
            if (result != 0) {
                return result;
            }
        }
        return 0;
    }

    int writeRow(const HBXRow& row, const HBXRecordTable& table, const void* record, bool mayReplace) {
        if (row.presence == HBXPresence::ValueOnly || !table.isSet(row, record)) {
            return 0;
        }
        const void* value = table.at(row, record);
        if (row.list != nullptr) {
            return writeList(row, value);
        }
        if (row.kind == HBXKind::Pointer && row.type->pointer->isNull(value)) {
            return 0;
        }
        if (row.presence == HBXPresence::UnlessEmpty && row.type->isEmpty(value)) {
            return 0;
        }
        if (mayReplace && (row.kind == HBXKind::Record || row.kind == HBXKind::Text)) {
            sink_.removeFirst(row.id);
        }
        return writeValue(row.id, row, value);
    }

    int writeValue(int id, const HBXRow& row, const void* value) {
        switch (row.kind) {
        case HBXKind::Record:
            return writeRecord(id, *row.type->record, value);
        case HBXKind::Pointer:
            return writePointer(id, row, value);
        default:
            return writeScalar(id, row, value);
        }
    }

    int writeScalar(int id, const HBXRow& row, const void* value) {
        switch (row.kind) {
        case HBXKind::String:
            return sink_.value(id, row.head, *static_cast<const std::string*>(value));
        case HBXKind::Int:
            return sink_.number(id, row.head, std::int64_t{*static_cast<const std::int32_t*>(value)});
        case HBXKind::Int64:
        case HBXKind::Time:
            return sink_.number(id, row.head, *static_cast<const std::int64_t*>(value));
        case HBXKind::Bool:
            return sink_.value(id, row.head, *static_cast<const bool*>(value) ? "1" : "0");
        case HBXKind::Double:
            return sink_.number(id, row.head, *static_cast<const double*>(value));
        case HBXKind::Xml:
            return sink_.xml(id, *static_cast<const std::string*>(value));
        default:
            return sink_.value(id, row.head, printMember(row.kind, *row.type, value, scratch_));
        }
    }

    int writeRecord(int id, const HBXRecordTable& table, const void* record) {
        const bool marked = table.nsid != 0 || table.typeId > 100;
        const bool filled = table.fills && !marked;
        if (sink_.open(id, filled ? table.writtenIds : 0) != 0) {
            return -1;
        }
        if (marked) {
            sink_.mark(table.nsid, table.typeId);
        }
        const int result =
            filled && table.simple && !traces_ ? writeRows(record, table, false) : write(record, table);
        if (table.nsid != 0) {
            sink_.unmark();
        }
        sink_.close();
        return result;
    }

    int writePointer(int id, const HBXRow& row, const void* value) {
        if (sink_.open(id, 0) != 0) {
            return -1;
        }
        const int result =
            sink_.call([&](HBXMessageIterator& it) { return row.type->pointer->write(it, value); });
        sink_.close();
        return result;
    }

    int writeList(const HBXRow& row, const void* list) {
        const std::size_t size = row.list->size(list);
        const bool mayFail = row.kind == HBXKind::Pointer; // a null one leaves its list empty
        if (row.id != 0 && sink_.open(row.id, size != 0 && !mayFail ? ~std::uint64_t{} : 0) != 0) {
            return -1;
        }
        const bool good = row.list->data != nullptr ? writeSequence(row, list, size) : writeSet(row, list);
        if (row.id != 0) {
            sink_.close();
        }
        return good ? 0 : -1;
    }

    bool writeSequence(const HBXRow& row, const void* list, std::size_t size) {
        const char* item = row.list->data(list);
        for (; size != 0; --size, item += row.list->stride) {
            if (writeValue(row.itemId, row, item) != 0) {
                return false;
            }
        }
        return true;
    }

    bool writeSet(const HBXRow& row, const void* list) {
        struct Context {
            TableWriter& writer;
            const HBXRow& row;
        } context{*this, row};
        return row.list->each(
            list,
            [](void* raw, const void* item) {
                const Context& to = *static_cast<const Context*>(raw);
                return to.writer.writeValue(to.row.itemId, to.row, item) == 0;
            },
            &context);
    }

    Sink& sink_;
    const bool traces_;
    std::string scratch_;
};

} // namespace HBX::internal
