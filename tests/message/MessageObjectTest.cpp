#include <climits>
#include <sstream>

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

/// All fields in one line, "-" for those that are unset.
std::string fieldsOf(const HBXMessage& m) {
    std::ostringstream all;
    const auto add = [&](int result, const auto& value) {
        (result == 0 ? all << value : all << (result == 1 ? '-' : '!')) << '|';
    };
    std::string text;
    HBXSessionID session;
    std::int64_t time = 0;
    int n = 0;
    add(m.getOrigin(text), text), add(m.getID(text), text), add(m.getSession(text), text);
    add(m.getUid(text), text), add(m.getSessionID(session), static_cast<const std::string&>(session));
    add(m.getTime(time), time), add(m.getLog(n), n), add(m.getPriority(n), n), add(m.getProgress(n), n);
    add(m.getTimeout(n), n), add(m.getTimeoutLimit(n), n), add(m.getType(n), n), add(m.getVersion(n), n);
    std::vector<std::string> targets;
    const int result = m.getTarget(targets);
    add(result, testing::PrintToString(targets));
    return all.str();
}

TEST(MessageObject, EnvelopeTravelsInBothForms) {
    const Message message = sampleMessage();
    EXPECT_EQ(fieldsOf(*message), "-|-|-|-|-|-|-|-|-|-|-|-|-|-|");
    HBXMessage& m = *message;
    m.setOrigin(std::string("o\0\xFF", 3)), m.setID("first", false), m.setID("second", false);
    m.setTarget("gone"), m.setTarget(std::vector<std::string>{"a", ""}), m.addTarget("\r\n <&\"");
    m.setLog(-1), m.setPriority(0), m.setProgress(INT_MAX), m.setTime(INT64_MIN), m.setTimeout(INT_MIN);
    m.setSession(""), m.setSessionID(HBXSessionID("sid")), m.setTimeoutLimit(3), m.setType(4);
    m.setUid("u"), m.setVersion(5);
    const Message fromText = newMessage();
    EXPECT_EQ(fromText->fromText(takeText(message->toText(nullptr, "  ")).c_str(), nullptr), 0);
    const Message copy = adoptMessage(message->copy(true));
    for (const Message& same : {message, parseMessage(bytesOf(message)), fromText, copy}) {
        ASSERT_NE(same, nullptr);
        EXPECT_EQ(fieldsOf(*same), std::string("o\0\xFF", 3) +
                                       "|first||u|sid|-9223372036854775808|-1|0|2147483647|-2147483648|3|4|5|"
                                       R"({ "a", "", "\r\n <&\"" }|)");
        EXPECT_EQ(bytesOf(same), bytesOf(message));
    }
    EXPECT_EQ(message->setID("third", true), 0);
    EXPECT_THAT(fieldsOf(*message), ::testing::HasSubstr("|third|"));
    EXPECT_NE(bytesOf(copy), bytesOf(message));
    EXPECT_EQ(adoptMessage(message->copy(false)), message);
    EXPECT_EQ(message->create(9), 0);
    EXPECT_EQ(fieldsOf(*message), "-|-|-|-|-|-|-|-|-|-|-|9|-|-|");
    EXPECT_EQ(rootOf(message)->firstChild(), -1);
}

TEST(MessageObject, SerializesIntoTheCallersBuffer) {
    const Message message = sampleMessage();
    const std::string expected = bytesOf(message);
    std::string buffer(expected.size() + 2, '#');
    std::size_t length = expected.size() - 1;
    EXPECT_EQ(message->serialize(buffer.data(), &length, nullptr), -2);
    EXPECT_EQ(buffer, std::string(buffer.size(), '#'));
    EXPECT_EQ(length, expected.size());
    EXPECT_EQ(message->serialize(buffer.data(), &length, nullptr), 0);
    EXPECT_EQ(buffer, expected + "##");
}

TEST(MessageObject, SerializesWholePartsAndElements) {
    const Message message = sampleMessage();
    message->setOrigin("agent");
    const Cursor it = rootOf(message);
    const std::string whole = bytesOf(message);
    it->seek(1021);
    char* data = nullptr;
    int length = 0;
    EXPECT_EQ(message->serialize(&data, &length, it.get(), 0), 0);
    const std::string part = takeBytes(data, length);
    EXPECT_EQ(part, bytesOf(adoptMessage(it->copyMessage())));
    const std::string element = bytesFromChild(*it);
    EXPECT_EQ(element[5], 1);
    EXPECT_NE(parseMessage(element), nullptr) << "a message whose root has one child";

    const Message target = newMessage();
    const Cursor into = rootOf(target);
    into->newChild(5);
    for (const std::string& bytes : {whole, part, element}) {
        EXPECT_EQ(deserializeToChild(*into, bytes), 0);
        EXPECT_EQ(target->deserialize(bytes.data(), static_cast<int>(bytes.size()), into.get()), 0);
    }
    EXPECT_EQ(into->curID(), 5);
    EXPECT_EQ(into->firstChild(), 0);
    for (int more = 5; more >= 0; --more) { // two elements, two contents of one child, two elements
        EXPECT_EQ(into->nextSibling(), more > 0 ? 0 : -1);
    }
    const std::string text = takeText(it->toTextFromChild());
    EXPECT_EQ(target->fromText(text.c_str(), into.get()), 0);
    EXPECT_EQ(into->fromTextToChild(nullptr), -1);
    EXPECT_EQ(into->firstChild(1021), 0);
    EXPECT_EQ(into->curType(), "own:type");
    EXPECT_THAT(fieldsOf(*target), ::testing::Not(::testing::HasSubstr("agent")));
    EXPECT_EQ(target->deserialize(it.get(), nullptr), 0) << "a part of another tree";
    EXPECT_EQ(bytesOf(target), part);
    EXPECT_EQ(message->deserialize(it.get(), nullptr), 0) << "its own part";
    EXPECT_EQ(bytesOf(message), part);
    EXPECT_EQ(message->deserialize(static_cast<const HBXMessageIterator*>(nullptr), nullptr), -1);
}

} // namespace
} // namespace HBX::test
