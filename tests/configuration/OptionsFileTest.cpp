#include "ConfigurationTestUtil.h"

#include <boost/algorithm/string/join.hpp>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXFunctionalityCore/configuration/HBXOptionsFileSerializer.h>

namespace HBX::test {
namespace {

using Option = boost::program_options::basic_option<char>;
using Options = std::vector<Option>;

/// "key=a,b;=c;"
std::string textOf(const Options& options) {
    std::string text;
    for (const Option& one : options) {
        text += one.string_key + '=' + boost::algorithm::join(one.value, ",") + ';';
    }
    return text;
}

using OptionsFile = ConfigurationFile;

TEST_F(OptionsFile, ReadsBackWhatWasWritten) {
    const Options lists[] = {
        {},
        {Option("", {"schedule"}), Option("", {"next"}), Option("include", {"a", "", " <&>\r\n\t"})},
        {Option(std::string("k\0\xFF y", 5), {std::string("\0\x01\xFE", 3)})},
    };
    for (Options list : lists) {
        HBXOptionsFileSerializer file(path("options.xml"));
        ASSERT_EQ(file.write(list), 0) << getErrorMessage();
        Options read = {Option("old", {"1"})};
        ASSERT_EQ(HBXOptionsFileSerializer(file).read(read), 0) << getErrorMessage();
        EXPECT_EQ(textOf(read), textOf(list));
    }
    Options bare = {Option("a", {"1"}), Option("json", {})};
    const std::string old = write("options.xml", "old");
    EXPECT_EQ(HBXOptionsFileSerializer(old).write(bare), -1) << "a switch has no value to keep";
    EXPECT_EQ(contentOf(old), "old");
}

TEST_F(OptionsFile, EqualKeysBecomeOneAndBadOnesSpoilAll) {
    const auto named = [](const std::string& key, const std::string& values) {
        return "<option><name>" + key + "</name>" + values + "</option>";
    };
    const std::string spoilt = "old=1;";
    const std::pair<std::string, std::string> rows[] = {
        {named("x", "<value>1</value>") + named("y", "<value>2</value>") + named("x", "<value>3</value>"),
         "x=1,3;y=2;"},
        {"<option><value>a</value></option><option><value>a</value></option>", "=a;=a;"},
        {"<other/><option><name/><value>a</value><other/></option>", "=a;"},
        {"<option><value>a</value><value>b</value></option>", spoilt},
        {named("x", "<value>1</value>") + "<option/>", spoilt},
        {named("x", "<value/>"), spoilt}, // no value is not an empty one
    };
    for (const auto& [content, read] : rows) {
        Options options = {Option("old", {"1"})};
        const std::string file = write("options.xml", messageText(content));
        EXPECT_EQ(HBXOptionsFileSerializer(file).read(options), read == spoilt ? -1 : 0) << content;
        EXPECT_EQ(textOf(options), read) << content;
    }
}

} // namespace
} // namespace HBX::test
