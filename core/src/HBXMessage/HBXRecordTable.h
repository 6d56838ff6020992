#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <HBXMessage/HBXRecord.h>

/// How a record's members are said: one row each, in an array that the record's table refers to.
///
///     constexpr HBXRow kFoo[] = {
///         member<&HBXFoo::name>(1026),
///         member<&HBXFoo::limit>(1067),          // HBXOptionalProperty: optional by itself
///         list<&HBXFoo::bars>(3024, 3025),       // element of the list, element of each item
///     };
///     constinit const HBXRecordTable HBXFoo::table = recordTable<HBXFoo>("HBXFoo", 401, 5012, kFoo);
namespace HBX {

/// How a value is read and written. Text: by the type's own text; Record: as a record; Pointer: by its
/// family.
enum class HBXKind : std::uint8_t {
    Int,
    Int64,
    UInt32,
    Bool,
    Double,
    String,
    Base64,
    Xml,
    Time,
    Text,
    Record,
    Pointer
};

/// Mandatory members fail the read when absent or unreadable. Optional ones keep what they had; they are
/// always written, unless they are an unset HBXOptionalProperty. Lists and polymorphic members may be absent,
/// but what is there must read; the same holds for UnlessEmpty members, which are written unless they say
/// that they are empty. ValueOnly members have no element: reader and writer are written by hand.
enum class HBXPresence : std::uint8_t { Mandatory, Optional, List, Set, Polymorphic, UnlessEmpty, ValueOnly };

/// Something that fills a value, handed to type-erased containers.
struct HBXFill {
    bool (*run)(void* context, void* value);
    void* context;
    bool operator()(void* value) const { return run(context, value); }
};

class HBXFamilyEntry;
class HBXFamilyRegistry;

/// A pointer to a polymorphic record, seen through its family (HBXDerivedParsers.h).
struct HBXPointerType {
    bool (*isNull)(const void* pointer);
    int (*read)(const HBXMessageIterator& it, void* pointer);
    int (*write)(HBXMessageIterator& it, const void* pointer);
    /// The table of the object's own class (of the base, when it is not registered) and where the object
    /// begins.
    const HBXRecordTable& (*object)(const void* pointer, const void*& object);
    void (*create)(void* pointer, const HBXFamilyEntry& entry);
    const HBXFamilyRegistry& (*registry)();
};

/// What the walks over a record know of one C++ type.
struct HBXValueType {
    HBXKind kind;
    const HBXRecordTable* record = nullptr;                              // Record, Text
    const HBXPointerType* pointer = nullptr;                             // Pointer
    bool (*parse)(std::string_view text, void* value) = nullptr;         // Text
    void (*print)(const void* value, std::string& text) = nullptr;       // Text
    std::strong_ordering (*compare)(const void*, const void*) = nullptr; // Text
    void (*sample)(void* value, std::uint64_t random) = nullptr;         // Text
    /// Assigns a filled new value, or leaves the old one when filling fails.
    bool (*replace)(void* value, HBXFill fill) = nullptr; // Record
    /// Of types that have `isEmpty()`.
    bool (*isEmpty)(const void* value) = nullptr; // Text, Record
};

/// What they know of one container type.
struct HBXListType {
    std::size_t (*size)(const void* list);
    void (*clear)(void* list);
    /// Adds a filled new item, or nothing when filling fails.
    bool (*add)(void* list, HBXFill fill);
    /// Calls `visit` with each item in order until it returns false; false when it did.
    bool (*each)(const void* list, bool (*visit)(void* context, const void* item), void* context);
    /// Sequences only: sets the number of items and returns the first, the others follow at `stride`.
    char* (*resize)(void* list, std::size_t count);
    const char* (*data)(const void* list);
    std::size_t stride;
};

/// The first bytes of an element with a text value, as the binary form has them; size 0 for ids that need
/// more.
struct HBXElementHead {
    std::uint32_t bytes; ///< little-endian
    std::uint32_t mask;  ///< which of them count
    std::uint32_t size;
};

/// The head of elements of this id.
constexpr HBXElementHead textElementHead(int id) {
    HBXElementHead head{};
    auto rest = static_cast<std::uint64_t>(id) << 3;
    do {
        const auto byte = static_cast<std::uint32_t>((rest & 0x7F) | (rest > 0x7F ? 0x80 : 0));
        head.bytes |= byte << (8 * head.size);
        head.mask |= 0xFFU << (8 * head.size++);
        rest >>= 7;
    } while (rest != 0 && head.size < 3);
    return rest == 0 && id > 0 ? head : HBXElementHead{};
}

/// One member of a record; made by the functions below.
struct HBXRow {
    const void* where;        ///< the value inside the record that `HBXRecordTable::origin` stands for
    const bool* flag;         ///< set flag of an optional property there, null for plain members
    const HBXValueType* type; ///< of the value, or of the items of a list
    const HBXListType* list;  ///< null for a single value
    int id;                   ///< element; 0 for a list whose items lie directly below the record's element
    int itemId;               ///< element of each item of a list
    HBXPresence presence;
    HBXKind kind;
    int key;             ///< element by which reading finds the row, -1 = never
    bool plain;          ///< one element with a text value, whose head is known
    bool flagged;        ///< whether there is a flag; under sanitizers `flag` cannot be asked at compile time
    HBXElementHead head; ///< of the element, or of each item of a list of plain values
    std::string_view name; ///< of the C++ member
};

/// Of a record that does not hold its members where rows could reach them: the rows are those of a plain
/// structure instead, which is made from the record to be looked at, or filled and put into it.
struct HBXRecordView {
    void (*show)(const void* record, HBXFill look);
    void (*store)(void* record, HBXFill fill);
};

/// All that is known of one record type; constant data, defined beside the record.
struct HBXRecordTable {
    std::string_view name;
    int nsid;
    int typeId;
    const HBXRow* rows;
    std::uint32_t rowCount;
    std::uint64_t mandatory;  ///< bit per mandatory row
    std::uint64_t writtenIds; ///< bit (id mod 64) per element that the rows write
    bool fills;               ///< whatever the values are, some child is written
    bool simple;              ///< nothing but rows: no base, no hand-written reader or writer
    const void* origin;
    const HBXRecordTable* base; ///< the record it derives from, whose members come first
    const void* (*toBase)(const void* record);
    const HBXValueType* text;     ///< of a record that is one text
    const HBXRecordView* view;    ///< where the rows are not those of the record itself
    const HBXPointerType* family; ///< that the record belongs to; null for most
    /// The order of a record that has one of its own; null where the rows say it.
    std::strong_ordering (*compare)(const void* a, const void* b);
    /// Readers and writers written by hand; null where the rows say all.
    int (*read)(const HBXMessageIterator& it, void* record);
    int (*write)(HBXMessageIterator& it, const void* record);
    /// `completeSample()` of a record that has it: members that were filled one by one become such as the
    /// record's own rules accept.
    void (*complete)(void* record);

