#include <gtest/gtest.h>

#include <set>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

using Property = HBXNamedOpStrListProperty;

TEST(NamedProperty, WritesEveryOperationButNone) {
    const struct {
        int operation;
        bool written;
    } rows[] = {{-1, false}, {0, true}, {1, true}, {-2, true}, {-2147483647 - 1, true}};
    for (const auto& row : rows) {
        Property property("cn");
        property.operation = row.operation;
        property.get() = {"a", "", "a"};
        const Cursor it = newCursor();
        EXPECT_EQ(it->putObject(property, 1918), 0);
        it->seek(1918);
        EXPECT_EQ(it->seekPresence(1638) == 0, row.written) << row.operation;
        it->seekUp();
        Property back;
        EXPECT_EQ(it->getObject(back, 1918), 0);
        EXPECT_EQ(back, property);
    }
}

TEST(NamedProperty, ReadsWithoutValuesButNotWithoutName) {
    const Cursor it = newCursor();
    Property property;
    property.operation = 7;
    it->putValue("v", 1018);
    EXPECT_EQ(it->getObject(property, 0), -1);
    it->deleteChild(1018);
    it->newChild(1026);
    it->seekUp();
    EXPECT_EQ(it->getObject(property, 0), -1) << "a name without value";
    it->deleteChild(1026);
    it->putValue("cn", 1026);
    EXPECT_EQ(it->getObject(property, 0), 0);
    EXPECT_EQ(property.name, "cn");
    EXPECT_EQ(property.operation, 7) << "a missing code keeps the present one";
    EXPECT_TRUE(property.get().empty());
}

TEST(NamedProperty, IsOneKeyWhateverTheCaseOfItsName) {
    std::set<boost::shared_ptr<Property>, HBXLessNamedOpStrListPropertyPtr> set;
    for (const char* name : {"cn", "CN", "sn", "c"}) {
        set.insert(boost::make_shared<Property>(std::string(name)));
    }
    EXPECT_EQ(set.size(), 3U);
}

TEST(NamedProperty, NullPointersInAnOrderedSetEndTheProgram) {
    const auto property = boost::make_shared<Property>();
    const HBXLessNamedOpStrListPropertyPtr less;
    HBXSourcePlace place{};
    const HBXAbortHook previous = setAbortHook([&](const HBXSourcePlace& where) {
        place = where;
        throw 1;
    });
    EXPECT_THROW(less(property, nullptr), int);
    EXPECT_THROW(less(nullptr, property), int);
    setAbortHook(previous);
    EXPECT_EQ(place.line, 30);
    EXPECT_STREQ(place.file, "core/src/HBXFunctionalityCore/HBXProperty");
    EXPECT_STREQ(place.function, "HBX::HBXLessNamedOpStrListPropertyPtr::operator ()");
}

TEST(OptionalProperty, SortsUnsetFirstAndForgetsOnReset) {
    HBXOptionalProperty<int> unset;
    HBXOptionalProperty<int> set(-5);
    EXPECT_TRUE(unset < set);
    EXPECT_FALSE(set < unset);
    EXPECT_FALSE(unset == set);
    set.reset();
    EXPECT_TRUE(unset == set);
    EXPECT_EQ(set.get(), 0);
}

} // namespace
} // namespace HBX::test
