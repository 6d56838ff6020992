#include <gmock/gmock.h>

#include <HBXCommon/HBXErrorMessage.h>

#include "support/MessageBytes.h"
#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

using ::testing::HasSubstr;

const std::string kNone(1, '\0');

/// The bytes are refused by every way in, nothing changes, and the reason names a place.
void expectRefused(const std::string& bytes, std::string_view what) {
    const Message target = newMessage();
    rootOf(target)->putValue("kept", 1026);
    const std::string before = bytesOf(target);
    const Cursor cursor = rootOf(target);
    clearErrorMessage();
    EXPECT_EQ(target->init(bytes.data(), static_cast<int>(bytes.size())), -1) << what;
    EXPECT_THAT(getErrorMessage(), HasSubstr("offset ")) << what;
    const std::string reason = getErrorMessage();
    EXPECT_FALSE(checks(bytes)) << what;
    EXPECT_EQ(getErrorMessage(), reason) << what;
    EXPECT_EQ(deserializeToChild(*cursor, bytes), -1) << what;
    EXPECT_EQ(bytesOf(target), before) << what;
    EXPECT_EQ(cursor->seek(1026), 0) << what;
}

TEST(BinaryForm, RefusesWhatIsNotWellFormed) {
    const std::pair<std::string, const char*> rows[] = {
        {"", "no bytes"},
        {std::string("HBXN") + messageOf(emptyNode(1)).substr(4), "another magic"},
        {messageOf(emptyNode(1)) + "x", "bytes behind the body"},
        {messageBytes(namedHead(0, kEmpty), nameList({"a"})), "a root with a name"},
        {messageOf(namedHead(0, kEmpty)), "a name index without names"},
        {messageBytes(parentNode(0, namedHead(0, kEmpty)), nameList({"a", "b"})), "a name that is not used"},
        {messageOf(flaggedNode(1, 64 | 4, sized("x"))), "an unknown flag"},
        {messageOf(flaggedNode(1, 8 | 1, varint(566))), "XML without a value, beside a namespace"},
        {messageOf(flaggedNode(1, 0, "")), "flags where the empty form would do"},
        {messageOf(flaggedNode(1, 1, varint(0x80000000))), "a namespace number too large"},
        {messageOf(flaggedNode(1, 16, varint(2) + varint(4) + sized("") + varint(2) + sized(""))),
         "out of order"},
        {messageOf(flaggedNode(1, 16, varint(2) + varint(4) + sized("") + varint(4) + sized(""))),
         "one attribute twice"},
        {messageBytes(
             parentNode(0,
                        flaggedNode(1, 16, varint(2) + varint(1) + sized("") + varint(2 * 1026) + sized(""))),
             nameList({"name"})),
         "one attribute by number and by name"},
        {messageOf(head(1, kChildren) + varint(3) + emptyNode(1)), "a block beyond its parent"},
        {messageOf(head(1, kText) + "\x81" + kNone + "x"), "a padded length"},
        {messageOf(head(1, kText) + "\xFF\xFF\xFF\xFF\x0F"), "a length of 4 GiB"},
        {messageBytes(emptyNode(0), kNone, varint(1) + '\x04' + sized("+1")),
         "an envelope number with a plus"},
    };
    for (const auto& [bytes, what] : rows) {
        expectRefused(bytes, what);
    }
    EXPECT_EQ(newMessage()->init(nullptr, 5), -1);
    EXPECT_EQ(newMessage()->init("HBXM", -1), -1);
}

TEST(BinaryForm, FoldsNamesThatTheTableKnows) {
    const Message message =
        parseMessage(messageBytes(parentNode(0, namedHead(0, kText) + sized("v")), nameList({"name"})));
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(bytesOf(message), messageOf(textNode(1026, "v")));
}

TEST(BinaryForm, SaysWhereTheInputIsWrong) {
    const std::string inner = namedHead(0, kChildren) + sized(textNode(7, "ok") + emptyNode(0));
    const std::string bytes = messageBytes(parentNode(0, parentNode(1026, inner)), nameList({"od\nd"}));
    expectRefused(bytes, "nested");
    EXPECT_THAT(getErrorMessage(),
                ::testing::StartsWith("offset " + std::to_string(bytes.size()) + ", /name/od?d: "));
}

/// A message with every piece of the form, nested.
std::string richMessage() {
    const Cursor it = newCursor();
    it->getMessage()->setOrigin("agent");
    it->getMessage()->addTarget("two");
    it->getMessage()->setTimeout(-5);
    it->saveNamespace("own:space");
    it->newChild(1021);
    it->setComplexType(283, 295);
    it->putValue("", 1026);
    it->putAttr("by number", 1010);
    it->putAttr(5, it->idOfName("never") + 4711);
    it->saveNamespace(0);
    it->newChild("eigener name");
    it->setComplexType("spaces", "own_type");
    it->putValueXML("<a>&amp;</a>", 0);
    it->putValue(std::string("\0\x80 \xFF", 4), 77);
    it->seekUp();
    it->putValue(std::string(300, 'v'), 1018);
    return bytesOf(*it);
}

TEST(BinaryForm, RefusesEveryCutAndStaysCanonicalUnderEveryFlippedBit) {
    const std::string good = richMessage();
    for (std::size_t length = 0; length < good.size(); ++length) {
        expectRefused(good.substr(0, length), "cut at " + std::to_string(length));
    }
    for (std::size_t length = 0; length + 12 < good.size(); ++length) {
        expectRefused(withHeader(good.substr(12, length), 0), "a shorter body of " + std::to_string(length));
    }
    int accepted = 0;
    for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
        std::string bytes = good;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
        const Message message = parseMessage(bytes);
        EXPECT_EQ(message != nullptr, checks(bytes)) << "bit " << bit;
        if (message == nullptr) {
            EXPECT_THAT(getErrorMessage(), HasSubstr("offset ")) << "bit " << bit;
        } else if (bytes[5] == 0) {
            EXPECT_EQ(bytesOf(message), bytes) << "bit " << bit;
            ++accepted;
        }
    }
    EXPECT_GT(accepted, 2400); // the bits of the texts, at least
}

TEST(BinaryForm, TakesNoMemoryForAbsurdSizes) {
    const std::string large(std::size_t{16} << 20, 'x');
    const std::string rows[] = {
        withHeader(large, 0),
        messageBytes(textNode(0, large).substr(0, 1000)),
        withHeader(varint(65536) + large, 0),
        messageBytes(large, kNone, varint(0xFFFFFFFF)),
        messageOf(flaggedNode(1, 16, varint(0xFFFFFFFF) + large)),
    };
    for (const std::string& bytes : rows) {
        const std::size_t before = allocatedBytes();
        const Message target = newMessage();
        EXPECT_EQ(target->init(bytes.data(), static_cast<int>(bytes.size())), -1);
        EXPECT_LT(allocatedBytes(), before + 100'000);
    }
}

} // namespace
} // namespace HBX::test
