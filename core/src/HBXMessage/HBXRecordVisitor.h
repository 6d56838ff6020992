#pragma once

#include <cstddef>
#include <string_view>

#include <HBXCommon/HBXExport.h>
#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

/// Sees the members of any record in the order of its table, the base record's first: what JSON, text and
/// listings are made from. `row` is null for the record that the visit begins with and for items of a list.
class HBX_EXPORT HBXRecordVisitor {
public:
    virtual ~HBXRecordVisitor();

    /// A record begins, and ends; what lies between are its members.
    virtual void beginRecord(const HBXRow* row, const HBXRecordTable& table) = 0;
    virtual void endRecord() = 0;
    /// A list of `count` items begins, and ends.
    virtual void beginList(const HBXRow& row, std::size_t count) = 0;
    virtual void endList() = 0;
    /// One value with its text as a message would hold it.
    virtual void value(const HBXRow* row, HBXKind kind, std::string_view text) = 0;
    /// An unset optional member, or a null pointer.
    virtual void absent(const HBXRow* row) = 0;
};

/// Shows the record's members to the visitor.
HBX_EXPORT void visitRecord(const void* record, const HBXRecordTable& table, HBXRecordVisitor& visitor);

/// The same.
template <HBXRecord T>
void visitRecord(const T& record, HBXRecordVisitor& visitor) {
    visitRecord(&record, T::table, visitor);
}

/// How people call a member: the name of its element, or of the C++ member where it has none of its own.
HBX_EXPORT std::string_view memberLabel(const HBXRow& row);

} // namespace HBX
