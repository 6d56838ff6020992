#include <gmock/gmock.h>

#include <HBXFunctionalityCore/modules/HBXSessionMBase.h>

#include "support/MessageTestUtil.h"

namespace HBX::test {
namespace {

using testing::ElementsAre;

constexpr int kItem = 3311;

HBXScreenSettings screen(const std::string& id, int refresh = 0) {
    HBXScreenSettings settings;
    settings.id = id;
    settings.refresh = refresh;
    return settings;
}

/// On a list of screens, with an item of another kind in the middle.
Cursor screens(std::initializer_list<const char*> ids) {
    Cursor it = newCursor();
    for (const char* id : ids) {
        HBXWriterIDT(HBXScreenSettings::Writer(), kItem)(*it, screen(id, 30));
        it->putValue("x", "stranger");
    }
    return it;
}

template <class Reader>
std::vector<std::string> idsAfter(const Reader& reader, const HBXMessageIterator& it, int result = 0) {
    std::vector<HBXScreenSettings> settings = {screen("a"), screen("b"), screen("c")};
    EXPECT_EQ(reader(it, settings), result);
    EXPECT_EQ(it.curID(), 0);
    std::vector<std::string> ids;
    for (const HBXScreenSettings& item : settings) {
        ids.push_back(item.id + (item.refresh.get() == 30 ? "*" : ""));
    }
    return ids;
}

TEST(SettingsReaders, TakeTheirPartOfAList) {
    const HBXScreenSettings::FilterReader filter({"d", "b", "x"});
    const HBXScreenSettings::IntersectionReader intersection;
    const HBXScreenSettings::DifferenceReader difference;

    const Cursor list = screens({"d", "c", "b", "b"});
    EXPECT_THAT(idsAfter(filter, *list), ElementsAre("a", "b", "c", "d*", "b*", "b*"));
    EXPECT_THAT(idsAfter(intersection, *list), ElementsAre("b", "c"));
    EXPECT_THAT(idsAfter(difference, *list), ElementsAre("a"));

    list->newChild(kItem); // without an identifier
    list->seekUp();
    EXPECT_THAT(idsAfter(filter, *list, -1), ElementsAre("a", "b", "c", "d*", "b*", "b*"));
    EXPECT_THAT(idsAfter(intersection, *list, -1), ElementsAre("a", "b", "c"));
    EXPECT_THAT(idsAfter(difference, *list, -1), ElementsAre("a", "b", "c"));
}

TEST(SettingsReaders, FilterDoesNotReadWhatIsNotWanted) {
    const Cursor it = newCursor();
    it->newChild(3325); // a profile with nothing but its identifier does not read
    const HBXGUID id = HBXGUID::generate();
    it->putObject(id, 1010);
    it->seekUp();
    std::vector<HBXProfile> profiles;
    EXPECT_EQ(HBXProfile::FilterReader({HBXGUID::generate()})(*it, profiles), 0);
    EXPECT_EQ(HBXProfile::FilterReader({id})(*it, profiles), -1);
    EXPECT_TRUE(profiles.empty());
}

} // namespace
} // namespace HBX::test
