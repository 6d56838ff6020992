#pragma once

#include <compare>
#include <memory>
#include <string>
#include <string_view>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

/// A record type as it is known at run time: its table, and how objects of it come and go. (No part of the
/// table: what need not be made by name then costs no compile time.)
struct HBXRecordEntry {
    const HBXRecordTable* table;
    std::string_view module; ///< class of the agent's module that it belongs to
    void* (*create)();       ///< with default values
    void (*destroy)(void* record);
};

/// The entry of a type.
template <HBXRecord T>
constexpr HBXRecordEntry recordEntry(std::string_view module) {
    return {&T::table, module, []() -> void* { return new T(); },
            [](void* record) { delete static_cast<T*>(record); }};
}

/// A record whose type is known at run time only.
class HBX_EXPORT HBXAnyRecord {
public:
    /// With default values.
    explicit HBXAnyRecord(const HBXRecordEntry& entry)
        : table_(entry.table), value_(entry.create(), entry.destroy) {}

    /// The type, and the object itself, good as long as this one.
    [[nodiscard]] const HBXRecordTable& table() const { return *table_; }
    [[nodiscard]] void* get() { return value_.get(); }
    [[nodiscard]] const void* get() const { return value_.get(); }

    /// As `putObject` and `getObject` on the current element.
    int put(HBXMessageIterator& it) const;
    int get(const HBXMessageIterator& it);
    /// As `encodeRecord` and `decodeRecord`.
    int encode(std::string& bytes) const;
    int decode(std::string_view bytes);

    /// Only for records of one type.
    friend std::strong_ordering operator<=>(const HBXAnyRecord& a, const HBXAnyRecord& b) {
        return compareRecords(a.get(), b.get(), *a.table_);
    }
    friend bool operator==(const HBXAnyRecord& a, const HBXAnyRecord& b) { return std::is_eq(a <=> b); }

private:
    const HBXRecordTable* table_;
    std::unique_ptr<void, void (*)(void*)> value_;
};

} // namespace HBX
