#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>

#include <boost/smart_ptr/make_shared_object.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXMessage/HBXDefaultMap.h>
#include <HBXMessage/HBXRecordTable.h>

/// Members that are pointers to a base record while the object is one of several derived records: written
/// with the complex type of the derived one, read back as a new object of it. There is one registry per base,
/// filled while the program starts and only read from then on.
namespace HBX {

/// How a complex type reads as text, and the key of a family: "namespace:type".
HBX_EXPORT std::string qualifiedTypeName(const char* nsName, const char* typeName);

/// Ends the program: a family was registered wrongly. `line` is the place that the behaviour fixes.
[[noreturn]] HBX_EXPORT void abortFamily(int line);

/// What all families know of an entry.
class HBX_EXPORT HBXFamilyEntry {
public:
    virtual ~HBXFamilyEntry();
    /// Of the derived record.
    [[nodiscard]] const HBXRecordTable& table() const { return table_; }

protected:
    explicit HBXFamilyEntry(const HBXRecordTable& table) : table_(table) {}

private:
    const HBXRecordTable& table_;
};

/// The registry of any family, which does not know the classes. (Templates over it only cast: one map for all
/// costs a family next to nothing to compile.)
class HBX_EXPORT HBXFamilyRegistry {
public:
    using Entries = std::map<std::string, HBXFamilyEntry*, std::less<>>;

    /// Ends the program when a name or the default is taken.
    void add(HBXFamilyEntry& entry, const std::string& typeName, const char* className, bool isDefault);

    /// Null when there is none.
    [[nodiscard]] HBXFamilyEntry* ofType(std::string_view typeName) const { return find(byType_, typeName); }
    [[nodiscard]] HBXFamilyEntry* ofClass(std::string_view className) const {
        return find(byClass_, className);
    }
    [[nodiscard]] HBXFamilyEntry* fallback() const { return fallback_; }

    [[nodiscard]] const Entries& byType() const { return byType_; }   ///< qualified type name
    [[nodiscard]] const Entries& byClass() const { return byClass_; } ///< run-time class name

private:
    static HBXFamilyEntry* find(const Entries& entries, std::string_view name);

    Entries byType_;
    Entries byClass_;
    HBXFamilyEntry* fallback_ = nullptr;
};

template <class Base, class Root>
class HBXDerivedParserFactory;

/// The entries of a registry as what they are in one family, by name.
template <class Entry>
class HBXFamilyView {
    using Entries = HBXFamilyRegistry::Entries;

public:
    using value_type = std::pair<const std::string&, Entry*>;

    /// Goes through the names in ascending order.
    class const_iterator {
    public:
        explicit const_iterator(Entries::const_iterator at) : at_(at) {}
        value_type operator*() const { return {at_->first, static_cast<Entry*>(at_->second)}; }
        const_iterator& operator++() {
            ++at_;
            return *this;
        }
        friend bool operator==(const const_iterator&, const const_iterator&) = default;

        /// Keeps the pair that `->` shows.
        struct Arrow {
            value_type value;
            const value_type* operator->() const { return &value; }
        };
        Arrow operator->() const { return {**this}; }

    private:
        Entries::const_iterator at_;
    };

    explicit HBXFamilyView(const Entries& entries) : entries_(entries) {}
    /// As of a map from names to entries; `find` gives `end()` when there is none.
    [[nodiscard]] const_iterator begin() const { return const_iterator(entries_.begin()); }
    [[nodiscard]] const_iterator end() const { return const_iterator(entries_.end()); }
    [[nodiscard]] const_iterator find(std::string_view name) const {
        return const_iterator(entries_.find(name));
    }
    [[nodiscard]] std::size_t count(std::string_view name) const { return entries_.count(name); }
    [[nodiscard]] std::size_t size() const { return entries_.size(); }

private:
    const Entries& entries_;
};

/// The registry of one family.
template <class Base>
class HBXFactoryData : public HBXFamilyRegistry {
public:
    using Entry = HBXDerivedParserFactory<Base, Base>;

