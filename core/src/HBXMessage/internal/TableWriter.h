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
///   HBXMessageIterator& cursor()
///   bool hasChildren(), void removeFirst(int id)
///   int open(int id), void close()                    a new child, and back to its parent
///   int value(int id, std::string_view text, bool xml)  as putRawValue
///   void mark(int nsid, int typeId)                   namespace for what comes, complex type of the current
///   element void unmark()                                     no namespace from now on
template <class Sink>
class TableWriter {
public:
    explicit TableWriter(Sink& sink) : sink_(sink) {}

    int write(const void* record, const HBXRecordTable& table) {
        if (debug_level >= 4) [[unlikely]] {
            traceRecord(table, "Writer");
        }
        if (table.text != nullptr) {
            return writeScalar(0, table.text->kind, *table.text, record);
        }
        if (table.write != nullptr) {
            return table.write(sink_.cursor(), record);
        }
        if (table.base != nullptr) {
            if (const int result = write(table.toBase(record), *table.base); result != 0) {
                return result;
            }
        }
        const bool mayReplace = sink_.hasChildren();
        for (const HBXRow& row : table) {
            if (const int result = writeRow(row, table, record, mayReplace); result != 0) {
                return result;
            }
        }
        return 0;
    }

private:
    int writeRow(const HBXRow& row, const HBXRecordTable& table, const void* record, bool mayReplace) {
        if (row.presence == HBXPresence::ValueOnly || !table.isSet(row, record)) {
            return 0;
        }
        const void* value = table.at(row, record);
        if (row.list != nullptr) {
            return writeList(row, value);
        }
        if (row.kind == HBXKind::Pointer) {
            return row.type->pointer->isNull(value) ? 0 : writePointer(row.id, row, value);
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
            return writeScalar(id, row.kind, *row.type, value);
        }
    }

    int writeScalar(int id, HBXKind kind, const HBXValueType& type, const void* value) {
        char number[kNumberRoom];
        return sink_.value(id, printMember(kind, type, value, number, scratch_), kind == HBXKind::Xml);
    }

    int writeRecord(int id, const HBXRecordTable& table, const void* record) {
        if (sink_.open(id) != 0) {
            return -1;
        }
        sink_.mark(table.nsid, table.typeId);
        const int result = write(record, table);
        if (table.nsid != 0) {
            sink_.unmark();
        }
        sink_.close();
        return result;
    }

    int writePointer(int id, const HBXRow& row, const void* value) {
        if (sink_.open(id) != 0) {
            return -1;
        }
        const int result = row.type->pointer->write(sink_.cursor(), value);
        sink_.close();
        return result;
    }

    int writeList(const HBXRow& row, const void* list) {
        if (row.id != 0 && sink_.open(row.id) != 0) {
            return -1;
        }
        const bool good = row.list->data != nullptr ? writeSequence(row, list) : writeSet(row, list);
        if (row.id != 0) {
            sink_.close();
        }
        return good ? 0 : -1;
    }

    bool writeSequence(const HBXRow& row, const void* list) {
        const char* item = row.list->data(list);
        for (std::size_t left = row.list->size(list); left != 0; --left, item += row.list->stride) {
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
    std::string scratch_;
};

} // namespace HBX::internal
