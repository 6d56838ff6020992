#include "VocabularyTestUtil.h"

namespace HBX::test {
namespace {

const VocWords kItems = {"c:one,A,B", "p:alpha,A,B", "c:two,A",         "p:beta,A=7",
                         "p:gamma,B", "p:beta,B",    "p:delta,A,A,B,C", "c:three,C"};

TEST(VocIterator, SeekFindsTheFirstOfThatNameAndSaysWhereItStops) {
    const std::tuple<Tags, const char*, const char*, const char*> rows[] = {
        {{}, "alpha", "0 alpha", "-1 agent"},         {{}, "two", "-1 agent", "0 two"},
        {{"B"}, "beta", "-1 beta", "-1 agent"}, // a later one of that name would belong
        {{"A", "B"}, "alpha", "0 alpha", "-1 agent"}, {{"A", "B", "C"}, "delta", "0 delta", "-1 agent"},
        {{""}, "alpha", "-1 alpha", "-1 agent"},
    };
    const auto voc = vocOf(kItems);
    for (const auto& [restriction, id, parameter, category] : rows) {
        const VocCursor it(voc->readCategory(restriction));
        EXPECT_EQ(after(*it, [&, sought = id](auto& i) { return i.seekParameter(sought); }), parameter);
        EXPECT_EQ(after(*it, [&, sought = id](auto& i) { return i.seekCategory(sought); }), category);
    }
}

TEST(VocIterator, WalksWhatTheTagsAdmit) {
    const auto voc = vocOf(kItems);
    const VocCursor it(voc->read());
    EXPECT_EQ(walkParameters(*it, {}), "alpha beta gamma beta delta ");
    EXPECT_EQ(walkParameters(*it, {"A", "C"}), "delta ");

    // Without an argument by the iterator's own set, which arguments stand in for and do not add to.
    const VocCursor restricted(voc->readCategory("C"));
    EXPECT_EQ(after(*restricted, [](auto& i) { return i.firstParameter(); }), "0 delta");
    EXPECT_EQ(after(*restricted, [](auto& i) { return i.nextParameter(); }), "-1 delta");
    EXPECT_EQ(walkParameters(*restricted, {"A"}), "alpha beta delta ");
    const VocCursor copy(restricted->newIterator());
    EXPECT_EQ(after(*copy, [](auto& i) { return i.firstCategory(); }), "0 three");
    EXPECT_EQ(placeOf(restricted.get()), "delta");

    // A failed first search ends on the root, a failed next search on the last sibling.
    EXPECT_EQ(after(*it, [](auto& i) { return i.firstCategory("D"); }), "-1 agent");
    EXPECT_EQ(after(*it, [](auto& i) { return i.firstCategory("A"); }), "0 one");
    EXPECT_EQ(after(*it, [](auto& i) { return i.nextCategory("A"); }), "0 two");
    EXPECT_EQ(after(*it, [](auto& i) { return i.nextCategory("A"); }), "-1 three");
}

TEST(VocIterator, AMessageWithoutRootHasNothing) {
    const std::pair<const char*, const char*> rows[] = {// and the last element of the way that is there
                                                        {"", "-1 root"},
                                                        {"<agent/>", "-1 root"},
                                                        {"<data/>", "-1 data"},
                                                        {"<data><agent/></data>", "0 agent"}};
    for (const auto& [content, place] : rows) {
        const Message message = textMessage(content);
        HBXVocIterator it(dynamic_cast<HBXBinary&>(*message));
        EXPECT_EQ(after(it, [](auto& i) { return i.seekRoot(); }), place) << content;
        EXPECT_EQ(it.seekParameter("x"), -1);
        EXPECT_EQ(it.nextCategory(), -1);
        EXPECT_FALSE(HBXVocPrototype(message->copy(false)).isFeatureEnabled("x"));
    }
}

} // namespace
} // namespace HBX::test
