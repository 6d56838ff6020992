#include <gtest/gtest.h>

#include <HBXFunctionalityCore/directory/HBXDirControl.h>
#include <HBXFunctionalityCore/directory/HBXDirEntry.h>
#include <HBXFunctionalityCore/directory/HBXDirMod.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

TEST(DirControl, KindsTravelWithTheirMarksAndMembersInOrder) {
    const auto sort = boost::make_shared<HBXDirSortControl>();
    sort->attribute = "cn";
    sort->reverse = true;
    const auto vlv = boost::make_shared<HBXDirVlvControl>();
    vlv->afterCount = 2;
    vlv->contentCount = 4;
    vlv->critical = false;
    const HBXDirControlList list{{boost::make_shared<HBXDirControl>("1.2.3"), sort, vlv}};
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(list, 0), 0);
    std::string text;
    for (int child = it->firstChild(); child == 0; child = it->nextSibling()) {
        text += it->curType();
        for (int member = it->firstChild(); member == 0; member = it->nextSibling()) {
            std::string value;
            it->getValue(value, 0);
            text.append(" ").append(it->curName()).append("=").append(value);
        }
        it->seekUp();
        text += '\n';
    }
    EXPECT_EQ(text, "directory:control oid=1.2.3 critical=1 value=\n"
                    "directory:sort_control oid=1.2.840.113556.1.4.473 critical=1 value= sort_attribute=cn "
                    "reverse_order=1\n"
                    "directory:vlv_control oid=2.16.840.1.113730.3.4.9 critical=0 value= before_count=0 "
                    "after_count=2 offset=0 count=4\n");
    it->seekRoot();
    HBXDirControlList back;
    ASSERT_EQ(it->getObject(back, 0), 0);
    EXPECT_EQ(back, list);
    EXPECT_EQ(typeid(*back.controls[2]), typeid(HBXDirVlvControl));
}

TEST(DirControl, UnknownKindsAreCarriedOnAsPlainOnes) {
    for (const char* marks :
         {" hbx:tns='directory' hbx:type='paged_control'", " hbx:tns='elsewhere' hbx:type='sort_control'",
          " hbx:tnsid='9000' hbx:typeid='9001'", ""}) {
        const Cursor it = newCursor();
        const std::string text = std::string("<control") + marks +
                                 "><oid>1.2.840.113556.1.4.319</oid><critical>0</critical>"
                                 "<value> MAUCAWQEAA== </value><page_size>100</page_size></control>";
        ASSERT_EQ(it->fromTextToChild(text.c_str()), 0);
        HBXDirControlList list, back;
        ASSERT_EQ(it->getObject(list, 0), 0) << marks;
        ASSERT_EQ(typeid(*list.controls.at(0)), typeid(HBXDirControl)) << marks;
        EXPECT_EQ(list.controls[0]->oid, "1.2.840.113556.1.4.319");
        EXPECT_EQ(list.controls[0]->value, " MAUCAWQEAA== ");
        EXPECT_FALSE(list.controls[0]->critical);
        const Cursor on = newCursor();
        ASSERT_EQ(on->putObject(list, 0), 0);
        ASSERT_EQ(on->getObject(back, 0), 0);
        EXPECT_EQ(back, list) << marks;
    }
}

TEST(DirEntry, AttributesLieDirectlyBelowIt) {
    HBXDirMod mod("mail");
    mod.operation = 2;
    mod.get() = {"a@example", "b@example"};
    HBXDirEntry entry, back;
    entry.dn = "cn=a,dc=corp";
    entry.attributes = {mod, HBXNamedOpStrListProperty("cn")};
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(entry, 0), 0);
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
