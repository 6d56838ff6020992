#include <gtest/gtest.h>

#include <HBXMessage/HBXDerivedParsers.h>

#include "SampleRecords.h"
#include "support/MessageTestUtil.h"

/// Families of polymorphic records: those of the sample records, and some that are registered wrongly.
namespace HBX::test {
namespace {

using It = HBXMessageIterator;
using ShapePointer = boost::shared_ptr<Shape>;

TEST(DerivedParsers, UnknownClassesAndTypesGoToTheDefaultWhenThatIsAllowed) {
    const auto blob = boost::make_shared<Blob>();
    blob->size = 8;
    const Cursor it = newCursor();
    EXPECT_EQ(HBXWriterDerived<Shape>()(*it, blob), 0);
    EXPECT_EQ(it->curType(), "common:mail_template");
    for (const auto& [ns, type] : {std::pair(0, 0), std::pair(283, 9999), std::pair(0, 5009)}) {
        it->setComplexType(ns, type);
        ShapePointer shape;
        EXPECT_EQ(HBXReaderDerived<Shape>(false)(*it, shape), -1) << type;
        EXPECT_EQ(shape, nullptr);
        EXPECT_EQ(HBXReaderDerived<Shape>()(*it, shape), 0) << type;
        EXPECT_EQ(shape->size, 8);
    }
    EXPECT_EQ(HBXWriterDerived<Shape>()(*it, ShapePointer()), -1);
}

// --- families of their own, registered while the test runs ---

template <int Family>
struct Animal {
    virtual ~Animal() = default;
};

/// Marks are ids or names; null names are those that abort.
template <int Family, int NS, int Type>
struct Cat : virtual Animal<Family> {
    static inline const char* nsName = "";
    static inline const char* typeName = "";
    static const HBXRecordTable table;
    struct Reader {
        int operator()(const It&, Cat&) const { return 0; }
    };
    struct Writer {
        static int getNSID() { return NS; }
        static const char* getNSName() { return nsName; }
        static int getTypeID() { return Type; }
        static const char* getTypeName() { return typeName; }
        int operator()(It& it, const Cat&) const { return it.putValue(Type, 1010); }
    };
};

template <int Family, int NS, int Type>
constinit const HBXRecordTable Cat<Family, NS, Type>::table = recordTable<Cat<Family, NS, Type>>("Cat", 0, 0);

template <int Family, class Class>
std::unique_ptr<HBXDerivedParserFactoryT<Class, Animal<Family>>> enter(bool isDefault) {
    return std::make_unique<HBXDerivedParserFactoryT<Class, Animal<Family>>>(isDefault);
}

/// A class of another name with the same marks.
template <class Class>
struct Twin : Class {
    using Reader = typename Class::Reader;
    using Writer = typename Class::Writer;
};

TEST(DerivedParsers, FamilyWithoutDefaultReadsOnlyWhatItKnows) {
    using Known = Cat<1, 283, 295>;
    using Pointer = boost::shared_ptr<Animal<1>>;
    const auto entry = enter<1, Known>(false);
    const Cursor it = newCursor();
    it->setComplexType(283, 294);
    Pointer pointer;
    EXPECT_EQ(HBXReaderDerived<Animal<1>>()(*it, pointer), -1);
    EXPECT_EQ(pointer, nullptr);
    EXPECT_EQ(HBXWriterDerived<Animal<1>>()(*it, boost::make_shared<Animal<1>>()), -1);
    EXPECT_EQ(HBXWriterDerived<Animal<1>>()(*it, boost::make_shared<Known>()), 0) << "over a virtual base";
    EXPECT_EQ(HBXReaderDerived<Animal<1>>(false)(*it, pointer), 0);
    EXPECT_NE(boost::dynamic_pointer_cast<Known>(pointer), nullptr);
    const auto fallback = enter<2, Cat<2, 283, 295>>(true);
    EXPECT_EQ(HBXWriterDerived<Animal<2>>()(*newCursor(), boost::make_shared<Animal<2>>()), -1)
        << "the default writes only its own class";
    boost::shared_ptr<Animal<99>> unheardOf;
    EXPECT_EQ(HBXReaderDerived<Animal<99>>()(*it, unheardOf), -1) << "nobody registered";
}

TEST(DerivedParsers, TypeNameOfTheWriterComesBeforeItsId) {
    using Named = Cat<3, 283, 295>;
    Named::typeName = "own";
    EXPECT_EQ((enter<3, Named>(false)->qualifiedName()), "own");
    Named::nsName = "space";
    EXPECT_EQ((HBXDerivedParserFactoryT<Twin<Named>, Animal<3>>(false).qualifiedName()), "space:own");
}

TEST(DerivedParsers, WrongRegistrationAbortsAtItsLine) {
    const auto line = [](int number) {
        return "HBXFunctionalityCore core/src/HBXMessage/HBXDerivedParsers:" + std::to_string(number) +
               " HBX::HBXDerivedParserFactoryT::addFactory";
    };
    using First = Cat<4, 283, 295>;
    using Second = Cat<4, 283, 296>;
    First::nsName = First::typeName = nullptr;
    EXPECT_EQ(abortOf([] { enter<4, First>(true); }), line(237));
    First::nsName = "";
    EXPECT_EQ(abortOf([] { enter<4, First>(true); }), line(238));
    First::typeName = "";
    const auto first = enter<4, First>(true);
    EXPECT_EQ(abortOf([] { HBXDerivedParserFactoryT<Twin<First>, Animal<4>>(false); }), line(269));
    EXPECT_EQ(abortOf([&] { enter<4, Second>(false)->addFactory(false, "another class"); }), line(269));
    Second::typeName = "renamed";
    EXPECT_EQ(abortOf([] { enter<4, Second>(false); }), line(271)) << "one class, two names";
    EXPECT_EQ(abortOf([] { enter<4, Cat<4, 283, 297>>(true); }), line(274)) << "a second default";
}

} // namespace
} // namespace HBX::test
