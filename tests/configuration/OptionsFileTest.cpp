#include "ConfigurationTestUtil.h"

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>

namespace HBX::test {
namespace {

using Option = boost::program_options::basic_option<char>;
using Options = std::vector<Option>;

Option option(const std::string& key, const std::vector<std::string>& values) { return Option(key, values); }

/// "key=a,b; =c"
std::string textOf(const Options& options) {
    std::string text;
    for (const Option& one : options) {
        text += (text.empty() ? "" : "; ") + one.string_key + '=';
        for (std::size_t i = 0; i < one.value.size(); ++i) {
            text += (i == 0 ? "" : ",") + one.value[i];
        }
    }
    return text;
}

using OptionsFile = FolderTest;

TEST_F(OptionsFile, ReadsBackWhatWasWritten) {
    const Options lists[] = {
        {},
        {option("", {"schedule"}), option("", {"next"}), option("count", {"3"})},
        {option("include", {"a", "", " b ", "<&>\r\n\t"}), option("", {""})},
        {option(std::string("k\0\xFF y", 5), {std::string("\0\x01\xFE", 3)})},
    };
    for (const Options& list : lists) {
        HBXOptionsFileSerializer file(path("options.xml"));
        Options written = list;
        ASSERT_EQ(file.write(written), 0) << getErrorMessage();
        Options read = {option("old", {"1"})};
        ASSERT_EQ(HBXOptionsFileSerializer(file).read(read), 0) << getErrorMessage();
        EXPECT_EQ(textOf(read), textOf(list));
    }
}

TEST_F(OptionsFile, BareSwitchIsRefusedAndTheOldFileStays) {
    HBXOptionsFileSerializer file(write("options.xml", "old"));
    for (const Options& list : {Options{option("a", {"1"}), option("json", {})}, Options{option("", {})}}) {
        Options options = list;
        EXPECT_EQ(file.write(options), -1);
        EXPECT_EQ(contentOf(path("options.xml")), "old");
        EXPECT_EQ(files(), 1);
    }
}

TEST_F(OptionsFile, EqualKeysBecomeOneAndBadOnesSpoilAll) {
    const auto named = [](const std::string& key, const std::string& values) {
        return "<option><name>" + key + "</name>" + values + "</option>";
    };
    const struct {
        std::string content;
        const char* options; ///< null: fails
    } rows[] = {
        {"", ""},
        {named("x", "<value>1</value>") + named("y", "<value>2</value>") + named("x", "<value>3</value>"),
         "x=1,3; y=2"},
        {"<option><value>a</value></option><option><value>a</value></option>", "=a; =a"},
        {named("x", "") + named("x", "<value>1</value>"), "x=1"},
        {named("x", ""), "x="},
        {"<other/><option><value>a</value><other/></option>", "=a"},
        {"<option><name/><value>a</value></option>", "=a"},
        {"<option><name hbx:kind='text'/><value>a</value></option>", "=a"},
        {"<option><value>a</value><value>b</value></option>", nullptr},
        {"<option><name/><value>a</value><value>b</value></option>", nullptr},
        {"<option/>", nullptr},
        {named("x", "<value>1</value>") + "<option/>", nullptr},
        {named("x", "<value/>"), nullptr}, // no value is not an empty one
    };
    for (const auto& row : rows) {
        Options options = {option("old", {"1"})};
        const std::string file = write("options.xml", messageText(row.content));
        EXPECT_EQ(HBXOptionsFileSerializer(file).read(options), row.options != nullptr ? 0 : -1)
            << row.content;
        EXPECT_EQ(textOf(options), row.options != nullptr ? row.options : "old=1") << row.content;
    }
}

TEST_F(OptionsFile, ManyKeysTakeNoLongTime) {
    std::string content;
    constexpr int kOptions = 200000; // a search through the list for each would take minutes
    for (int i = 0; i < kOptions; ++i) {
        content += "<option><name>k" + std::to_string(i) + "</name><value>1</value></option>";
    }
    Options options;
    ASSERT_EQ(HBXOptionsFileSerializer(write("many.xml", messageText(content))).read(options), 0);
    EXPECT_EQ(options.size(), static_cast<std::size_t>(kOptions));
}

} // namespace
} // namespace HBX::test
