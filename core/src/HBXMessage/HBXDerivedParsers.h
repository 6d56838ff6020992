#pragma once

#include <iterator>
#include <map>
#include <string>
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

template <class Base, class Root>
class HBXDerivedParserFactory;

/// The registry of one family.
template <class Base>
struct HBXFactoryData {
    using Entry = HBXDerivedParserFactory<Base, Base>;

    /// The entries by type name, by class, and the one for elements of unknown type (null: none).
    [[nodiscard]] const std::map<std::string, Entry*>& factories() const { return byName; }
    [[nodiscard]] const std::map<std::string, Entry*>& factoriesByType() const { return byClass; }
    [[nodiscard]] Entry* defaultFactory() const { return fallback; }
    /// The entry of this number, in the order of their type names.
    [[nodiscard]] auto entry(std::size_t which) const {
        return std::next(byName.begin(), static_cast<std::ptrdiff_t>(which));
    }

    std::map<std::string, Entry*> byName;  ///< qualified type name
    std::map<std::string, Entry*> byClass; ///< run-time class name
    Entry* fallback = nullptr;
};

/// One entry of a family: what can be done with one derived record.
template <class Base, class Root = Base>
class HBXDerivedParserFactory {
public:
    virtual ~HBXDerivedParserFactory() = default;
    /// The cursor stands on the object's element; the pointer is replaced only on 0.
    virtual int read(const HBXMessageIterator& it, boost::shared_ptr<Base>& object) = 0;
    /// Writes the object with its marks into the current element; -1 when it is of another class.
    virtual int write(HBXMessageIterator& it, const Base& object) = 0;

    /// A new object with default values.
    virtual boost::shared_ptr<Base> create() const = 0;
    /// Of the derived record.
    virtual const HBXRecordTable& table() const = 0;
    /// "namespace:type", by which elements name the record.
    virtual std::string qualifiedName() const = 0;

    /// The family's one registry; never null.
    static boost::shared_ptr<HBXFactoryData<Base>> factoryInternalData();
    static boost::shared_ptr<const HBXFactoryData<Base>> factoryData() { return factoryInternalData(); }
};

// Not inline, so that a family that is instantiated in one library has one registry in the whole process.
template <class Base, class Root>
boost::shared_ptr<HBXFactoryData<Base>> HBXDerivedParserFactory<Base, Root>::factoryInternalData() {
    static const auto data = boost::make_shared<HBXFactoryData<Base>>();
    return data;
}

/// The entry of one derived record; a static object.
template <class Derived, class Base, class Root = Base, class Reader = typename Derived::Reader,
          class Writer = typename Derived::Writer>
class HBXDerivedParserFactoryT : public HBXDerivedParserFactory<Base, Root> {
public:
    /// @param isDefault  elements of a missing or unknown type are read as this one.
    explicit HBXDerivedParserFactoryT(bool isDefault) { addFactory(isDefault, typeid(Derived).name()); }

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
    const HBXRecordTable& table() const override { return Derived::table; }

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
        const auto family = HBXDerivedParserFactory<Base, Root>::factoryInternalData();
        if (!family->byName.emplace(HBXDerivedParserFactoryT::qualifiedName(), this).second) {
            abortFamily(269);
        }
        if (!family->byClass.emplace(className, this).second) {
            abortFamily(271);
        }
        if (isDefault) {
            if (family->fallback != nullptr) {
                abortFamily(274);
            }
            family->fallback = this;
        }
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
        const auto found = family->byName.find(it.curType());
        if (found != family->byName.end()) {
            return found->second->read(it, object);
        }
        return allowDefault_ && family->fallback != nullptr ? family->fallback->read(it, object) : -1;
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
        const auto found = family->byClass.find(typeid(*object).name());
        if (found != family->byClass.end()) {
            return found->second->write(it, *object);
        }
        return family->fallback != nullptr ? family->fallback->write(it, *object) : -1;
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
            const auto family = Family::factoryInternalData();
            const auto found = family->byClass.find(typeid(base).name());
            if (found == family->byClass.end()) {
                object = &base;
                return Base::table;
            }
            object = dynamic_cast<const void*>(&base);
            return found->second->table();
        },
        .classes = [] { return Family::factoryInternalData()->byName.size(); },
        .classTable = [](std::size_t which, std::string_view& key) -> const HBXRecordTable& {
            const auto entry = Family::factoryInternalData()->entry(which);
            key = entry->first;
            return entry->second->table();
        },
        .create =
            [](void* pointer, std::size_t which) {
                *static_cast<Pointer*>(pointer) =
                    Family::factoryInternalData()->entry(which)->second->create();
            },
        .fallback = []() -> const HBXRecordTable* {
            const auto* entry = Family::factoryInternalData()->fallback;
            return entry == nullptr ? nullptr : &entry->table();
        },
    };
}

} // namespace HBX
