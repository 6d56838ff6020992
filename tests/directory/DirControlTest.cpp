#include <gtest/gtest.h>

#include <HBXFunctionalityCore/directory/HBXDirControl.h>

#include "support/TextMessage.h"

namespace HBX::test {
namespace {

TEST(DirControl, UnknownKindsAreCarriedOnAsPlainOnes) {
    for (const char* marks :
         {" hbx:tns='directory' hbx:type='paged_control'", " hbx:tns='elsewhere' hbx:type='sort_control'",
          " hbx:tnsid='9000' hbx:typeid='9001'", ""}) {
        const Cursor it = rootOf(textMessage("<control" + std::string(marks) +
                                             "><oid>1.2.3</oid><critical>0</critical><value> MAUCAWQEAA== "
                                             "</value><page_size>100</page_size></control>"));
        HBXDirControlList list, back;
        ASSERT_EQ(it->getObject(list, 0), 0) << marks;
        ASSERT_EQ(typeid(*list.controls.at(0)), typeid(HBXDirControl)) << marks;
        EXPECT_TRUE(list.controls[0]->value == " MAUCAWQEAA== " && !list.controls[0]->critical);
        const Cursor on = newCursor();
        ASSERT_EQ(on->putObject(list, 0), 0);
        ASSERT_EQ(on->getObject(back, 0), 0);
        EXPECT_EQ(back, list) << marks;
    }
}

} // namespace
} // namespace HBX::test
