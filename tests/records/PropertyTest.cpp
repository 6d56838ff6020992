#include <gtest/gtest.h>

#include <set>

#include <HBXFunctionalityCore/HBXFunctionalityCore.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

using Property = HBXNamedOpStrListProperty;

TEST(NamedProperty, WritesEveryOperationButNone) {
    for (const int operation : {-1, 0, -2}) {
        Property property("cn");
        property.operation = operation;
        property.get() = {"a", "", "a"};
        const Cursor it = newCursor();
        EXPECT_EQ(it->putObject(property, 1918), 0);
        it->seek(1918);
        EXPECT_EQ(it->seekPresence(1638), operation == -1 ? -1 : 0) << operation;
        it->seekUp();
        Property back;
        back.operation = 7;
        EXPECT_EQ(it->getObject(back, 1918), 0);
        EXPECT_EQ(back.operation, operation == -1 ? 7 : operation) << "a missing code keeps the present one";
        EXPECT_EQ(back.get(), property.get());
    }
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
    EXPECT_EQ(abortOf([&] { less(property, nullptr); }),
              "HBXFunctionalityCore core/src/HBXFunctionalityCore/HBXProperty:30 "
              "HBX::HBXLessNamedOpStrListPropertyPtr::operator ()");
    EXPECT_NE(abortOf([&] { less(nullptr, property); }), "");
}

} // namespace
} // namespace HBX::test
