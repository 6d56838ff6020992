#include <gtest/gtest.h>

#include <HBXFunctionalityCore/alert/HBXAlertData.h>
#include <HBXFunctionalityCore/alert/HBXAnyEventData.h>
#include <HBXFunctionalityCore/alert/HBXEvent.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

HBXEvent sampleEvent() {
    HBXEvent event("monitor");
    event.eid = HBXEID(HBXGUID(1, 2));
    event.time = 1711617300;
    event.category = "resources";
    event.subject = "memory";
    event.count = 2;
    event.id = HBXGUID(3, 4);
    const auto alert = boost::make_shared<HBXResourceAlertData>();
    alert->resourceId = "memory";
    event.data.set({alert});
    event.info = HBXInfo("", "Something %x%", true);
    return event;
}

TEST(Event, WritesInItsOrderAndStopsAtTheFirstFailure) {
    HBXEvent event = sampleEvent();
    Cursor it = newCursor();
    EXPECT_EQ(it->putObject(event, 0), 0);
    for (const int id : {1866, 1004, 1803, 1264, 1911, 1259, 1010, 1307, 1134}) {
        EXPECT_EQ(id == 1866 ? it->firstChild() : it->nextSibling(), 0);
        EXPECT_EQ(it->curID(), id);
    }
    HBXEvent back;
    event.data.reset();
    EXPECT_EQ(newCursor()->putObject(event, 0), 0);
    event.data.set({});
    it = newCursor();
    EXPECT_EQ(it->putObject(event, 0), 0);
    EXPECT_EQ(it->getObject(back, 0), 0);
    EXPECT_TRUE(back.data.isSet()) << "an empty list is there";

    event.data.set({nullptr});
    it = newCursor();
    EXPECT_EQ(it->putObject(event, 0), -1);
    EXPECT_EQ(it->seekPresence(1134), -1);
}

TEST(Event, NeedsAllButSubjectDataAndItsTimeWhichIsThenItsMessages) {
    for (const int id : {1866, 1803, 1264, 1259, 1010, 1134, 1004, 1911, 1307}) {
        const Message message = newMessage();
        const Cursor it = rootOf(message);
        it->putObject(sampleEvent(), 0);
        it->deleteChild(id);
        message->setTime(5);
        HBXEvent event, inPlace;
        const int result = id == 1004 || id == 1911 || id == 1307 ? 0 : -1;
        EXPECT_EQ(it->getObject(event, 0), result) << id;
        EXPECT_EQ(decodeRecord(bytesOf(message), inPlace), result) << id;
        const std::int64_t time = id == 1004 ? 5 : 1711617300;
        EXPECT_TRUE(result != 0 || (event.time == time && inPlace.time == time)) << id;
    }
}

/// An event with a second piece of data, of this type.
Message eventWith(const std::string& type, const std::string& content) {
    const Message message = newMessage();
    const Cursor it = rootOf(message);
    it->putObject(sampleEvent(), 0);
    it->seek(1307);
    const std::string head = "<event_data xmlns:hbx='urn:hbx:message' hbx:tns='alert' hbx:type='" + type;
    EXPECT_EQ(it->fromTextToChild((head + "'>" + content + "</event_data>").c_str()), 0);
    return message;
}

TEST(Event, CarriesUnknownDataOnAsTheyAreAndTakesKnownOnesAsFarAsTheyRead) {
    HBXEvent event, back;
    for (const char* content :
         {"<tea_kind>green</tea_kind><cups><cup>1</cup><cup/></cups>", "no element at all", ""}) {
        ASSERT_EQ(rootOf(eventWith("tea_data", content))->getObject(event, 0), 0);
        ASSERT_EQ(event.data.get().size(), 2U);
        EXPECT_NE(dynamic_cast<const HBXAnyEventData*>(event.data.get()[1].get()), nullptr);
        const Message again = newMessage();
        ASSERT_EQ(rootOf(again)->putObject(event, 0), 0);
        ASSERT_EQ(rootOf(again)->getObject(back, 0), 0);
        EXPECT_EQ(back, event) << content;
        const std::string text = takeText(again->toText(nullptr, ""));
        EXPECT_NE(text.find(content), std::string::npos) << text;
    }
    EXPECT_EQ(rootOf(eventWith("resource_alert_data", ""))->getObject(event, 0), 0);
    EXPECT_EQ(event.data.get().size(), 1U);
}

TEST(Event, LevelsTravelAsNumbersKnownOrNot) {
    const Cursor it = newCursor();
    auto back = HBXAlertData::RED;
    EXPECT_NE(HBXAlertTypeReader()(*it, back), 0);
    for (const int level : {0, 77, -1}) {
        EXPECT_EQ(HBXAlertTypeWriter()(*it, static_cast<HBXAlertData::AlertType>(level)), 0);
        EXPECT_EQ(HBXAlertTypeReader()(*it, back), 0);
        EXPECT_EQ(back, level);
    }
}

} // namespace
} // namespace HBX::test
