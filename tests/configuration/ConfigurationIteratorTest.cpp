#include "ConfigurationTestUtil.h"

namespace HBX::test {
namespace {

const std::string kTree = "<data><system><configuration><log_level>4</log_level><group><inner>7</inner>"
                          "<configuration><deep>1</deep></configuration></group></configuration></system>"
                          "<bare/><hollow><configuration/></hollow></data>";

TEST(ConfigurationIterator, PathsLeadThroughTheWrapperOnceAndFailWhole) {
    const HBXConfiguration configuration = configured(kTree);
    const std::string none; // the path leads nowhere, or there is no value
    const std::tuple<const char*, const char*, std::string, std::string> rows[] = {
        {"/system/group", "/", "data", none},
        {"/", "/system/log_level", "data/system/log_level", "4"},
        {"/system", "log_level", "data/system/log_level", "4"},
        {"/system/group", "inner", "data/system/group/inner", "7"},
        {"/system/group", "/bare", "data/bare", none},
        // Further down the wrapper's name is a plain one.
        {"/", "/system/group/configuration/deep", "data/system/group/configuration/deep", "1"},
        {"/", "/system/configuration/log_level", none, none},
        {"/", "", none, none},
        {"/", "//system", none, none},
        {"/", "system/", none, none},
        {"/", "system//log_level", none, none},
        {"/bare", "log_level", none, none},
    };
    for (const auto& [from, path, where, value] : rows) {
        SCOPED_TRACE(std::string(from) + " + \"" + path + '"');
        OpenIterator it(configuration, from);
        const std::string before = it.where();
        std::string read;
        EXPECT_EQ(it.getValue(read, path), value == none ? -1 : 0);
        EXPECT_EQ(read, value);
        EXPECT_EQ(it.where(), before);
        EXPECT_EQ(it.seekPresence(path), where == none ? -1 : 0);
        EXPECT_EQ(it.where(), before);
        EXPECT_EQ(it.seek(path), where == none ? -1 : 0);
        EXPECT_EQ(it.where(), where == none ? before : where);
    }
    EXPECT_EQ(treeOf(configuration), kTree) << "looking changes nothing";
}

TEST(ConfigurationIterator, StepsMoveOrSayNo) {
    using It = OpenIterator;
    const std::tuple<const char*, int (*)(It&), int, const char*> rows[] = {
        {"/", [](It& it) { return it.seekUp(); }, -1, "data"},
        {"/system/group", [](It& it) { return it.seekUp(); }, 0, "data/system"}, // over the wrapper
        {"/system", [](It& it) { return it.firstChild(); }, 0, "data/system/log_level"},
        {"/system", [](It& it) { return it.firstChild("group"); }, 0, "data/system/group"},
        {"/bare", [](It& it) { return it.firstChild(); }, -1, "data/bare"}, // there is no wrapper
        {"/bare", [](It& it) { return it.newChild("x"); }, -1, "data/bare"},
        {"/hollow", [](It& it) { return it.firstChild(); }, -1, "hollow/configuration"},
        {"/", [](It& it) { return it.newChild("fresh"); }, 0, "data/fresh"},
        {"/hollow", [](It& it) { return it.newChild("fresh"); }, 0, "data/hollow/fresh"},
        {"/system", [](It& it) { return it.nextSibling(); }, 0, "data/bare"},
        {"/system", [](It& it) { return it.nextSibling("hollow"); }, 0, "data/hollow"},
        // The level stays 2 while the cursor stands on the wrapper: the climb ends above the top element.
        {"/system/group", [](It& it) { return it.deleteFromChild(); }, 0, "/data/configuration"},
    };
    for (const auto& [from, step, result, where] : rows) {
        OpenIterator it(configured(kTree), from);
        EXPECT_EQ(step(it), result) << from << " to " << where;
        EXPECT_EQ(it.where(), where);
    }
}

TEST(ConfigurationIterator, WritesCreateTheWayAndReplaceWhatIsThere) {
    const std::tuple<const char*, const char*, const char*, int, const char*> rows[] = {
        {"<data/>", "/", "/system/log_level", 0,
         "<data><system><configuration><log_level>5</log_level></configuration></system></data>"},
        {"<data><s><configuration><a>1</a><a>2</a></configuration></s></data>", "/", "s/a", 0,
         "<data><s><configuration><a>5</a><a>2</a></configuration></s></data>"},
        {"<data><s><configuration><a>1</a></configuration></s></data>", "/s/a", "b/c", 0,
         "<data><s><configuration><a hbx:kind=\"text\">1<b><c>5</c></b></a></configuration></s></data>"},
        {"<data><s/></data>", "/s", "a", 0, "<data><s><configuration><a>5</a></configuration></s></data>"},
        {"<data/>", "/", "/", 0, "<data>5</data>"},
        {"<other/>", "/", "/s/x", -1, "<other/>"},
        {"<data/>", "/", "/system//x", -1, "<data><system><configuration/></system></data>"},
    };
    for (const auto& [before, from, path, result, changed] : rows) {
        SCOPED_TRACE(std::string(before) + " at " + from + ": " + path);
        const HBXConfiguration configuration = configured(before);
        OpenIterator it(configuration, from);
        const std::string where = it.where();
        for (int round = 0; round < 2; ++round) { // writing again replaces
            EXPECT_EQ(it.putValue(5, path), result);
            EXPECT_EQ(treeOf(configuration), changed);
            EXPECT_EQ(it.where(), where);
        }
    }
}

TEST(ConfigurationIterator, ValuesReadBackAsTheyWereOrNotAtAll) {
    const HBXConfiguration configuration = configured("<data/>");
    const std::string bytes("\0\xFF<&\n ", 6);
    ASSERT_EQ(OpenIterator(configuration).putValue(bytes, "/s/text"), 0);
    ASSERT_EQ(OpenIterator(configuration).putValueBase64(bytes, "/s/bytes"), 0);
    OpenIterator back(configured(treeOf(configuration)));
    std::string text, decoded;
    int number = 7;
    EXPECT_EQ(back.getValue(text, "/s/text"), 0);
    EXPECT_EQ(back.getValueBase64(decoded, "/s/bytes"), 0);
    EXPECT_EQ(back.getValueBase64(decoded, "/s/text"), -1);
    EXPECT_EQ(back.getValue(number, "/s/text"), -1);
    EXPECT_TRUE(text == bytes && decoded == bytes && number == 7);
}

TEST(ConfigurationIterator, CopiesShareTheCursorUntilOneGetsItsOwn) {
    const HBXConfiguration configuration = configured(kTree);
    OpenIterator a(configuration, "/system");
    OpenIterator b(configuration);
    b = a;
    ASSERT_EQ(a.seek("group"), 0);
    EXPECT_EQ(b.curName(), "group") << "b's cursor has moved along";
    EXPECT_EQ(a.where(), "data/system/group");
    EXPECT_EQ(b.seekUp(), 0) << "b is still at level 1: one element up, onto the wrapper";
    EXPECT_EQ(a.curName(), "configuration");
    EXPECT_EQ(b.seekUp(), -1) << "b is at level 0";

    OpenIterator c(configuration, "/bare");
    OpenIterator d = c;
    int value = 0;
    ASSERT_EQ(c.getValue(value, "/system/log_level"), 0);
    EXPECT_EQ(c.where(), "data/bare");
    EXPECT_EQ(d.curName(), "log_level") << "d has kept the cursor that was moved";
    EXPECT_EQ(c.seekPresence("/system/group"), 0);
    EXPECT_EQ(d.curName(), "log_level") << "c has no use for it";
}

TEST(ConfigurationIterator, OutlivesItsConfigurationAndMakesNewOnes) {
    auto configuration = std::make_unique<HBXConfiguration>(configured(kTree));
    std::unique_ptr<HBXConfigurationIterator> it(configuration->getIterator());
    configuration.reset();
    ASSERT_EQ(it->seek("/system/group"), 0);
    const std::unique_ptr<HBXConfigurationIterator> fresh(it->getIterator());
    configuration.reset(it->getConfig());
    it.reset();
    EXPECT_EQ(fresh->curName(), "data");
    EXPECT_EQ(treeOf(*configuration), kTree);
}

TEST(ConfigurationIterator, ElementsRemovedElsewhereAreNotTouched) {
    const HBXConfiguration configuration = configured(kTree);
    OpenIterator it(configuration, "/system/group");
    ASSERT_EQ(OpenIterator(configuration, "/system").deleteFromChild(), 0);
    int value = 3;
    EXPECT_EQ(it.getValue(value, "inner"), -1);
    EXPECT_EQ(it.putValue(1, "inner"), -1);
    EXPECT_EQ(it.seekUp(), -1);
    EXPECT_EQ(it.firstChild(), -1);
    EXPECT_EQ(it.curName(), "");
    EXPECT_EQ(it.seek("/bare"), 0) << "an absolute path brings it back";
    EXPECT_EQ(it.where(), "data/bare");
}

TEST(ConfigurationIterator, RestoringWhatWasNotSavedEndsTheProgram) {
    const std::string place = abortOf([] {
        OpenIterator it(configured(kTree));
        it.savePath();
        it.restorePath();
        it.restorePath();
    });
    EXPECT_EQ(place.find("HBXFunctionalityCore core/src/HBXFunctionalityCore/HBXConfig:"), 0U) << place;
    EXPECT_NE(place.find(" HBX::HBXConfigurationIterator::restorePath"), std::string::npos) << place;
}

} // namespace
} // namespace HBX::test
