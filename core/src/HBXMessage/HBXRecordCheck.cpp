#include <HBXMessage/HBXRecordCheck.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXRecordVisitor.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/ValueText.h>

namespace HBX {
namespace {

constexpr std::size_t kShown = 60; // bytes

/// As much of a text as fits a line, without control characters.
std::string shown(std::string_view text) {
    std::string line(text.substr(0, kShown));
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    return text.size() > kShown ? line + "..." : line;
}

std::string quoted(std::string_view text) { return '"' + shown(text) + '"'; }

/// What a value of this row is called.
std::string expectedOf(const HBXRow& row) {
    return std::string(row.type->record != nullptr ? row.type->record->name : kindName(row.kind));
}

/// Walks over an element as the table says, with an object of the type at hand: values are tried on its
/// members, which nobody looks at afterwards. The functions answer whether all fits; the first misfit is kept
/// and gets its path on the way out.
class Check {
public:
    explicit Check(const HBXMessageIterator& it) : it_(it) {}

    bool record(void* object, const HBXRecordTable& table) {
        if (table.text != nullptr) {
            return scalar(table.text->kind, *table.text, table.name, object);
        }
        if (depth_ > internal::kMaxDepth) {
            return misfit(table.name, "a record within too many others");
        }
        ++depth_;
        const bool fits = table.read == nullptr ? members(object, table) : accepted(object, table);
        --depth_;
        return fits;
    }

    HBXMisfit take() { return std::move(misfit_); }

private:
    bool misfit(std::string_view expected, std::string found) {
        misfit_ = {{}, std::string(expected), std::move(found)};
        return false;
    }

    /// A record whose reader is written by hand: that decides, the rows tell why.
    bool accepted(void* object, const HBXRecordTable& table) {
        return table.read(it_, object) == 0 ||
               (members(object, table) && misfit(table.name, "values that its own rules refuse"));
    }

    bool members(void* object, const HBXRecordTable& table) {
        if (table.base != nullptr && !record(const_cast<void*>(table.toBase(object)), *table.base)) {
            return false;
        }
        return table.view == nullptr ? rows(object, table) : viewRows(object, table);
    }

    bool viewRows(void* object, const HBXRecordTable& table) {
        struct Context {
            Check& check;
            const HBXRecordTable& table;
            bool fits;
        } context{*this, table, true};
        table.view->store(object, {[](void* raw, void* view) {
                                       Context& of = *static_cast<Context*>(raw);
                                       of.fits = of.check.rows(view, of.table);
                                       return false;
                                   },
                                   &context});
        return context.fits;
    }

    /// Runs the function on each child until it answers false.
    template <class Visit>
    bool eachChild(Visit visit) {
        if (it_.firstChild() != 0) {
            return true;
        }
        bool fits = true;
        do {
            fits = visit(it_.curID());
        } while (fits && it_.nextSibling() == 0);
        it_.seekUp();
        return fits;
    }

    bool rows(void* object, const HBXRecordTable& table) {
        std::uint64_t seen = 0;
        std::size_t item = 0; // of the list whose items lie directly below the record's element
        const bool fit = eachChild([&](int id) {
            const HBXRow* row = std::find_if(table.begin(), table.end(),
                                             [id](const HBXRow& candidate) { return candidate.key == id; });
            if (row == table.end()) {
                return true;
            }
            const std::uint64_t bit = std::uint64_t{1} << (row - table.begin());
            if (row->id == 0) {
                return listItem(*row, table.at(*row, object), ++item);
            }
            const bool isRepeated = (seen & bit) != 0; // the first child of an id counts
            seen |= bit;
            return isRepeated || member(*row, table.at(*row, object)) || within(label());
        });
        return fit && nothingMissing(table, seen);
    }

    bool nothingMissing(const HBXRecordTable& table, std::uint64_t seen) {
        for (std::uint32_t i = 0; i < table.rowCount; ++i) {
            if (((table.mandatory & ~seen) >> i & 1) != 0) {
                const HBXRow& row = table.rows[i];
                misfit(expectedOf(row), "no such element");
                return within(memberLabel(row));
            }
        }
        return true;
    }

    bool member(const HBXRow& row, void* value) {
        if (row.list == nullptr) {
            return this->value(row, value);
        }
        std::size_t item = 0;
        return eachChild([&](int id) { return id != row.itemId || listItem(row, value, ++item); });
    }

    /// @param number  of the item, from 1 on.
    bool listItem(const HBXRow& row, void* list, std::size_t number) {
        struct Context {
            Check& check;
            const HBXRow& row;
            bool fits;
        } context{*this, row, true};
        row.list->add(list, {[](void* raw, void* item) {
                                 Context& of = *static_cast<Context*>(raw);
                                 of.fits = of.check.value(of.row, item);
                                 return false;
                             },
                             &context});
        return context.fits || within(label() + '[' + std::to_string(number) + ']');
    }

    bool value(const HBXRow& row, void* value) {
        switch (row.kind) {
        case HBXKind::Record:
            return record(value, *row.type->record);
        case HBXKind::Pointer:
            return pointer(*row.type->pointer, value);
        default:
            return scalar(row.kind, *row.type, expectedOf(row), value);
        }
    }

    bool scalar(HBXKind kind, const HBXValueType& type, std::string_view expected, void* value) {
        std::string_view text;
        bool xml = false;
        if (it_.rawValue(0, text, xml) != 0) {
            return misfit(expected, it_.firstChild() == 0 ? (it_.seekUp(), "elements") : "no value");
        }
        return internal::parseMember(kind, type, text, xml, value) || misfit(expected, quoted(text));
    }

    bool pointer(const HBXPointerType& type, void* value) {
        const std::string name = it_.curType();
        const HBXFamilyRegistry& family = type.registry();
        const HBXFamilyEntry* entry = family.ofType(name);
        if (entry == nullptr) {
            entry = family.fallback();
        }
        if (entry == nullptr) {
            return misfit("one of " + typesOf(family), name.empty() ? "no type" : quoted(name));
        }
        type.create(value, *entry);
        const void* object = nullptr;
        const HBXRecordTable& table = type.object(value, object);
        return record(const_cast<void*>(object), table);
    }

    static std::string typesOf(const HBXFamilyRegistry& family) {
        std::string names;
        for (const auto& [name, entry] : family.byType()) {
            names.append(names.empty() ? "\"" : ", \"").append(name).append("\"");
        }
        return names;
    }

    [[nodiscard]] std::string label() const {
        const std::string name = it_.curName();
        return name.empty() ? std::to_string(it_.curID()) : shown(name);
    }

    /// The misfit lies within this child.
    bool within(std::string_view name) {
        misfit_.path.insert(0, name).insert(0, 1, '/');
        return false;
    }

    const HBXMessageIterator& it_;
    std::uint32_t depth_ = 0;
    HBXMisfit misfit_;
};

constexpr std::array<std::string_view, 12> kKindNames = {"int",    "int64",  "uint32", "bool",
                                                         "double", "string", "base64", "xml",
                                                         "time",   "text",   "record", "pointer"};

} // namespace

std::optional<HBXMisfit> findMisfit(const HBXMessageIterator& it, const HBXRecordEntry& type) {
    HBXAnyRecord object(type);
    Check check(it);
    return check.record(object.get(), *type.table) ? std::nullopt : std::optional(check.take());
}

std::string_view kindName(HBXKind kind) { return kKindNames[static_cast<std::size_t>(kind)]; }

} // namespace HBX
