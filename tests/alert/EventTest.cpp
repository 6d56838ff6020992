#include <gtest/gtest.h>

#include <HBXFunctionalityCore/alert/HBXAlertData.h>
#include <HBXFunctionalityCore/alert/HBXAnyEventData.h>
#include <HBXFunctionalityCore/alert/HBXEvent.h>
#include <HBXMessage/HBXRecordSample.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

HBXEvent sampleEvent() {
    HBXEvent event;
    fillExample(&event, HBXEvent::table);
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

TEST(Event, WithoutATimeHasItsMessages) {
    const Message message = newMessage();
    const Cursor it = rootOf(message);
    it->putObject(sampleEvent(), 0);
    it->deleteChild(1004);
    message->setTime(5);
    HBXEvent event("source"), inPlace;
    EXPECT_EQ(it->getObject(event, 0), 0);
    EXPECT_EQ(decodeRecord(bytesOf(message), inPlace), 0);
    EXPECT_TRUE(event.time == 5 && inPlace.time == 5);
}

/// An event with one more piece of data, of this type.
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
    for (const char* content :
         {"<tea_kind>green</tea_kind><cups><cup>1</cup><cup/></cups>", "no element at all", ""}) {
        HBXEvent event, back;
        ASSERT_EQ(rootOf(eventWith("tea_data", content))->getObject(event, 0), 0);
        EXPECT_NE(dynamic_cast<const HBXAnyEventData*>(event.data.get().back().get()), nullptr);
        const Message again = newMessage();
        ASSERT_EQ(rootOf(again)->putObject(event, 0), 0);
        ASSERT_EQ(rootOf(again)->getObject(back, 0), 0);
        EXPECT_EQ(back, event) << content;
        const std::string text = takeText(again->toText(nullptr, ""));
        EXPECT_NE(text.find(content), std::string::npos) << text;
    }
    HBXEvent event;
    EXPECT_EQ(rootOf(eventWith("resource_alert_data", ""))->getObject(event, 0), 0);
    EXPECT_EQ(event.data.get().size(), sampleEvent().data.get().size());
}

TEST(Event, LevelsTravelAsNumbersKnownOrNot) {
    const Cursor it = newCursor();
    auto back = HBXAlertData::RED;
    EXPECT_NE(HBXAlertTypeReader()(*it, back), 0);
    EXPECT_EQ(HBXAlertTypeWriter()(*it, static_cast<HBXAlertData::AlertType>(77)), 0);
    EXPECT_EQ(HBXAlertTypeReader()(*it, back), 0);
    EXPECT_EQ(back, 77);
}

} // namespace
} // namespace HBX::test
