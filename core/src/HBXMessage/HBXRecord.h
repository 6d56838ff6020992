#pragma once

#include <compare>
#include <concepts>
#include <type_traits>

#include <HBXMessage/HBXMessageIterator.h>
#include <HBXMessage/HBXOptionalProperty.h>

/// What the header of a record needs. A record is a plain value that says its members once, in a table:
///
///     struct HBX_EXPORT HBXFoo {
///         std::string name;
///         HBXOptionalProperty<int> limit;
///
///         static const HBXRecordTable table;        // defined in the .cpp with HBXRecordTable.h
///         using Reader = HBXTableReader<HBXFoo>;
///         using Writer = HBXTableWriter<HBXFoo>;
///     };
///
/// Reader, writer, comparison, description and everything else that looks at the members follow from the
/// table.
namespace HBX {

struct HBXRecordTable;

template <class T>
concept HBXRecord = std::same_as<decltype(T::table), const HBXRecordTable>;

/// The type marks of a record's writer, from its table. (The names are empty: a record is marked by numbers.)
template <class T>
struct HBXWriterMarks {
    /// Numbers of namespace and type, 0 for none; the names are empty.
    static int getNSID() { return recordNamespace(T::table); }
    static const char* getNSName() { return ""; }
    static int getTypeID() { return recordType(T::table); }
    static const char* getTypeName() { return ""; }
};

/// The reader of a record that its table says wholly: 0, or -1 at the first member that fails.
template <class T>
struct HBXTableReader {
    static constexpr bool kFollowsTable = true;
    int operator()(const HBXMessageIterator& it, T& value) const { return it.readTable(&value, T::table); }
};

/// The writer of such a record.
template <class T>
struct HBXTableWriter : HBXWriterMarks<T> {
    static constexpr bool kFollowsTable = true;
    int operator()(HBXMessageIterator& it, const T& value) const { return it.writeTable(&value, T::table); }
};

/// For a record that is one text: `toString()` gives it, `fromString(text)` takes it (0, or -1 and
/// unchanged), and the static `sample(random)` makes one for tests. The text is the value of the current
/// element; unreadable is -1.
template <class T>
struct HBXTextReader {
    int operator()(const HBXMessageIterator& it, T& value) const {
        std::string_view text;
        bool xml = false;
        return it.rawValue(0, text, xml) == 0 && value.fromString(text) == 0 ? 0 : -1;
    }
};

/// Writes such a record: its text is the value of the current element.
template <class T>
struct HBXTextWriter : HBXWriterMarks<T> {
    int operator()(HBXMessageIterator& it, const T& value) const { return it.putValue(value.toString(), 0); }
};

/// The ids that mark a record's elements; 0 for none.
HBX_EXPORT int recordNamespace(const HBXRecordTable& table);
HBX_EXPORT int recordType(const HBXRecordTable& table);

/// Total order over records of one type: member by member in the order of the table, the base record's first.
HBX_EXPORT std::strong_ordering compareRecords(const void* a, const void* b, const HBXRecordTable& table);

template <HBXRecord T>
bool operator==(const T& a, const T& b) {
    return std::is_eq(compareRecords(&a, &b, T::table));
}

template <HBXRecord T>
std::strong_ordering operator<=>(const T& a, const T& b) {
    return compareRecords(&a, &b, T::table);
}

} // namespace HBX
