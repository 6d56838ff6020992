#include <HBXMessage/HBXRecord.h>

#include <utility>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {
namespace {

template <class T>
std::strong_ordering compareAs(const void* a, const void* b) {
    return *static_cast<const T*>(a) <=> *static_cast<const T*>(b);
}

std::strong_ordering comparePointers(const HBXPointerType& type, const void* a, const void* b) {
    const bool aNull = type.isNull(a);
    if (aNull || type.isNull(b)) {
        return type.isNull(b) <=> aNull; // a null pointer comes first
    }
    const void* left = nullptr;
    const void* right = nullptr;
    const HBXRecordTable& leftTable = type.object(a, left);
    const HBXRecordTable& rightTable = type.object(b, right);
    if (&leftTable != &rightTable) {
        return qualifiedTypeName(leftTable) <=> qualifiedTypeName(rightTable);
    }
    return compareRecords(left, right, leftTable);
}

std::strong_ordering compareValues(const HBXRow& row, const void* a, const void* b) {
    switch (row.kind) {
    case HBXKind::Int:
        return compareAs<std::int32_t>(a, b);
    case HBXKind::Int64:
    case HBXKind::Time:
        return compareAs<std::int64_t>(a, b);
    case HBXKind::UInt32:
        return compareAs<std::uint32_t>(a, b);
    case HBXKind::Bool:
        return compareAs<bool>(a, b);
    case HBXKind::Double: // total, also over nan
        return std::strong_order(*static_cast<const double*>(a), *static_cast<const double*>(b));
    case HBXKind::String:
    case HBXKind::Base64:
    case HBXKind::Xml:
        return compareAs<std::string>(a, b);
    case HBXKind::Text:
        return row.type->compare(a, b);
    case HBXKind::Record:
        return compareRecords(a, b, *row.type->record);
    case HBXKind::Pointer:
        return comparePointers(*row.type->pointer, a, b);
    }
    return std::strong_ordering::equal;
}

std::vector<const void*> itemsOf(const HBXListType& type, const void* list) {
    std::vector<const void*> items;
    items.reserve(type.size(list));
    type.each(
        list,
        [](void* context, const void* item) {
            static_cast<std::vector<const void*>*>(context)->push_back(item);
            return true;
        },
        &items);
    return items;
}

std::strong_ordering compareLists(const HBXRow& row, const void* a, const void* b) {
    const std::vector<const void*> left = itemsOf(*row.list, a);
    const std::vector<const void*> right = itemsOf(*row.list, b);
    for (std::size_t i = 0; i < left.size() && i < right.size(); ++i) {
        if (const auto order = compareValues(row, left[i], right[i]); std::is_neq(order)) {
            return order;
        }
    }
    return left.size() <=> right.size();
}

} // namespace

int recordNamespace(const HBXRecordTable& table) { return table.nsid; }

int recordType(const HBXRecordTable& table) { return table.typeId; }

std::strong_ordering compareRecords(const void* a, const void* b, const HBXRecordTable& table) {
    if (table.text != nullptr) {
        return table.text->compare(a, b);
    }
    if (table.compare != nullptr) {
        return table.compare(a, b);
    }
    if (table.base != nullptr) {
        if (const auto order = compareRecords(table.toBase(a), table.toBase(b), *table.base);
            std::is_neq(order)) {
            return order;
        }
    }
    for (const HBXRow& row : table) {
        const bool set = table.isSet(row, a);
        if (set != table.isSet(row, b)) {
            return set ? std::strong_ordering::greater : std::strong_ordering::less;
        }
        if (!set) {
            continue;
        }
        const void* left = table.at(row, a);
        const void* right = table.at(row, b);
        const auto order =
            row.list != nullptr ? compareLists(row, left, right) : compareValues(row, left, right);
        if (std::is_neq(order)) {
            return order;
        }
    }
    return std::strong_ordering::equal;
}

} // namespace HBX
