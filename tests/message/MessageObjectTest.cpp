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
    const int results[] = {m.setOrigin(std::string("o\0\xFF", 3)),
                           m.setTarget("gone"),
                           m.setTarget(std::vector<std::string>{"a", ""}),
                           m.addTarget("\r\n <&\""),
                           m.setID("first", false),
                           m.setID("second", false),
                           m.setLog(-1),
                           m.setPriority(0),
                           m.setProgress(2147483647),
                           m.setSession(""),
                           m.setSessionID(HBXSessionID("sid")),
                           m.setTime(-9223372036854775807LL - 1),
                           m.setTimeout(-2147483647 - 1),
                           m.setTimeoutLimit(3),
                           m.setType(4),
                           m.setUid("u"),
                           m.setVersion(5)};
    EXPECT_THAT(results, ::testing::Each(0));
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
    rootOf(copy)->putValue(1, 1018);
    EXPECT_NE(bytesOf(copy), bytesOf(message));
    EXPECT_EQ(adoptMessage(message->copy(false)), message);
    EXPECT_EQ(message->create(9), 0);
    const Fields f = fieldsOf(*message);
    EXPECT_EQ(std::count(std::begin(f.results), std::end(f.results), 1), 13);
    EXPECT_EQ(f.numbers[5], 9);
    EXPECT_EQ(rootOf(message)->firstChild(), -1);
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
    EXPECT_EQ(message->serialize(buffer.data(), &length, nullptr), 0);
    EXPECT_EQ(buffer, expected + "##");
    char* data = nullptr;
    int size = 0;
    EXPECT_EQ(message->serialize(nullptr, &size, nullptr, 0), -1);
    EXPECT_EQ(message->serialize(&data, nullptr, nullptr, 0), -1);
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
    it->seek(1021);
    const std::string part = from(it.get());
    EXPECT_EQ(part, bytesOf(adoptMessage(it->copyMessage())));
    const std::string element = bytesFromChild(*it);
    EXPECT_EQ(element[5], 1);
    const Message asMessage = parseMessage(element);
    ASSERT_NE(asMessage, nullptr) << "an element is a message whose root has one child";
    const Cursor child = rootOf(asMessage);
    EXPECT_EQ(child->firstChild(), 0);
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
    const std::string text = takeText(it->toTextFromChild());
    EXPECT_EQ(target->fromText(text.c_str(), into.get()), 0);
    EXPECT_EQ(into->fromTextToChild("<a"), -1);
    EXPECT_EQ(into->fromTextToChild(nullptr), -1);
    EXPECT_EQ(into->firstChild(1021), 0);
    EXPECT_EQ(into->curType(), "own:type");
    EXPECT_THAT(fieldsOf(*target).results, ::testing::Each(1));
    EXPECT_EQ(target->deserialize(whole.data(), static_cast<int>(whole.size()), nullptr), 0);
    EXPECT_EQ(bytesOf(target), whole);
    EXPECT_EQ(target->deserialize(it.get(), nullptr), 0) << "a part of another tree";
    EXPECT_EQ(bytesOf(target), part);
    EXPECT_EQ(message->deserialize(it.get(), nullptr), 0) << "its own part";
    EXPECT_EQ(bytesOf(message), part);
    EXPECT_EQ(message->deserialize(static_cast<const HBXMessageIterator*>(nullptr), nullptr), -1);
}

} // namespace
} // namespace HBX::test
