#include <gtest/gtest.h>

#include <HBXFunctionalityCore/directory/HBXDirControl.h>
#include <HBXFunctionalityCore/directory/HBXDirEntry.h>
#include <HBXFunctionalityCore/directory/HBXDirMod.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

/// A line for each child of the root: its type, then its members.
std::string outlineOf(const HBXMessageIterator& it) {
    std::string text;
    for (int child = it.firstChild(); child == 0; child = it.nextSibling()) {
        text += it.curType() + ' ';
        for (int member = it.firstChild(); member == 0; member = it.nextSibling()) {
            std::string value = "none";
            it.getValue(value, 0);
            text.append(it.curName()).append("=").append(value).append(" ");
        }
        it.seekUp();
        text += '\n';
    }
    it.seekUp();
    return text;
}

HBXDirControlList everyKind() {
    const auto sort = boost::make_shared<HBXDirSortControl>();
    sort->attribute = "cn";
    sort->reverse = true;
    const auto vlv = boost::make_shared<HBXDirVlvControl>();
    vlv->beforeCount = 1;
    vlv->afterCount = 2;
    vlv->offset = 3;
    vlv->contentCount = 4;
    vlv->critical = false;
    return {{boost::make_shared<HBXDirControl>("1.2.3"), sort, vlv}};
}

TEST(DirControl, KindsTravelWithTheirMarksAndMembersInOrder) {
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(everyKind(), 0), 0);
    EXPECT_EQ(outlineOf(*it),
              "directory:control oid=1.2.3 critical=1 value= \n"
              "directory:sort_control oid=1.2.840.113556.1.4.473 critical=1 value= sort_attribute=cn "
              "reverse_order=1 \n"
              "directory:vlv_control oid=2.16.840.1.113730.3.4.9 critical=0 value= before_count=1 "
              "after_count=2 offset=3 count=4 \n");
    HBXDirControlList back;
    ASSERT_EQ(it->getObject(back, 0), 0);
    EXPECT_EQ(back, everyKind());
    EXPECT_EQ(typeid(*back.controls[2]), typeid(HBXDirVlvControl));
}

TEST(DirControl, UnknownKindsAreCarriedOnAsPlainOnes) {
    const struct {
        const char* name;
        const char* marks;
    } rows[] = {
        {"a kind of the future", " hbx:tns='directory' hbx:type='paged_control'"},
        {"another namespace", " hbx:tns='elsewhere' hbx:type='sort_control'"},
        {"numbers without names", " hbx:tnsid='9000' hbx:typeid='9001'"},
        {"no kind", ""},
    };
    for (const auto& row : rows) {
        const Cursor it = newCursor();
        const std::string text = std::string("<control") + row.marks +
                                 "><oid>1.2.840.113556.1.4.319</oid><critical>0</critical>"
                                 "<value> MAUCAWQEAA== </value><page_size>100</page_size></control>";
        ASSERT_EQ(it->fromTextToChild(text.c_str()), 0);
        HBXDirControlList list;
        ASSERT_EQ(it->getObject(list, 0), 0) << row.name;
        ASSERT_EQ(typeid(*list.controls.at(0)), typeid(HBXDirControl)) << row.name;

        const Cursor on = newCursor();
        ASSERT_EQ(on->putObject(list, 0), 0);
        HBXDirControlList back;
        ASSERT_EQ(on->getObject(back, 0), 0);
        EXPECT_EQ(back, list) << row.name;
        EXPECT_EQ(back.controls[0]->oid, "1.2.840.113556.1.4.319");
        EXPECT_EQ(back.controls[0]->value, " MAUCAWQEAA== ");
        EXPECT_FALSE(back.controls[0]->critical);
    }
}

TEST(DirControl, EveryMemberMustBeThereAndConvert) {
    for (const int id : {1007, 1921, 1018, 1923, 1924, 1087, 1259}) {
        const Cursor it = newCursor();
        HBXDirVlvControl control;
        ASSERT_EQ(it->putObject(control, 0), 0);
        it->deleteChild(id);
        EXPECT_EQ(it->getObject(control, 0), -1) << id;
        it->putValue("x", id);
        const bool isText = id == 1007 || id == 1018;
        EXPECT_EQ(it->getObject(control, 0), isText ? 0 : -1) << id;
    }
}

TEST(DirControl, NewOnesAreCriticalAndKnowTheirKind) {
    EXPECT_TRUE(HBXDirControl().critical);
    EXPECT_EQ(HBXDirControl("1.2.3").value, "");
    EXPECT_EQ(HBXDirVlvControl().oid, "2.16.840.1.113730.3.4.9");
    EXPECT_EQ(HBXDirSortControl().oid, "1.2.840.113556.1.4.473");
}

TEST(DirEntry, AttributesLieDirectlyBelowIt) {
    HBXDirMod mod("mail");
    mod.operation = 2;
    mod.get() = {"a@example", "b@example"};
    HBXDirEntry entry;
    entry.dn = "cn=a,dc=corp";
    entry.attributes = {mod, HBXNamedOpStrListProperty("cn")};
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(entry, 0), 0);
    HBXDirEntry back;
    ASSERT_EQ(it->getObject(back, 0), 0);
    EXPECT_EQ(back, entry);
    HBXDirMod first;
    ASSERT_EQ(it->getObject(first, 1918), 0) << "a modification is its property";
    EXPECT_EQ(first, mod);

    it->putValue("no property", 1918);
    EXPECT_EQ(it->getObject(back, 0), -1);
}

} // namespace
} // namespace HBX::test
