#include <gtest/gtest.h>

#include "RandomEdits.h"
#include "SampleRecords.h"

/// Writers of every kind straight to bytes: what comes out is what a tree would have given.
namespace HBX::test {
namespace {

using It = HBXMessageIterator;

/// Records, what is asked on the way, and what reaches for the message.
constexpr Edit kOthers[] = {
    [](It& it, const Draw& draw) {
        return it.putObject(Leaf{8, draw.text}, draw.number);
    },
    [](It& it, const Draw& draw) { return it.putValue(draw.text, "name"); },
    [](It& it, const Draw&) { return it.seek(4711) + it.seekPresence(-1) + it.putValue(1, -1); },
    [](It& it, const Draw&) { return it.curID() + it.curNamespaceID(); },
    [](It& it, const Draw&) { return static_cast<int>((it.curName() + it.curType()).size()); },
    [](It& it, const Draw& draw) {
        Leaf leaf{99, "old"};
        return it.getObject(leaf, draw.number) + leaf.number;
    },
    [](It& it, const Draw& draw) { return secondCursor(it)->putValue(2, draw.number); },
    [](It& it, const Draw&) { return it.getMessage()->setOrigin(bytesOf(it).empty() ? "" : "agent"); },
    [](It& it, const Draw& draw) { return it.copyToChild(secondCursor(it, draw.number == 0).get()); },
    [](It& it, const Draw&) { return it.fromTextToChild("<name>x</name>"); },
    [](It& it, const Draw& draw) {
        std::string bytes;
        return encodeRecord(Leaf{5, draw.text}, bytes) + it.putValueBase64(bytes, 6);
    },
};

/// Writes at random, and says what each step answered; sometimes fails with the answer of the last.
int write(It& it, Random random, std::vector<int>& answers) {
    answers.clear();
    for (std::size_t steps = random() % 24; steps > 0; --steps) {
        const std::size_t kind = random() % 64;
        const Edit edit = kind == 0   ? oneOf(random, kChanges)
                          : kind < 12 ? oneOf(random, kOthers)
                                      : oneOf(random, kAppends);
        answers.push_back(edit(it, Draw(random)));
    }
    return answers.empty() || random() % 8 != 0 ? 0 : answers.back();
}

TEST(EncodingCursor, GivesTheBytesAndAnswersOfATree) {
    int direct = 0;
    for (std::uint64_t seed = 1; seed <= 20'000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        std::vector<int> expected;
        const Cursor tree = newCursor();
        const int result = write(*tree, Random(seed), expected);
        std::vector<int> answers;
        std::string bytes = "kept";
        int runs = 0;
        EXPECT_EQ(encode([&](It& it) { return ++runs, write(it, Random(seed), answers); }, bytes), result);
        EXPECT_EQ(bytes, result == 0 ? bytesOf(*tree) : "kept");
        EXPECT_EQ(answers, expected);
        direct += runs == 1 && answers.size() > 3 ? 1 : 0;
    }
    EXPECT_GT(direct, 1000) << "without a tree";
}

TEST(EncodingCursor, LargeBlocksMoveAtEveryLevelAndGiveTheirMemoryBack) {
    const auto allocatedAfter = [](std::size_t size) {
        const auto nest = [size](It& it) {
            for (int level = 1; level < 256; ++level) {
                it.newChild(5);
            }
            return it.putValue(std::string(size, 'x'), 5);
        };
        {
            const Cursor tree = newCursor();
            std::string bytes;
            EXPECT_EQ(encode(nest, bytes), nest(*tree));
            EXPECT_TRUE(bytes == bytesOf(*tree));
        }
        return allocatedBytes();
    };
    const std::size_t before = allocatedAfter(1);
    EXPECT_LT(allocatedAfter(20'000'000), before + 100'000);
}

} // namespace
} // namespace HBX::test
