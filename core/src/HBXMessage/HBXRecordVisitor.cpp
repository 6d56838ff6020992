#include <HBXMessage/HBXRecordVisitor.h>

#include <string>

#include <HBXMessage/HBXDefaultMap.h>
#include <HBXMessage/internal/ValueText.h>

namespace HBX {
namespace {

class Walk {
public:
    explicit Walk(HBXRecordVisitor& visitor) : visitor_(visitor) {}

    void record(const HBXRow* row, const void* record, const HBXRecordTable& table) {
        if (table.text != nullptr) {
            scalar(row, table.text->kind, *table.text, record);
            return;
        }
        visitor_.beginRecord(row, table);
        members(record, table);
        visitor_.endRecord();
    }

private:
    void members(const void* record, const HBXRecordTable& table) {
        if (table.base != nullptr) {
            members(table.toBase(record), *table.base);
        }
        if (table.view == nullptr) {
            rows(record, table);
            return;
        }
        struct Context {
            Walk& walk;
            const HBXRecordTable& table;
        } context{*this, table};
        table.view->show(record, {[](void* raw, void* view) {
                                      const Context& to = *static_cast<const Context*>(raw);
                                      to.walk.rows(view, to.table);
                                      return true;
                                  },
                                  &context});
    }

    void rows(const void* record, const HBXRecordTable& table) {
        for (const HBXRow& row : table) {
            if (!table.isSet(row, record)) {
                visitor_.absent(&row);
            } else if (row.list != nullptr) {
                list(row, table.at(row, record));
            } else {
                value(&row, row, table.at(row, record));
            }
        }
    }

    struct ListContext {
        Walk& walk;
        const HBXRow& row;
    };

    void list(const HBXRow& row, const void* list) {
        visitor_.beginList(row, row.list->size(list));
        ListContext context{*this, row};
        row.list->each(
            list,
            [](void* raw, const void* item) {
                const ListContext& to = *static_cast<const ListContext*>(raw);
                to.walk.value(nullptr, to.row, item);
                return true;
            },
            &context);
        visitor_.endList();
    }

    /// `shown` is the row that the visitor is told: none for an item.
    void value(const HBXRow* shown, const HBXRow& row, const void* value) {
        if (row.kind == HBXKind::Record) {
            record(shown, value, *row.type->record);
        } else if (row.kind != HBXKind::Pointer) {
            scalar(shown, row.kind, *row.type, value);
        } else if (row.type->pointer->isNull(value)) {
            visitor_.absent(shown);
        } else {
            const void* object = nullptr;
            const HBXRecordTable& table = row.type->pointer->object(value, object);
            record(shown, object, table);
        }
    }

    void scalar(const HBXRow* row, HBXKind kind, const HBXValueType& type, const void* value) {
        std::string scratch;
        visitor_.value(row, kind, internal::printMember(kind, type, value, scratch));
    }

    HBXRecordVisitor& visitor_;
};

} // namespace

HBXRecordVisitor::~HBXRecordVisitor() = default;

void visitRecord(const void* record, const HBXRecordTable& table, HBXRecordVisitor& visitor) {
    Walk(visitor).record(nullptr, record, table);
}

std::string_view memberLabel(const HBXRow& row) {
    const std::string_view name = HBXDefaultMap::findElemID(row.id != 0 ? row.id : row.itemId);
    return name.empty() ? row.name : name;
}

} // namespace HBX
