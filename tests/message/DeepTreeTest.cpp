#include <gtest/gtest.h>

#include <HBXCommon/HBXErrorMessage.h>

#include "support/MessageTestUtil.h"

/// Trees as deep as nobody sends them, but anybody can build.
namespace HBX::test {
namespace {

constexpr int kLevels = 100'000;

Cursor deepTree(int levels) {
    Cursor it = newCursor();
    for (int i = 0; i < levels; ++i) {
        it->newChild(i % 2 == 0 ? 5 : 6);
        it->putValue(i, "own");
    }
    return it;
}

int depthOf(const HBXMessageIterator& it) {
    int depth = 0;
    for (it.seekRoot(); it.seek(depth % 2 == 0 ? 5 : 6) == 0; ++depth) {
    }
    return depth;
}

TEST(DeepTree, IsBuiltCopiedAndFreed) {
    const Cursor it = deepTree(kLevels);
    const Message copy = adoptMessage(it->getMessage()->copy(true));
    EXPECT_EQ(depthOf(*rootOf(copy)), kLevels);
    const Cursor root = secondCursor(*it, false);
    EXPECT_EQ(it->copyToChild(root.get()), 0) << "twice as deep";
    EXPECT_EQ(depthOf(*root), 2 * kLevels);
    EXPECT_EQ(adoptMessage(root->copyMessage())->deserialize(it.get(), nullptr), 0);
    root->seekRoot();
    EXPECT_EQ(root->deleteChild(5), 0);
    EXPECT_EQ(it->seekUp(), -1);
}

TEST(DeepTree, IsWrittenOnlyAsDeepAsItCanBeRead) {
    for (const auto& [levels, good] :
         {std::pair(255, true), std::pair(256, false), std::pair(kLevels, false)}) {
        const Cursor it = deepTree(levels); // its deepest element has a child
        char* data = nullptr;
        int length = 7;
        std::size_t room = 7;
        clearErrorMessage();
        EXPECT_EQ(it->serialize(&data, &length, 0), good ? 0 : -1) << levels;
        EXPECT_EQ(getErrorMessage().empty(), good) << levels;
        EXPECT_EQ(it->getMessage()->serialize(nullptr, &room, nullptr), good ? -2 : -1) << levels;
        EXPECT_EQ(parseMessage(takeBytes(data, length)) != nullptr, good) << levels;
        EXPECT_EQ(takeText(it->toText()).empty(), !good) << levels;
        const Cursor top = secondCursor(*it, false);
        top->firstChild();
        data = nullptr;
        EXPECT_EQ(top->serializeFromChild(&data, &length), good ? 0 : -1)
            << levels << " an element counts as a child";
        takeBytes(data, length);
        EXPECT_EQ(takeText(top->toTextFromChild()).empty(), !good) << levels;
        data = nullptr;
        EXPECT_EQ(top->getMessage()->serialize(&data, &length, top.get(), 0), levels <= 256 ? 0 : -1)
            << levels;
        takeBytes(data, length);
    }
}

TEST(DeepTree, WideTreesAreWrittenUpToTheLimitToo) {
    const Cursor it = newCursor();
    for (int i = 0; i < 1'000'000; ++i) {
        it->putValue("", 5);
    }
    EXPECT_EQ(bytesOf(*it).size(), 2'000'000U + 12 + 2 + 1 + 3);
    it->putValue("", 5);
    EXPECT_EQ(bytesOf(*it), "");
    EXPECT_EQ(it->toText(), nullptr);
    const Cursor names = newCursor();
    for (int i = 0; i <= 65'536; ++i) {
        names->newChild("n" + std::to_string(i));
        names->seekUp();
    }
    EXPECT_EQ(bytesOf(*names), "");
    EXPECT_EQ(names->toText(), nullptr);
    names->firstChild();
    names->deleteFromChild();
    EXPECT_NE(parseMessage(bytesOf(*names)), nullptr) << "only names in use count";
    const Cursor attributes = newCursor();
    for (int i = 1; i <= 257; ++i) {
        attributes->putAttr(i, i);
    }
    EXPECT_EQ(bytesOf(*attributes), "");
    EXPECT_EQ(attributes->toText(), nullptr);
    const Cursor value = newCursor();
    value->putValue(std::string((256 << 20) - 40, 'x'), 5);
    EXPECT_EQ(value->toText(), nullptr);
}

} // namespace
} // namespace HBX::test