    /// The entries by type name, by class, and the one for elements of unknown type (null: none).
    [[nodiscard]] HBXFamilyView<Entry> factories() const { return HBXFamilyView<Entry>(byType()); }
    [[nodiscard]] HBXFamilyView<Entry> factoriesByType() const { return HBXFamilyView<Entry>(byClass()); }
    [[nodiscard]] Entry* defaultFactory() const { return static_cast<Entry*>(fallback()); }
};

/// One entry of a family: what can be done with one derived record.
template <class Base, class Root = Base>
class HBXDerivedParserFactory : public HBXFamilyEntry {
public:
    /// For the record of this table.
    using HBXFamilyEntry::HBXFamilyEntry;

    /// The cursor stands on the object's element; the pointer is replaced only on 0.
    virtual int read(const HBXMessageIterator& it, boost::shared_ptr<Base>& object) = 0;
    /// Writes the object with its marks into the current element; -1 when it is of another class.
    virtual int write(HBXMessageIterator& it, const Base& object) = 0;

    /// A new object with default values.
    virtual boost::shared_ptr<Base> create() const = 0;
    /// "namespace:type", by which elements name the record.
    virtual std::string qualifiedName() const = 0;

    /// The family's one registry; never null.
    static boost::shared_ptr<HBXFactoryData<Base>> factoryInternalData();
    static boost::shared_ptr<const HBXFactoryData<Base>> factoryData() { return factoryInternalData(); }
};

// Not inline, so that a family that is instantiated in one library has one registry in the whole process.
template <class Base, class Root>
boost::shared_ptr<HBXFactoryData<Base>> HBXDerivedParserFactory<Base, Root>::factoryInternalData() {
    static const boost::shared_ptr<HBXFactoryData<Base>> data(new HBXFactoryData<Base>);
    return data;
}

/// The entry of one derived record; a static object.
template <class Derived, class Base, class Root = Base, class Reader = typename Derived::Reader,
          class Writer = typename Derived::Writer>
class HBXDerivedParserFactoryT : public HBXDerivedParserFactory<Base, Root> {
public:
    /// @param isDefault  elements of a missing or unknown type are read as this one.
    explicit HBXDerivedParserFactoryT(bool isDefault) : HBXDerivedParserFactory<Base, Root>(Derived::table) {
        addFactory(isDefault, typeid(Derived).name());
    }

    int read(const HBXMessageIterator& it, boost::shared_ptr<Base>& object) override {
        auto made = boost::make_shared<Derived>();
        internal::traceEntry<Reader, Derived>("Reader");
        const int result = Reader()(it, *made);
        if (result == 0) {
            object = std::move(made);
        }
        return result;
    }

    int write(HBXMessageIterator& it, const Base& object) override {
        // By pointer: an unregistered class may come to a default entry that it does not derive from.
        const auto* derived = dynamic_cast<const Derived*>(&object);
        return derived == nullptr ? -1 : it.putObjectInternal(Writer(), *derived);
    }

    boost::shared_ptr<Base> create() const override { return boost::make_shared<Derived>(); }

    std::string qualifiedName() const override {
        const char* typeName = Writer::getTypeName();
        return *typeName != '\0' ? qualifiedTypeName(Writer::getNSName(), typeName)
                                 : qualifiedTypeName(HBXDefaultMap::findNSID(Writer::getNSID()),
                                                     HBXDefaultMap::findTypeID(Writer::getTypeID()));
    }

