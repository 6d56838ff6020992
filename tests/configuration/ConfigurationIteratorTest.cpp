#include "ConfigurationTestUtil.h"

namespace HBX::test {
namespace {

const std::string kTree = "<data><system><configuration><log_level>4</log_level><group><inner>7</inner>"
                          "<configuration><deep>1</deep></configuration></group></configuration></system>"
                          "<bare/><hollow><configuration/></hollow></data>";

TEST(ConfigurationIterator, PathsLeadThroughTheWrapperOnceAndFailWhole) {
    const HBXConfiguration configuration = configured(kTree);
    const struct {
        const char* from;
        const char* path;
        const char* where; ///< null: fails
        const char* value = nullptr;
    } rows[] = {
        {"/system/group", "/", "data"},
        {"/", "/system/log_level", "data/system/log_level", "4"},
        {"/system", "log_level", "data/system/log_level", "4"},
        {"/system/group", "inner", "data/system/group/inner", "7"},
        {"/system/group", "/bare", "data/bare"},
        // Further down the wrapper's name is a plain one.
        {"/", "/system/group/configuration/deep", "data/system/group/configuration/deep", "1"},
        {"/", "/system/configuration/log_level", nullptr},
        {"/", "", nullptr},
        {"/", "data", nullptr},
        {"/", "//system", nullptr},
        {"/", "system/", nullptr},
        {"/", "system//log_level", nullptr},
        {"/", "System", nullptr},
        {"/system/group", "inner/none", nullptr},
        {"/bare", "log_level", nullptr},
        {"/hollow", "log_level", nullptr},
        {"/system/log_level", "log_level", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.from) + " + \"" + row.path + '"');
        const int expected = row.where != nullptr ? 0 : -1;
        OpenIterator it(configuration, row.from);
        const std::string before = it.where();
        std::string value = "kept";
        EXPECT_EQ(it.getValue(value, row.path), row.value != nullptr ? 0 : -1);
        EXPECT_EQ(value, row.value != nullptr ? row.value : "kept");
        EXPECT_EQ(it.where(), before);
        EXPECT_EQ(it.seekPresence(row.path), expected);
        EXPECT_EQ(it.where(), before);
        EXPECT_EQ(it.seek(row.path), expected);
        EXPECT_EQ(it.where(), row.where != nullptr ? row.where : before);
    }
    EXPECT_EQ(treeOf(configuration), kTree) << "looking changes nothing";
}

TEST(ConfigurationIterator, StepsMoveOrSayNo) {
    using It = OpenIterator;
    const struct {
        const char* name;
        const char* from;
        int (*step)(It&);
        int result;
        const char* where;
    } rows[] = {
        {"up at the top", "/", [](It& it) { return it.seekUp(); }, -1, "data"},
        {"up over the wrapper", "/system/group", [](It& it) { return it.seekUp(); }, 0, "data/system"},
        {"first setting", "/system", [](It& it) { return it.firstChild(); }, 0, "data/system/log_level"},
        {"named child", "/system", [](It& it) { return it.firstChild("group"); }, 0, "data/system/group"},
        {"no wrapper", "/bare", [](It& it) { return it.firstChild(); }, -1, "data/bare"},
        {"no wrapper to create in", "/bare", [](It& it) { return it.newChild("x"); }, -1, "data/bare"},
        {"empty wrapper", "/hollow", [](It& it) { return it.firstChild(); }, -1, "hollow/configuration"},
        {"nameless child", "/hollow", [](It& it) { return it.newChild(""); }, -1, "hollow/configuration"},
        {"new section", "/", [](It& it) { return it.newChild("fresh"); }, 0, "data/fresh"},
        {"new setting", "/hollow", [](It& it) { return it.newChild("fresh"); }, 0, "data/hollow/fresh"},
        {"named sibling", "/system", [](It& it) { return it.nextSibling("hollow"); }, 0, "data/hollow"},
        // The level stays 2 while the cursor stands on the wrapper: the climb ends above the top element.
        {"removed", "/system/group", [](It& it) { return it.deleteFromChild(); }, 0, "/data/configuration"},
    };
    for (const auto& row : rows) {
        const HBXConfiguration configuration = configured(kTree);
        OpenIterator it(configuration, row.from);
        EXPECT_EQ(row.step(it), row.result) << row.name;
        EXPECT_EQ(it.where(), row.where) << row.name;
    }
}

TEST(ConfigurationIterator, WritesCreateTheWayAndReplaceWhatIsThere) {
    const struct {
        const char* before;
        const char* from;
        const char* path;
        int result;
        const char* after;
    } rows[] = {
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
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.before) + " at " + row.from + ": " + row.path);
        const HBXConfiguration configuration = configured(row.before);
        OpenIterator it(configuration, row.from);
        const std::string where = it.where();
        for (int round = 0; round < 2; ++round) { // writing again replaces
            EXPECT_EQ(it.putValue(5, row.path), row.result);
            EXPECT_EQ(treeOf(configuration), row.after);
            EXPECT_EQ(it.where(), where);
        }
    }
}

TEST(ConfigurationIterator, ValuesReadBackAsTheyWereOrNotAtAll) {
    const HBXConfiguration configuration = configured("<data/>");
    const std::string bytes("\0\xFF<&\n ", 6);
    ASSERT_EQ(OpenIterator(configuration).putValue(bytes, "/s/text"), 0);
    ASSERT_EQ(OpenIterator(configuration).putValueBase64(bytes, "/s/bytes"), 0);
    const HBXConfiguration back = configured(treeOf(configuration));
    std::string text, decoded;
    int number = 7;
    EXPECT_EQ(OpenIterator(back).getValue(text, "/s/text"), 0);
    EXPECT_EQ(OpenIterator(back).getValueBase64(decoded, "/s/bytes"), 0);
    EXPECT_EQ(OpenIterator(back).getValueBase64(decoded, "/s/text"), -1);
    EXPECT_EQ(OpenIterator(back).getValue(number, "/s/text"), -1);
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
