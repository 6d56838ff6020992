#include <gmock/gmock.h>

#include <HBXCommon/HBXErrorMessage.h>

#include "support/MessageBytes.h"
#include "support/TextMessage.h"

/// Trees larger than a message may be: anybody can build them, nobody writes or reads them.
namespace HBX::test {
namespace {

using It = HBXMessageIterator;

std::string nestedBytes(int levels) {
    std::string node = emptyNode(1010);
    for (; levels > 1; --levels) {
        node = parentNode(1010, node);
    }
    return node;
}

/// The same tree by a cursor, in bytes and in text.
struct Limit {
    const char* reason;
    int most;
    void (*add)(It&, int i); ///< one more of it
    std::string (*bytes)(int count);
    std::string (*text)(int count);

    int build(It& it, int count) const {
        for (int i = 0; i < count; ++i) {
            add(it, i);
        }
        return 0;
    }
};

constexpr Limit kLimits[] = {
    {"levels of elements", 256, [](It& it, int) { it.newChild(1010); },
     [](int count) { return messageOf(nestedBytes(count)); },
     [](int count) {
         return repeated(count, [](int) { return "<id>"; }) + repeated(count, [](int) { return "</id>"; });
     }},
    {"elements", 1'000'000, [](It& it, int) { it.newChild(1010), it.seekUp(); },
     [](int count) { return messageOf(repeated(count, [](int) { return emptyNode(1010); })); },
     [](int count) { return repeated(count, [](int) { return "<id/>"; }); }},
    {"attributes", 256, [](It& it, int i) { it.putChild(1010), it.putAttr(i + 1, i + 1), it.seekUp(); },
     [](int count) {
         const auto pieces = [](int i) {
             return varint(2 * static_cast<unsigned>(i + 1)) + sized(std::to_string(i + 1));
         };
         return messageOf(
             flaggedNode(1010, 16, varint(static_cast<unsigned>(count)) + repeated(count, pieces)));
     },
     [](int count) {
         const auto pieces = [](int i) {
             const std::string number = std::to_string(i + 1);
             return " hbx:a" + number + "='" + number + "'";
         };
         return "<id" + repeated(count, pieces) + "/>";
     }},
    {"unknown names", 65'536, [](It& it, int i) { it.newChild("n" + std::to_string(i)), it.seekUp(); },
     [](int count) {
         const auto nodes = [](int i) { return namedHead(static_cast<unsigned>(i), kEmpty); };
         const auto names = [](int i) { return sized("n" + std::to_string(i)); };
         return messageBytes(parentNode(0, repeated(count, nodes)),
                             varint(static_cast<unsigned>(count)) + repeated(count, names));
     },
     [](int count) { return repeated(count, [](int i) { return "<n" + std::to_string(i) + "/>"; }); }},
};

TEST(Limits, HoldForEveryWayInAndOut) {
    for (const Limit& limit : kLimits) {
        for (const bool over : {false, true}) {
            SCOPED_TRACE(std::string(limit.reason) + (over ? ": one more" : ": all"));
            const int count = limit.most + (over ? 1 : 0);
            const Cursor it = newCursor();
            limit.build(*it, count);
            const std::string bytes = limit.bytes(count);
            std::size_t room = 7;
            clearErrorMessage();
            EXPECT_TRUE(bytesOf(*it) == (over ? "" : bytes));
            EXPECT_EQ(getErrorMessage().empty(), !over);
            EXPECT_EQ(it->getMessage()->serialize(nullptr, &room, nullptr), over ? -1 : -2);
            EXPECT_EQ(takeText(it->toText()).empty(), over);
            EXPECT_EQ(parseMessage(bytes) == nullptr, over);
            EXPECT_EQ(checks(bytes), !over);
            std::string encoded;
            EXPECT_EQ(encode([&](It& writing) { return limit.build(writing, count); }, encoded),
                      over ? -1 : 0);
            const Message fromText = newMessage();
            EXPECT_EQ(fromText->fromText(messageText(limit.text(count)).c_str(), nullptr), over ? -1 : 0);
            if (over) {
                EXPECT_THAT(getErrorMessage(), ::testing::HasSubstr(limit.reason));
            } else {
                EXPECT_TRUE(encoded == bytes && bytesOf(fromText) == bytes);
            }
        }
    }
}

TEST(Limits, HoldForTheSizeOfAMessageAndTheNamesInUse) {
    const std::string large(std::size_t{256} << 20, 'x');
    std::string bytes = "kept";
    EXPECT_EQ(encode([&](It& it) { return it.putValue(large, 5); }, bytes), -1);
    EXPECT_EQ(bytes, "kept");
    EXPECT_EQ(encode([](It& it) { return kLimits[0].build(it, 256) + it.putValue("x", 5); }, bytes), -1);
    const Cursor it = newCursor();
    it->putValue(large.substr(40), 5);
    EXPECT_EQ(it->toText(), nullptr);
    for (const int numbers : {16'384, 16'385}) { // of attributes, which make as many names in a text
        const Cursor numbered = newCursor();
        for (int i = 0; i < numbers; ++i) {
            numbered->newChild(5), numbered->putAttr(i, 1'000'000 + i), numbered->seekUp();
        }
        EXPECT_EQ(newMessage()->fromText(takeText(numbered->toText()).c_str(), nullptr),
                  numbers == 16'384 ? 0 : -1);
    }
    for (const int levels : {256, 257}) {
        EXPECT_EQ(checks(elementBytes(nestedBytes(levels))), levels == 256) << "an element by itself";
        const Cursor deep = newCursor();
        kLimits[0].build(*deep, levels);
        EXPECT_EQ(deep->seek("/id"), 0);
        EXPECT_EQ(bytesFromChild(*deep).empty(), levels == 257);
    }
    const Cursor names = newCursor();
    kLimits[3].build(*names, 65'537);
    names->firstChild();
    names->deleteFromChild();
    EXPECT_NE(parseMessage(bytesOf(*names)), nullptr) << "a removed name does not count";
}

TEST(Limits, DeepestTreesAreBuiltCopiedAndFreedWithoutTheStack) {
    constexpr int kLevels = 100'000;
    const auto depthOf = [](const It& it) {
        int depth = 0;
        for (it.seekRoot(); it.firstChild() == 0; ++depth) {
        }
        return depth;
    };
    const Cursor it = newCursor();
    kLimits[0].build(*it, kLevels);
    EXPECT_EQ(bytesOf(*it), "");
    EXPECT_EQ(it->toText(), nullptr);
    EXPECT_EQ(depthOf(*rootOf(adoptMessage(it->getMessage()->copy(true)))), kLevels);
    const Cursor root = secondCursor(*it, false);
    EXPECT_EQ(it->copyToChild(root.get()), 0) << "twice as deep";
    EXPECT_EQ(depthOf(*root), 2 * kLevels);
    root->seekRoot();
    EXPECT_EQ(root->deleteChild(1010), 0);
    const std::string text = repeated(kLevels, [](int) { return "<a>"; });
    EXPECT_EQ(newMessage()->fromText(text.c_str(), nullptr), -1);
}

} // namespace
} // namespace HBX::test