    /// Adds the entry to the registry. Ends the program when name, class or default are there already.
    void addFactory(bool isDefault, const char* className) {
        if (Writer::getNSName() == nullptr) {
            abortFamily(237);
        }
        if (Writer::getTypeName() == nullptr) {
            abortFamily(238);
        }
        HBXDerivedParserFactory<Base, Root>::factoryInternalData()->add(
            *this, HBXDerivedParserFactoryT::qualifiedName(), className, isDefault);
    }
};

/// Reads a polymorphic object from the current element.
template <class Base>
class HBXReaderDerived {
public:
    /// @param allowDefault  a missing or unknown complex type goes to the family's default entry, if it has
    /// one.
    explicit HBXReaderDerived(bool allowDefault = true) : allowDefault_(allowDefault) {}

    int operator()(const HBXMessageIterator& it, boost::shared_ptr<Base>& object) const {
        const auto family = HBXDerivedParserFactory<Base, Base>::factoryInternalData();
        HBXFamilyEntry* entry = family->ofType(it.curType());
        if (entry == nullptr && allowDefault_) {
            entry = family->fallback();
        }
        return entry == nullptr ? -1
                                : static_cast<HBXDerivedParserFactory<Base, Base>*>(entry)->read(it, object);
    }

private:
    bool allowDefault_;
};

/// Writes a polymorphic object into the current element, marks included; a null pointer is -1.
template <class Base>
struct HBXWriterDerived : HBXPlainMarks {
    int operator()(HBXMessageIterator& it, const boost::shared_ptr<Base>& object) const {
        if (!object) {
            return -1;
        }
        const auto family = HBXDerivedParserFactory<Base, Base>::factoryInternalData();
        HBXFamilyEntry* entry = family->ofClass(typeid(*object).name());
        if (entry == nullptr) {
            entry = family->fallback();
        }
        return entry == nullptr
                   ? -1
                   : static_cast<HBXDerivedParserFactory<Base, Base>*>(entry)->write(it, *object);
    }
};

/// A list of polymorphic items, each created as the class that its complex type names, in order.
template <class Id, class Record, class Base, template <class> class Sink = HBXReaderListDataT>
class HBXReaderDerivedList {
public:
    HBXReaderDerivedList(Id itemId, int mandatory, bool allowDefault = true)
        : list_(Sink<HBXReaderDerived<Base>>(HBXReaderDerived<Base>(allowDefault)), itemId, mandatory) {}

    template <class Sequence>
    int operator()(const HBXMessageIterator& it, Sequence& sequence) const {
        return list_(it, sequence);
    }

private:
    HBXReaderListT<Id, Sink<HBXReaderDerived<Base>>> list_;
};

/// What the rows of records that point to `Base` know of the family. A base record declares
/// `static const HBXPointerType family;` and defines it with this, in one place of its library.
template <class Base>
constexpr HBXPointerType familyType() {
    using Pointer = boost::shared_ptr<Base>;
    using Family = HBXDerivedParserFactory<Base, Base>;
    return {
        .isNull = [](const void* pointer) { return *static_cast<const Pointer*>(pointer) == nullptr; },
        .read = [](const HBXMessageIterator& it,
                   void* pointer) { return HBXReaderDerived<Base>()(it, *static_cast<Pointer*>(pointer)); },
        .write =
            [](HBXMessageIterator& it, const void* pointer) {
                return HBXWriterDerived<Base>()(it, *static_cast<const Pointer*>(pointer));
            },
        .object = [](const void* pointer, const void*& object) -> const HBXRecordTable& {
            const Base& base = **static_cast<const Pointer*>(pointer);
            const HBXFamilyEntry* entry = Family::factoryInternalData()->ofClass(typeid(base).name());
            if (entry == nullptr) {
                object = &base;
                return Base::table;
            }
            object = dynamic_cast<const void*>(&base);
            return entry->table();
        },
        .create =
            [](void* pointer, const HBXFamilyEntry& entry) {
                *static_cast<Pointer*>(pointer) = static_cast<const Family&>(entry).create();
            },
        .registry = []() -> const HBXFamilyRegistry& { return *Family::factoryInternalData(); },
    };
}

} // namespace HBX