    /// The rows of the record's own members.
    [[nodiscard]] const HBXRow* begin() const { return rows; }
    [[nodiscard]] const HBXRow* end() const { return rows + rowCount; }
    /// Where a row's value lies in a record.
    [[nodiscard]] const void* at(const HBXRow& row, const void* record) const {
        return static_cast<const char*>(record) + offset(row.where);
    }
    [[nodiscard]] void* at(const HBXRow& row, void* record) const {
        return static_cast<char*>(record) + offset(row.where);
    }
    /// Whether the member has a value; always, unless it is an optional property.
    [[nodiscard]] bool isSet(const HBXRow& row, const void* record) const {
        return row.flag == nullptr ||
               *reinterpret_cast<const bool*>(static_cast<const char*>(record) + offset(row.flag));
    }
    /// Says that it has one now.
    void markSet(const HBXRow& row, void* record) const {
        if (row.flag != nullptr) {
            *reinterpret_cast<bool*>(static_cast<char*>(record) + offset(row.flag)) = true;
        }
    }

private:
    [[nodiscard]] std::ptrdiff_t offset(const void* inside) const {
        return static_cast<const char*>(inside) - static_cast<const char*>(origin);
    }
};

/// The complex type of a record as text, "namespace:type"; "" for a record without marks.
HBX_EXPORT std::string qualifiedTypeName(const HBXRecordTable& table);

namespace internal {

/// A place shaped like a T, so that the address of a member is a constant, also where offsetof is not defined
/// (a record with a base). No T is ever made there.
template <class T>
union Probe {
    constexpr Probe() : none{} {}
    constexpr ~Probe() {}
    char none;
    T object;
};
template <class T>
inline constinit Probe<T> probe;

template <class Member>
struct MemberParts;
template <class C, class M>
struct MemberParts<M C::*> {
    using Class = C;
    using Type = M;
};

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<HBXOptionalProperty<T>> = true;

/// Where the name of a member begins in the compiler's text of `&HBXFoo::name`, and how long it is. (Plain
/// pointers, because this is evaluated for every member of every record.)
struct NamePlace {
    const char* text;
    std::size_t size;
};

template <auto Member>
constexpr NamePlace memberName() {
    const char* text = __PRETTY_FUNCTION__;
    std::size_t end = sizeof __PRETTY_FUNCTION__ - 1;
    while (text[end - 1] == ']' || text[end - 1] == ')') {
        --end;
    }
    std::size_t begin = end;
    while (text[begin - 1] != ':') {
        --begin;
    }
    return {text + begin, end - begin};
}

constexpr std::string_view nameText(NamePlace place) { return {place.text, place.size}; }

template <class T>
concept TextRecord = HBXRecord<T> && requires(T& value, const T& constant, std::string_view text) {
    { T::sample(std::uint64_t{}) } -> std::same_as<T>;
    { value.fromString(text) } -> std::same_as<int>;
    { constant.toString() } -> std::same_as<std::string>;
} && std::same_as<typename T::Reader, HBXTextReader<T>>;

/// Null for a type that cannot be empty.
template <class T>
constexpr auto emptyTest() -> bool (*)(const void*) {
    if constexpr (requires(const T& value) { value.isEmpty(); }) {
        return [](const void* value) { return static_cast<const T*>(value)->isEmpty(); };
    } else {
        return nullptr;
    }
}

template <class T>
bool replaceValue(void* value, HBXFill fill) {
    T fresh{};
    if (!fill(&fresh)) {
        return false;
    }
    *static_cast<T*>(value) = std::move(fresh);
    return true;
}

template <class T>
constexpr HBXValueType describeValue() {
    if constexpr (std::is_same_v<T, bool>) {
        return {.kind = HBXKind::Bool};
    } else if constexpr (std::is_enum_v<T> || std::is_same_v<T, std::int32_t>) {
        static_assert(sizeof(T) == sizeof(std::int32_t), "enumerations in records are 32 bits wide");
        return {.kind = HBXKind::Int};
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
        return {.kind = HBXKind::Int64};
    } else if constexpr (std::is_same_v<T, std::uint32_t>) {
        return {.kind = HBXKind::UInt32};
    } else if constexpr (std::is_same_v<T, double>) {
        return {.kind = HBXKind::Double};
    } else if constexpr (std::is_same_v<T, std::string>) {
        return {.kind = HBXKind::String};
    } else if constexpr (TextRecord<T>) {
        return {
            .kind = HBXKind::Text,
            .record = &T::table,
            .parse = [](std::string_view text,
                        void* value) { return static_cast<T*>(value)->fromString(text) == 0; },
            .print = [](const void* value,
                        std::string& text) { text = static_cast<const T*>(value)->toString(); },
            .compare = [](const void* a, const void* b) -> std::strong_ordering {
                const T& left = *static_cast<const T*>(a);
                const T& right = *static_cast<const T*>(b);
                return left == right  ? std::strong_ordering::equal
                       : left < right ? std::strong_ordering::less
                                      : std::strong_ordering::greater;
            },
            .sample = [](void* value, std::uint64_t random) { *static_cast<T*>(value) = T::sample(random); },
            .isEmpty = emptyTest<T>()};
    } else if constexpr (HBXRecord<T>) {
        return {.kind = HBXKind::Record,
                .record = &T::table,
                .replace = &replaceValue<T>,
                .isEmpty = emptyTest<T>()};
    } else {
        return {.kind = HBXKind::Pointer, .pointer = &T::element_type::family};
    }
}

template <class T>
inline constexpr HBXValueType valueType = describeValue<T>();

template <class List>
inline constexpr bool isSequence = requires(List& list) { list.data(); };

template <class List>
constexpr HBXListType describeList() {
    using Item = typename List::value_type;
    HBXListType type{};
    type.size = [](const void* list) { return static_cast<const List*>(list)->size(); };
    type.clear = [](void* list) { static_cast<List*>(list)->clear(); };
    type.each = [](const void* list, bool (*visit)(void*, const void*), void* context) {
        for (const Item& item : *static_cast<const List*>(list)) {
            if (!visit(context, &item)) {
                return false;
            }
        }
        return true;
    };
    type.add = [](void* list, HBXFill fill) {
        Item item{};
        if (!fill(&item)) {
            return false;
        }
        auto& target = *static_cast<List*>(list);
        target.insert(target.end(), std::move(item));
        return true;
    };
    if constexpr (isSequence<List>) {
        type.resize = [](void* list, std::size_t count) {
            auto& target = *static_cast<List*>(list);
            target.resize(count);
            return reinterpret_cast<char*>(target.data());
        };
        type.data = [](const void* list) {
            return reinterpret_cast<const char*>(static_cast<const List*>(list)->data());
        };
        type.stride = sizeof(Item);
    }
    return type;
}

template <class List>
inline constexpr HBXListType listType = describeList<List>();

template <class T>
concept SelfComparing = requires(const T& a, const T& b) {
    { a.compare(b) } -> std::same_as<int>;
};

/// `View` is made from a record, and put into one by `storeTo`.
template <class T, class View>
inline constexpr HBXRecordView recordView{.show =
                                              [](const void* record, HBXFill look) {
                                                  View view(*static_cast<const T*>(record));
                                                  look(&view);
                                              },
                                          .store =
                                              [](void* record, HBXFill fill) {
                                                  View view;
                                                  if (fill(&view)) {
                                                      view.storeTo(*static_cast<T*>(record));
                                                  }
                                              }};

template <class T>
inline constexpr bool isTableDriven = std::is_same_v<typename T::Reader, HBXTableReader<T>>;

} // namespace internal

/// A single value under its element id; its C++ type says the kind where none is given (base64, XML and times
/// look like any string or number), and whether it may be absent. `Class` is the record, when the member
/// belongs to a base of it that is no record itself.
template <auto Member, class Class = typename internal::MemberParts<decltype(Member)>::Class>
constexpr HBXRow member(int id, HBXPresence presence = HBXPresence::Mandatory) {
    using Type = typename internal::MemberParts<decltype(Member)>::Type;
    const Type* place = &(internal::probe<Class>.object.*Member);
    HBXRow row{.where = place,
               .flag = nullptr,
               .type = nullptr,
               .list = nullptr,
               .id = id,
               .itemId = 0,
               .presence = presence,
               .kind = {},
               .key = id,
               .plain = false,
               .flagged = internal::isOptional<Type>,
               .head = textElementHead(id),
               .name = internal::nameText(internal::memberName<Member>())};
    if constexpr (internal::isOptional<Type>) {
        row.where = place->valueAddress();
        row.flag = place->flagAddress();
        row.type = &internal::valueType<typename Type::value_type>;
        row.presence = HBXPresence::Optional;
    } else {
        row.type = &internal::valueType<Type>;
    }
    row.kind = row.type->kind;
    row.plain = row.kind < HBXKind::Record && row.head.size != 0;
    return row;
}

/// As `member`, with a kind that the C++ type alone does not say.
template <auto Member>
constexpr HBXRow memberAs(HBXKind kind, int id, HBXPresence presence = HBXPresence::Mandatory) {
    HBXRow row = member<Member>(id, presence);
    row.kind = kind;
    return row;
}

/// A member of plain C++ type that may be absent.
template <auto Member>
constexpr HBXRow optional(int id) {
    return member<Member>(id, HBXPresence::Optional);
}

/// A member that is left out when it is empty, and that must read when it is there.
template <auto Member>
constexpr HBXRow unlessEmpty(int id) {
    using Type = typename internal::MemberParts<decltype(Member)>::Type;
    static_assert(
        requires(const Type& value) { value.isEmpty(); }, "the member cannot be empty");
    HBXRow row = member<Member>(id, HBXPresence::UnlessEmpty);
    row.plain = false;
    return row;
}

/// A pointer to a record of a polymorphic family; a null pointer is not written.
template <auto Member>
constexpr HBXRow polymorphic(int id) {
    return member<Member>(id, HBXPresence::Polymorphic);
}

/// A member that is compared and shown, but read and written by hand.
template <auto Member>
constexpr HBXRow valueOnly(int id = 0) {
    HBXRow row = member<Member>(id);
    row.presence = HBXPresence::ValueOnly;
    row.key = -1;
    row.plain = false;
    return row;
}

/// A vector or set: element of the whole, element of each item. Id 0: the items lie directly below the
/// record.
template <auto Member, class Class = typename internal::MemberParts<decltype(Member)>::Class>
constexpr HBXRow list(int id, int itemId) {
    using Type = typename internal::MemberParts<decltype(Member)>::Type;
    const auto& type = internal::valueType<typename Type::value_type>;
    return {.where = &(internal::probe<Class>.object.*Member),
            .flag = nullptr,
            .type = &type,
            .list = &internal::listType<Type>,
            .id = id,
            .itemId = itemId,
            .presence = internal::isSequence<Type> ? HBXPresence::List : HBXPresence::Set,
            .kind = type.kind,
            .key = id != 0 ? id : itemId,
            .plain = false,
            .flagged = false,
            .head = textElementHead(itemId),
            .name = internal::nameText(internal::memberName<Member>())};
}

/// The table of a record: its name, namespace id and type id (0, 0: it carries no marks), its rows; `Base` is
/// the record that it derives from.
template <class T, class Base = void>
constexpr HBXRecordTable recordTable(std::string_view name, int nsid, int typeId, const HBXRow* rows,
                                     std::size_t count) {
    static_assert(std::is_nothrow_move_constructible_v<T>, "lists of records move them");
    HBXRecordTable table{};
    table.name = name;
    table.nsid = nsid;
    table.typeId = typeId;
    table.rows = rows;
    table.rowCount = static_cast<std::uint32_t>(count);
    table.origin = &internal::probe<T>.object;
    for (std::size_t i = 0; i < count; ++i) {
        table.mandatory |= static_cast<std::uint64_t>(rows[i].presence == HBXPresence::Mandatory) << i;
        table.writtenIds |= std::uint64_t{1} << (static_cast<unsigned>(rows[i].key) & 63U);
        table.fills |= rows[i].id > 0 && !rows[i].flagged && rows[i].kind != HBXKind::Pointer &&
                       rows[i].presence < HBXPresence::UnlessEmpty;
    }
    if constexpr (requires { T::family; }) {
        table.family = &T::family;
    }
    table.simple = std::is_void_v<Base>;
    if constexpr (!std::is_void_v<Base>) {
        table.base = &Base::table;
        table.toBase = [](const void* record) -> const void* {
            return static_cast<const Base*>(static_cast<const T*>(record));
        };
    }
    if constexpr (internal::SelfComparing<T>) {
        table.compare = [](const void* a, const void* b) {
            return static_cast<const T*>(a)->compare(*static_cast<const T*>(b)) <=> 0;
        };
    }
    if constexpr (requires(T& record) { record.completeSample(); }) {
        table.complete = [](void* record) { static_cast<T*>(record)->completeSample(); };
    }
    if constexpr (internal::TextRecord<T>) {
        if (nsid != 0 || typeId != 0) {
            throw "a record that is one text carries no marks"; // fails the compilation
        }
        table.simple = false;
        table.text = &internal::valueType<T>;
    } else if constexpr (!internal::isTableDriven<T>) {
        table.fills = table.simple = false;
        table.read = [](const HBXMessageIterator& it, void* record) {
            return typename T::Reader()(it, *static_cast<T*>(record));
        };
        table.write = [](HBXMessageIterator& it, const void* record) {
            return typename T::Writer()(it, *static_cast<const T*>(record));
        };
    }
    return table;
}

/// The same from an array of at most 64 rows: how records define their tables.
template <class T, class Base = void, std::size_t N>
constexpr HBXRecordTable recordTable(std::string_view name, int nsid, int typeId, const HBXRow (&rows)[N]) {
    static_assert(N <= 64, "reading keeps one bit per row");
    return recordTable<T, Base>(name, nsid, typeId, rows, N);
}

/// A record without members of its own.
template <class T, class Base = void>
constexpr HBXRecordTable recordTable(std::string_view name, int nsid, int typeId) {
    return recordTable<T, Base>(name, nsid, typeId, nullptr, 0);
}

/// The table of a record whose members are seen through `View`, a record of its own whose rows these are.
/// Such a record has reader, writer and `compare` written by hand.
template <class T, class View, class Base = void, std::size_t N>
constexpr HBXRecordTable viewTable(std::string_view name, int nsid, int typeId, const HBXRow (&rows)[N]) {
    static_assert(!internal::isTableDriven<T> && internal::SelfComparing<T>);
    HBXRecordTable table = recordTable<T, Base>(name, nsid, typeId, rows);
    table.origin = &internal::probe<View>.object;
    table.view = &internal::recordView<T, View>;
    return table;
}

} // namespace HBX
