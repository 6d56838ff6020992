#include <HBXMessage/HBXRecordSample.h>

#include <iterator>
#include <string>

#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXRecordVisitor.h>

namespace HBX {
namespace {

constexpr int kDeepest = 3;
constexpr std::size_t kMostItems = 4;

/// Where values come from.
class Source {
public:
    virtual ~Source() = default;
    virtual std::int64_t number() = 0;
    virtual std::string text(const HBXRow& row) = 0;
    virtual std::size_t items() = 0;
    virtual std::size_t below(std::size_t count) = 0;
    virtual std::uint64_t seed() = 0; ///< of a value that makes itself
};

class RandomSource final : public Source {
public:
    explicit RandomSource(std::mt19937_64& random) : random_(random) {}

    /// Small, large and negative ones alike.
    std::int64_t number() override { return static_cast<std::int64_t>(random_()) >> (random_() % 64); }

    /// Any bytes, empty texts and blanks included.
    std::string text(const HBXRow&) override {
        std::string text(random_() % 24, '\0');
        const bool printable = random_() % 4 != 0;
        for (char& c : text) {
            c = static_cast<char>(printable ? ' ' + random_() % 95 : random_());
        }
        return text;
    }
    std::size_t items() override { return below(kMostItems + 1); }
    std::size_t below(std::size_t count) override { return random_() % count; }
    std::uint64_t seed() override { return random_(); }

private:
    std::mt19937_64& random_;
};

class ExampleSource final : public Source {
public:
    std::int64_t number() override { return ++last_; }
    std::string text(const HBXRow& row) override { return std::string(memberLabel(row)); }
    std::size_t items() override { return 2; }
    std::size_t below(std::size_t) override { return 0; }
    std::uint64_t seed() override { return static_cast<std::uint64_t>(++last_); }

private:
    std::int64_t last_ = 0;
};

class Filler {
public:
    explicit Filler(Source& source) : source_(source) {}

    void record(void* record, const HBXRecordTable& table) {
        if (table.text != nullptr) {
            table.text->sample(record, source_.seed());
            return;
        }
        ++depth_;
        if (table.base != nullptr) {
            this->record(const_cast<void*>(table.toBase(record)), *table.base);
        }
        if (table.view == nullptr) {
            rows(record, table);
        } else {
            view(record, table);
        }
        if (table.complete != nullptr) {
            table.complete(record);
        }
        --depth_;
    }

private:
    void rows(void* record, const HBXRecordTable& table) {
        for (const HBXRow& row : table) {
            member(row, table, record);
        }
    }

    void view(void* record, const HBXRecordTable& table) {
        struct Context {
            Filler& filler;
            const HBXRecordTable& table;
        } context{*this, table};
        table.view->store(record, {[](void* raw, void* view) {
                                       const Context& of = *static_cast<const Context*>(raw);
                                       of.filler.rows(view, of.table);
                                       return true;
                                   },
                                   &context});
    }

    void member(const HBXRow& row, const HBXRecordTable& table, void* record) {
        const bool nests = row.kind == HBXKind::Record || row.kind == HBXKind::Pointer;
        if (nests && depth_ > kDeepest && row.presence != HBXPresence::Mandatory) {
            return;
        }
        void* value = table.at(row, record);
        if (row.list != nullptr) {
            list(row, value);
            table.markSet(row, record);
        } else if (fill(row, value)) {
            table.markSet(row, record);
        }
    }

    struct Item {
        Filler& filler;
        const HBXRow& row;
    };

    void list(const HBXRow& row, void* list) {
        row.list->clear(list);
        Item item{*this, row};
        const HBXFill filled{[](void* raw, void* value) {
                                 const Item& of = *static_cast<const Item*>(raw);
                                 return of.filler.fill(of.row, value);
                             },
                             &item};
        for (std::size_t count = source_.items(); count != 0; --count) {
            row.list->add(list, filled);
        }
    }

    bool fill(const HBXRow& row, void* value) {
        switch (row.kind) {
        case HBXKind::Int:
            *static_cast<std::int32_t*>(value) = static_cast<std::int32_t>(source_.number());
            break;
        case HBXKind::Int64:
            *static_cast<std::int64_t*>(value) = source_.number();
            break;
        case HBXKind::UInt32:
            *static_cast<std::uint32_t*>(value) = static_cast<std::uint32_t>(source_.number());
            break;
        case HBXKind::Time:
            *static_cast<std::int64_t*>(value) = source_.number() & 0xFFFFFFFFFF;
            break;
        case HBXKind::Bool:
            *static_cast<bool*>(value) = source_.below(2) == 0;
            break;
        case HBXKind::Double:
            *static_cast<double*>(value) = static_cast<double>(source_.number()) / 3;
            break;
        case HBXKind::String:
        case HBXKind::Base64:
        case HBXKind::Xml:
            *static_cast<std::string*>(value) = source_.text(row);
            break;
        case HBXKind::Text:
            row.type->sample(value, source_.seed());
            break;
        case HBXKind::Record:
            record(value, *row.type->record);
            break;
        case HBXKind::Pointer:
            return pointer(*row.type->pointer, value);
        }
        return true;
    }

    bool pointer(const HBXPointerType& type, void* value) {
        const HBXFamilyRegistry::Entries& classes = type.registry().byType();
        const std::size_t which = source_.below(classes.size());
        type.create(value, *std::next(classes.begin(), static_cast<std::ptrdiff_t>(which))->second);
        const void* object = nullptr;
        const HBXRecordTable& table = type.object(value, object);
        record(const_cast<void*>(object), table);
        return true;
    }

    Source& source_;
    int depth_ = 0;
};

} // namespace

void fillSample(void* record, const HBXRecordTable& table, std::mt19937_64& random) {
    RandomSource source(random);
    Filler(source).record(record, table);
}

void fillExample(void* record, const HBXRecordTable& table) {
    ExampleSource source;
    Filler(source).record(record, table);
}

} // namespace HBX
