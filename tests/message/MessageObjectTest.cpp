#include <gmock/gmock.h>

#include "support/MessageTestUtil.h"

/// The message as a whole: envelope, copies, what its operations take and give.
namespace HBX::test {
namespace {

Message sampleMessage() {
    Message message = newMessage();
    const Cursor it = rootOf(message);
    it->setNamespace(283);
    it->setComplexType(283, 295);
    it->putAttr("on the root", 1026);
    it->newChild(1021);
    it->setNamespace("own");
    it->setComplexType("own", "type");
    it->putAttr("inside", 1010);
    it->putValue("v", 0);
    it->putValue("w", 1026);
    return message;
}

struct Fields {
    int results[14];
    std::string texts[5];
    std::vector<std::string> targets;
    int numbers[7];
    std::int64_t time;
};

Fields fieldsOf(const HBXMessage& m) {
    Fields f{};
    HBXSessionID session;
    const int results[] = {
        m.getOrigin(f.texts[0]),    m.getTarget(f.targets),          m.getID(f.texts[1]),
        m.getLog(f.numbers[0]),     m.getPriority(f.numbers[1]),     m.getProgress(f.numbers[2]),
        m.getSession(f.texts[2]),   m.getSessionID(session),         m.getTime(f.time),
        m.getTimeout(f.numbers[3]), m.getTimeoutLimit(f.numbers[4]), m.getType(f.numbers[5]),
        m.getUid(f.texts[4]),       m.getVersion(f.numbers[6])};
    std::copy(std::begin(results), std::end(results), f.results);
    f.texts[3] = static_cast<const std::string&>(session);
    return f;
}

void fillEnvelope(HBXMessage& m) {
    EXPECT_EQ(m.setOrigin(std::string("o\0\xFF", 3)), 0);
    EXPECT_EQ(m.setTarget("gone"), 0);
    EXPECT_EQ(m.setTarget(std::vector<std::string>{"a", ""}), 0);
    EXPECT_EQ(m.addTarget("\r\n <&\""), 0);
    EXPECT_EQ(m.setID("first", false), 0);
    EXPECT_EQ(m.setID("second", false), 0);
    EXPECT_EQ(m.setLog(-1), 0);
    EXPECT_EQ(m.setPriority(0), 0);
    EXPECT_EQ(m.setProgress(2147483647), 0);
    EXPECT_EQ(m.setSession(""), 0);
    EXPECT_EQ(m.setSessionID(HBXSessionID("sid")), 0);
    EXPECT_EQ(m.setTime(-9223372036854775807LL - 1), 0);
    EXPECT_EQ(m.setTimeout(-2147483647 - 1), 0);
    EXPECT_EQ(m.setTimeoutLimit(3), 0);
    EXPECT_EQ(m.setType(4), 0);
    EXPECT_EQ(m.setUid("u"), 0);
    EXPECT_EQ(m.setVersion(5), 0);
}

TEST(MessageObject, EnvelopeTravelsInBothForms) {
    const Message message = sampleMessage();
    EXPECT_THAT(fieldsOf(*message).results, ::testing::Each(1));
    fillEnvelope(*message);
    const Message fromBinary = parseMessage(bytesOf(message));
    const Message fromText = newMessage();
    EXPECT_EQ(fromText->fromText(takeText(message->toText(nullptr, "  ")).c_str(), nullptr), 0);
    const Message copy = adoptMessage(message->copy(true));
    for (const Message& m : {message, fromBinary, fromText, copy}) {
        ASSERT_NE(m, nullptr);
        const Fields f = fieldsOf(*m);
        EXPECT_THAT(f.results, ::testing::Each(0));
        EXPECT_THAT(f.texts, ::testing::ElementsAre(std::string("o\0\xFF", 3), "first", "", "sid", "u"));
        EXPECT_THAT(f.targets, ::testing::ElementsAre("a", "", "\r\n <&\""));
        EXPECT_THAT(f.numbers, ::testing::ElementsAre(-1, 0, 2147483647, -2147483647 - 1, 3, 4, 5));
        EXPECT_EQ(f.time, -9223372036854775807LL - 1);
        EXPECT_EQ(bytesOf(m), bytesOf(message));
    }
    EXPECT_EQ(message->setID("third", true), 0);
    std::string id;
    EXPECT_EQ(message->getID(id), 0);
    EXPECT_EQ(id, "third");
    EXPECT_EQ(message->create(9), 0);
    const Fields f = fieldsOf(*message);
    EXPECT_EQ(std::count(std::begin(f.results), std::end(f.results), 1), 13);
    EXPECT_EQ(f.numbers[5], 9);
    EXPECT_EQ(rootOf(message)->firstChild(), -1);
}

TEST(MessageObject, CreateMakesAnEmptyTreeOrOneChild) {
    const Message message = sampleMessage();
    fillEnvelope(*message);
    EXPECT_EQ(message->create("own name"), 0);
    const Cursor it = rootOf(message);
    EXPECT_EQ(it->firstChild(), 0);
    EXPECT_EQ(it->curName(), "own name");
    EXPECT_EQ(it->nextSibling(), -1);
    EXPECT_THAT(fieldsOf(*message).results, ::testing::Each(1));
    for (const char* none : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_EQ(message->create(none), 0);
        EXPECT_EQ(bytesOf(message), bytesOf(newMessage()));
    }
    EXPECT_EQ(message->messageType(), 0);
}

TEST(MessageObject, CopiesShareOrStandAlone) {
    const Message message = sampleMessage();
    const Message same = adoptMessage(message->copy(false));
    EXPECT_EQ(same, message);
    const Message copy = adoptMessage(message->copy(true));
    EXPECT_EQ(bytesOf(copy), bytesOf(message));
    rootOf(copy)->putValue(1, 1018);
    EXPECT_NE(bytesOf(copy), bytesOf(message));
    EXPECT_EQ(HBXMessage::getFactory(), HBXMessage::getFactory());
    EXPECT_EQ(HBXMessage::getFactory()->createNew("junk", 4), nullptr);
}

TEST(MessageObject, CopyMessageTakesContentWithoutMarks) {
    const Message message = sampleMessage();
    fillEnvelope(*message);
    const Cursor it = rootOf(message);
    it->seek(1021);
    const Message copy = adoptMessage(it->copyMessage());
    const Cursor root = rootOf(copy);
    std::string value;
    EXPECT_EQ(root->getValue(value, 0), 0);
    EXPECT_EQ(value, "v");
    EXPECT_EQ(root->getAttr(value, 1010), 0);
    EXPECT_EQ(root->getValue(value, 1026), 0);
    EXPECT_EQ(root->curType() + std::to_string(root->curNamespaceID()), "0");
    EXPECT_THAT(fieldsOf(*copy).results, ::testing::Each(1));
}

TEST(MessageObject, SerializesIntoTheCallersBuffer) {
    const Message message = sampleMessage();
    const std::string expected = bytesOf(message);
    std::size_t length = 0;
    EXPECT_EQ(message->serialize(nullptr, &length, nullptr), -2);
    EXPECT_EQ(length, expected.size());
    std::string buffer(expected.size() + 2, '#');
    length = expected.size() - 1;
    EXPECT_EQ(message->serialize(buffer.data(), &length, nullptr), -2);
    EXPECT_EQ(length, expected.size());
    EXPECT_EQ(buffer, std::string(buffer.size(), '#'));
    EXPECT_EQ(message->serialize(nullptr, &length, nullptr), -2);
    EXPECT_EQ(message->serialize(buffer.data(), &length, nullptr), 0);
    EXPECT_EQ(buffer, expected + "##");
    length = buffer.size();
    EXPECT_EQ(message->serialize(buffer.data(), &length, nullptr), 0);
    EXPECT_EQ(length, expected.size());
    char* data = nullptr;
    int size = 0;
    for (const int flags : {0, -1, 40500}) {
        EXPECT_EQ(message->serialize(&data, &size, nullptr, flags), 0);
        EXPECT_EQ(takeBytes(data, size), expected);
    }
    EXPECT_EQ(message->serialize(nullptr, &size, nullptr, 0), -1);
    EXPECT_EQ(message->serialize(&data, nullptr, nullptr, 0), -1);
}

/// What a message made of the bytes holds, in text form without its envelope.
std::string contentOf(const std::string& bytes) {
    const Message message = parseMessage(bytes);
    return message == nullptr ? "no message" : takeText(rootOf(message)->toText());
}

TEST(MessageObject, SerializesWholePartsAndElements) {
    const Message message = sampleMessage();
    message->setOrigin("agent");
    const Cursor it = rootOf(message);
    const auto from = [&](const HBXMessageIterator* cursor) {
        char* data = nullptr;
        int length = 0;
        EXPECT_EQ(message->serialize(&data, &length, cursor, 0), 0);
        return takeBytes(data, length);
    };
    const std::string whole = bytesOf(message);
    EXPECT_EQ(from(it.get()), whole);
    const std::string withoutEnvelope = bytesFromChild(*it);
    message->create(0);
    EXPECT_EQ(message->init(withoutEnvelope.data(), static_cast<int>(withoutEnvelope.size())), 0);
    EXPECT_THAT(fieldsOf(*message).results, ::testing::Each(1));
    EXPECT_EQ(it->seekRoot(), 0);
    EXPECT_EQ(it->curType(), "scheduler:daily_trigger") << "all of the root";
    message->setOrigin("agent");
    EXPECT_EQ(bytesOf(message), whole);

    it->seek(1021);
    const std::string part = from(it.get());
    EXPECT_EQ(part, bytesOf(adoptMessage(it->copyMessage())));
    const std::string element = bytesFromChild(*it);
    EXPECT_EQ(element[5], 1);
    const Message asMessage = parseMessage(element);
    ASSERT_NE(asMessage, nullptr) << "an element is a message whose root has one child";
    EXPECT_EQ(bytesOf(asMessage).size(), bytesOf(newMessage()).size() + element.size() - 12);
    const Cursor child = rootOf(asMessage);
    EXPECT_EQ(child->firstChild(), 0);
    EXPECT_EQ(child->curType(), "own:type");
    EXPECT_EQ(bytesFromChild(*child), element);

    const Message target = newMessage();
    const Cursor into = rootOf(target);
    into->newChild(5);
    for (const std::string& bytes : {whole, part, element}) {
        EXPECT_EQ(deserializeToChild(*into, bytes), 0);
        EXPECT_EQ(target->deserialize(bytes.data(), static_cast<int>(bytes.size()), into.get()), 0);
    }
    EXPECT_EQ(into->curID(), 5);
    int count = 0;
    for (int more = into->firstChild(); more == 0; more = into->nextSibling()) {
        ++count;
    }
    EXPECT_EQ(count, 6) << "two elements, two contents of one child, two elements";
    EXPECT_THAT(fieldsOf(*target).results, ::testing::Each(1));
    EXPECT_EQ(target->deserialize(whole.data(), static_cast<int>(whole.size()), nullptr), 0);
    EXPECT_EQ(bytesOf(target), whole);
    EXPECT_EQ(contentOf(whole), takeText(message->toText(nullptr, "")));
}

TEST(MessageObject, TakesTreesFromCursors) {
    const Message message = sampleMessage();
    const Cursor it = rootOf(message);
    it->seek(1021);
    const Message target = newMessage();
    target->setOrigin("gone");
    EXPECT_EQ(target->deserialize(it.get(), nullptr), 0);
    EXPECT_EQ(bytesOf(target), bytesOf(adoptMessage(it->copyMessage())));
    const Cursor into = rootOf(target);
    EXPECT_EQ(target->deserialize(it.get(), into.get()), 0);
    EXPECT_EQ(into->seek(1021), 0);
    EXPECT_EQ(into->curType(), "own:type");
    EXPECT_EQ(message->deserialize(it.get(), nullptr), 0) << "its own part";
    EXPECT_EQ(rootOf(message)->seek(1026), 0);
    EXPECT_EQ(message->deserialize(static_cast<const HBXMessageIterator*>(nullptr), nullptr), -1);
}

TEST(MessageObject, TextEntriesReplaceOrAppend) {
    const Message message = sampleMessage();
    message->setOrigin("agent");
    const std::string whole = takeText(message->toText(nullptr, ""));
    const Cursor it = rootOf(message);
    it->seek(1021);
    const std::string element = takeText(it->toTextFromChild());
    for (const std::string& text : {whole, element}) {
        const Message target = newMessage();
        target->setOrigin("old");
        const Cursor into = rootOf(target);
        into->newChild(5);
        EXPECT_EQ(target->fromText(text.c_str(), into.get()), 0);
        EXPECT_EQ(into->fromTextToChild(text.c_str()), 0);
        EXPECT_EQ(into->fromTextToChild("<a"), -1);
        EXPECT_EQ(into->fromTextToChild(nullptr), -1);
        int count = 0;
        for (int more = into->firstChild(); more == 0; more = into->nextSibling()) {
            EXPECT_EQ(into->curType(), "own:type");
            ++count;
        }
        EXPECT_EQ(count, 2);
        EXPECT_EQ(target->fromText(text.c_str(), nullptr), 0);
        std::string origin = "unset";
        target->getOrigin(origin);
        EXPECT_EQ(origin, text == whole ? "agent" : "unset");
        EXPECT_EQ(rootOf(target)->seek(1021), 0);
    }
}

} // namespace
} // namespace HBX::test
