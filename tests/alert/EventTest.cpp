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

TEST(Event, NeedsAllButTimeSubjectAndData) {
    for (const int id : {1866, 1803, 1264, 1259, 1010, 1134, 1004, 1911, 1307}) {
        const Cursor it = newCursor();
        it->putObject(sampleEvent(), 0);
        it->deleteChild(id);
        HBXEvent event;
        const bool mayBeAbsent = id == 1004 || id == 1911 || id == 1307;
        EXPECT_EQ(it->getObject(event, 0), mayBeAbsent ? 0 : -1) << id;
    }
}

TEST(Event, TakesAMissingTimeFromItsMessage) {
    const Message message = newMessage();
    const Cursor it = rootOf(message);
    it->putObject(sampleEvent(), 0);
    HBXEvent event;
    message->setTime(5);
    EXPECT_EQ(it->getObject(event, 0), 0);
    EXPECT_EQ(event.time, 1711617300);
    it->deleteChild(1004);
    EXPECT_EQ(it->getObject(event, 0), 0);
    EXPECT_EQ(event.time, 5);
    HBXEvent inPlace;
    EXPECT_EQ(decodeRecord(bytesOf(message), inPlace), 0);
    EXPECT_EQ(inPlace.time, 5);
}

/// An event whose second piece of data is of a kind that nobody here knows, as text.
std::string eventText(const std::string& unknown) {
    const Cursor it = newCursor();
    it->putObject(sampleEvent(), 0);
    it->seek(1307);
    it->fromTextToChild(unknown.c_str());
    return takeText(it->toText());
}

TEST(Event, CarriesUnknownDataOnAsTheyAre) {
    for (const char* content :
         {"<tea_kind>green</tea_kind><cups><cup>1</cup><cup/></cups>", "no element at all", ""}) {
        const Message message = newMessage();
        const std::string element =
            "<event_data xmlns:hbx='urn:hbx:message' hbx:tns='alert' hbx:type='tea_data'>";
        message->fromText(eventText(element + content + "</event_data>").c_str(), nullptr);
        HBXEvent event;
        ASSERT_EQ(rootOf(message)->getObject(event, 0), 0);
        ASSERT_EQ(event.data.get().size(), 2U);
        EXPECT_NE(dynamic_cast<const HBXAnyEventData*>(event.data.get()[1].get()), nullptr);

        const Message again = newMessage();
        ASSERT_EQ(rootOf(again)->putObject(event, 0), 0);
        HBXEvent back;
        ASSERT_EQ(rootOf(again)->getObject(back, 0), 0);
        EXPECT_EQ(back, event) << content;
        EXPECT_NE(takeText(again->toText(nullptr, "")).find(content), std::string::npos)
            << takeText(again->toText(nullptr, ""));
    }
}

TEST(Event, TakesDataAsFarAsTheyRead) {
    const std::string bad =
        "<event_data xmlns:hbx='urn:hbx:message' hbx:tns='alert' hbx:type='resource_alert_data'/>";
    const Message message = newMessage();
    message->fromText(eventText(bad).c_str(), nullptr);
    HBXEvent event;
    EXPECT_EQ(rootOf(message)->getObject(event, 0), 0);
    EXPECT_EQ(event.data.get().size(), 1U);
}

} // namespace
} // namespace HBX::test
