#include "ConfigurationTestUtil.h"

namespace HBX::test {
namespace {

const std::string kTree = "<data><system><configuration><log_level>4</log_level><group><inner>7</inner>"
                          "<configuration><deep>1</deep></configuration></group></configuration></system>"
                          "<bare/><hollow><configuration/></hollow></data>";

/// On the top element, then moved along a path.
OpenIterator iteratorAt(const HBXConfiguration& configuration, const std::string& path) {
    OpenIterator it(configuration);
    EXPECT_EQ(it.seek(path), 0) << path;
    return it;
}

TEST(ConfigurationIterator, PathsLeadThroughTheWrapperOnceAndFailWhole) {
    const HBXConfiguration configuration = configured(kTree);
    const struct {
        const char* from;
        const char* path;
        const char* where; ///< null: fails
    } rows[] = {
        {"/", "/", "data"},
        {"/system/group", "/", "data"},
        {"/", "system", "data/system"},
        {"/", "/system/log_level", "data/system/log_level"},
        {"/", "system/group/inner", "data/system/group/inner"},
        {"/system", "log_level", "data/system/log_level"},
        {"/system/group", "inner", "data/system/group/inner"},
        {"/system/group", "/bare", "data/bare"},
        {"/", "/system/group/configuration/deep",
         "data/system/group/configuration/deep"}, // a plain name below
        {"/", "", nullptr},
        {"/system", "", nullptr},
        {"/", "data", nullptr},
        {"/", "//system", nullptr},
        {"/", "system/", nullptr},
        {"/", "system//log_level", nullptr},
        {"/", " system", nullptr},
        {"/", "System", nullptr},
        {"/", "system/..", nullptr},
        {"/", "/system/configuration/log_level", nullptr},
        {"/", "/system/group/inner/none", nullptr},
        {"/system/group", "/system/group/inner/none", nullptr},
        {"/system/group", "inner/none", nullptr},
        {"/system", "none", nullptr},
        {"/bare", "log_level", nullptr},
        {"/hollow", "log_level", nullptr},
        {"/system/log_level", "log_level", nullptr},
        {"/", "never_seen_before", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.from) + " + \"" + row.path + '"');
        const int expected = row.where != nullptr ? 0 : -1;
        OpenIterator it = iteratorAt(configuration, row.from);
        const std::string before = it.where();
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
        {"up from a section", "/system", [](It& it) { return it.seekUp(); }, 0, "data"},
        {"up over the wrapper", "/system/group", [](It& it) { return it.seekUp(); }, 0, "data/system"},
        {"up from below", "/system/group/inner", [](It& it) { return it.seekUp(); }, 0, "data/system/group"},
        {"first section", "/", [](It& it) { return it.firstChild(); }, 0, "data/system"},
        {"first setting", "/system", [](It& it) { return it.firstChild(); }, 0, "data/system/log_level"},
        {"named child", "/system", [](It& it) { return it.firstChild("group"); }, 0, "data/system/group"},
        {"no child", "/system/log_level", [](It& it) { return it.firstChild(); }, -1,
         "data/system/log_level"},
        {"no wrapper", "/bare", [](It& it) { return it.firstChild(); }, -1, "data/bare"},
        {"no wrapper to create in", "/bare", [](It& it) { return it.newChild("x"); }, -1, "data/bare"},
        {"empty wrapper", "/hollow", [](It& it) { return it.firstChild(); }, -1, "hollow/configuration"},
        {"no such child", "/system", [](It& it) { return it.firstChild("x"); }, -1, "system/configuration"},
        {"nameless child", "/hollow", [](It& it) { return it.newChild(""); }, -1, "hollow/configuration"},
        {"new section", "/", [](It& it) { return it.newChild("fresh"); }, 0, "data/fresh"},
        {"new setting", "/hollow", [](It& it) { return it.newChild("fresh"); }, 0, "data/hollow/fresh"},
        {"a second one", "/system", [](It& it) { return it.newChild("group"); }, 0, "data/system/group"},
        {"sibling", "/system", [](It& it) { return it.nextSibling(); }, 0, "data/bare"},
        {"named sibling", "/system", [](It& it) { return it.nextSibling("hollow"); }, 0, "data/hollow"},
        {"no sibling", "/hollow", [](It& it) { return it.nextSibling(); }, -1, "data/hollow"},
        {"no such sibling", "/system", [](It& it) { return it.nextSibling("x"); }, -1, "data/system"},
        // The level stays 2 while the cursor stands on the wrapper: the climb ends above the top element.
        {"removed", "/system/group", [](It& it) { return it.deleteFromChild(); }, 0, "/data/configuration"},
    };
    for (const auto& row : rows) {
        const HBXConfiguration configuration = configured(kTree);
        OpenIterator it = iteratorAt(configuration, row.from);
        EXPECT_EQ(row.step(it), row.result) << row.name;
        EXPECT_EQ(it.where(), row.where) << row.name;
    }
}

TEST(ConfigurationIterator, ValuesAreReadWithoutMovingAndKeptOnFailure) {
    const HBXConfiguration configuration =
        configured("<data><s><configuration><text>abc</text><number> 12 "
                   "</number><huge>99999999999</huge><coded>aGk=</coded>"
                   "<none/><empty hbx:kind='text'/></configuration></s></data>");
    const struct {
        const char* path;
        const char* text; ///< null: fails
        const char* number;
        const char* bytes;
    } rows[] = {
        {"/s/text", "abc", nullptr, nullptr},
        {"number", " 12 ", "12", nullptr},
        {"/s/huge", "99999999999", nullptr, nullptr},
        {"coded", "aGk=", nullptr, "hi"},
        {"none", nullptr, nullptr, nullptr},
        {"empty", "", nullptr, ""},
        {"/s", nullptr, nullptr, nullptr},
        {"/", nullptr, nullptr, nullptr},
        {"/t/x", nullptr, nullptr, nullptr},
        {"", nullptr, nullptr, nullptr},
    };
    OpenIterator it = iteratorAt(configuration, "/s");
    for (const auto& row : rows) {
        std::string text = "kept";
        int number = -7;
        std::string bytes = "kept";
        EXPECT_EQ(it.getValue(text, row.path), row.text != nullptr ? 0 : -1) << row.path;
        EXPECT_EQ(it.getValue(number, row.path), row.number != nullptr ? 0 : -1) << row.path;
        EXPECT_EQ(it.getValueBase64(bytes, row.path), row.bytes != nullptr ? 0 : -1) << row.path;
        EXPECT_EQ(text, row.text != nullptr ? row.text : "kept") << row.path;
        EXPECT_EQ(std::to_string(number), row.number != nullptr ? row.number : "-7") << row.path;
        EXPECT_EQ(bytes, row.bytes != nullptr ? row.bytes : "kept") << row.path;
        EXPECT_EQ(it.where(), "data/s") << row.path;
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
        {"<data><s><configuration><a>1</a></configuration></s></data>", "/s", "a", 0,
         "<data><s><configuration><a>5</a></configuration></s></data>"},
        {"<data><s><configuration><a>1</a><a>2</a></configuration></s></data>", "/", "s/a", 0,
         "<data><s><configuration><a>5</a><a>2</a></configuration></s></data>"},
        {"<data><s><configuration><a>1</a></configuration></s></data>", "/s/a", "b/c", 0,
         "<data><s><configuration><a hbx:kind=\"text\">1<b><c>5</c></b></a></configuration></s></data>"},
        {"<data><s/></data>", "/s", "a", 0, "<data><s><configuration><a>5</a></configuration></s></data>"},
        {"<data/>", "/", "/", 0, "<data>5</data>"},
        {"<data/>", "/", "/s", 0, "<data><s>5</s></data>"},
        {"<data/>", "/", "", -1, "<data/>"},
        {"<data/>", "/", "/system//x", -1, "<data><system><configuration/></system></data>"},
        {"<data/>", "/", "/system/x/", -1,
         "<data><system><configuration><x/></configuration></system></data>"},
        {"<data><s/></data>", "/s", "", -1, "<data><s><configuration/></s></data>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.before) + " at " + row.from + ": " + row.path);
        const HBXConfiguration configuration = configured(row.before);
        OpenIterator it = iteratorAt(configuration, row.from);
        const std::string where = it.where();
        for (int round = 0; round < 2; ++round) { // writing again replaces
            EXPECT_EQ(it.putValue(5, row.path), row.result);
            EXPECT_EQ(treeOf(configuration), row.after);
            EXPECT_EQ(it.where(), where);
        }
        int value = 0;
        EXPECT_EQ(it.getValue(value, row.path), row.result);
    }
}

TEST(ConfigurationIterator, TextsAndBytesReadBackAsTheyWere) {
    const HBXConfiguration configuration = configured("<data/>");
    const std::string bytes("\0\xFF<&\n ", 6);
    std::string text, decoded;
    OpenIterator it(configuration);
    ASSERT_EQ(it.putValue(bytes, "/s/text"), 0);
    ASSERT_EQ(it.putValueBase64(bytes, "/s/bytes"), 0);
    const HBXConfiguration back = configured(treeOf(configuration));
    OpenIterator reader(back);
    EXPECT_EQ(reader.getValue(text, "/s/text"), 0);
    EXPECT_EQ(reader.getValueBase64(decoded, "/s/bytes"), 0);
    EXPECT_EQ(text, bytes);
    EXPECT_EQ(decoded, bytes);
}

TEST(ConfigurationIterator, CopiesShareTheCursorUntilOneGetsItsOwn) {
    const HBXConfiguration configuration = configured(kTree);
    OpenIterator a = iteratorAt(configuration, "/system");
    OpenIterator b(configuration);
    b = a;
    ASSERT_EQ(a.seek("group"), 0);
    EXPECT_EQ(b.curName(), "group") << "b's cursor has moved along";
    EXPECT_EQ(a.where(), "data/system/group");
    EXPECT_EQ(b.seekUp(), 0) << "b is still at level 1: one element up, onto the wrapper";
    EXPECT_EQ(a.curName(), "configuration");
    EXPECT_EQ(b.seekUp(), -1) << "b is at level 0";

    OpenIterator c = iteratorAt(configuration, "/bare");
    OpenIterator d = c;
    int value = 0;
    ASSERT_EQ(c.getValue(value, "/system/log_level"), 0);
    EXPECT_EQ(c.where(), "data/bare");
    EXPECT_EQ(d.curName(), "log_level") << "d has kept the cursor that was moved";
    EXPECT_EQ(d.getValue(value, "/system/group/inner"), 0);
    EXPECT_EQ(value, 7);
    const OpenIterator& same = c;
    c = same;
    EXPECT_EQ(c.where(), "data/bare");
}

TEST(ConfigurationIterator, OutlivesItsConfigurationAndMakesNewOnes) {
    std::unique_ptr<HBXConfigurationIterator> it;
    {
        const HBXConfiguration configuration = configured(kTree);
        it.reset(configuration.getIterator());
    }
    ASSERT_EQ(it->seek("/system/group"), 0);
    const std::unique_ptr<HBXConfigurationIterator> fresh(it->getIterator());
    const std::unique_ptr<HBXConfiguration> configuration(it->getConfig());
    EXPECT_EQ(configuration->getMessage(), it->getMessage());
    it.reset();
    EXPECT_EQ(fresh->curName(), "data");
    EXPECT_EQ(treeOf(*configuration), kTree);
}

TEST(ConfigurationIterator, WithoutATopElementOnlyAbsolutePathsAreRefused) {
    const HBXConfiguration configuration = configured("<other><x>1</x></other>");
    OpenIterator it(configuration);
    EXPECT_EQ(it.seekUp(), -1);
    EXPECT_EQ(it.seek("/"), -1);
    EXPECT_EQ(it.putValue(1, "/s/x"), -1);
    EXPECT_EQ(it.seek("other"), 0);
    EXPECT_EQ(treeOf(configuration), "<other><x>1</x></other>");
}

TEST(ConfigurationIterator, ElementsRemovedElsewhereAreNotTouched) {
    const HBXConfiguration configuration = configured(kTree);
    OpenIterator it = iteratorAt(configuration, "/system/group");
    OpenIterator other = iteratorAt(configuration, "/system");
    ASSERT_EQ(other.deleteFromChild(), 0);
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
    const HBXConfiguration configuration = configured(kTree);
    const auto placeOf = [](const std::function<void()>& call) {
        std::string place = abortOf(call);
        place.erase(place.find(':'), place.find(' ', place.find(':')) - place.find(':')); // the line
        return place;
    };
    const std::string source = "HBXFunctionalityCore core/src/HBXFunctionalityCore/HBXConfig ";
    EXPECT_EQ(placeOf([&] { OpenIterator(configuration).restorePath(); }),
              source + "HBX::HBXConfigurationIterator::restorePath");
    EXPECT_EQ(placeOf([&] {
                  OpenIterator it(configuration);
                  it.savePath();
                  it.restorePath();
                  it.restorePath();
              }),
              source + "HBX::HBXConfigurationIterator::restorePath");
}

} // namespace
} // namespace HBX::test
