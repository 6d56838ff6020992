// The text form of messages: docs/message-text.md.

#include <string>

#include <gmock/gmock.h>

#include <HBXCommon/HBXErrorMessage.h>

#include "support/ScratchFolder.h"
#include "support/TextMessage.h"

namespace HBX::test {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

const std::string kEnd = "</message>";

std::string toText(const Message& message, const std::string& indent = "") {
    return takeText(message->toText(nullptr, indent));
}

/// Null when the text is refused.
Message fromText(const std::string& text) {
    Message message = newMessage();
    return message->fromText(text.c_str(), nullptr) == 0 ? message : nullptr;
}

TEST(XmlForm, IsWhatItsPageShows) {
    const std::string all = contentOf(HBX_SOURCE_DIR "/docs/message-text.md");
    int examples = 0;
    for (std::size_t start = all.find("<?xml"); start != std::string::npos;
         start = all.find("<?xml", start + 1)) {
        const std::string example = all.substr(start, all.find("```", start) - start);
        SCOPED_TRACE(example);
        const Message message = fromText(example);
        ASSERT_NE(message, nullptr) << getErrorMessage();
        const Cursor cursor = rootOf(message);
        if (example.find("<message") == std::string::npos) {
            cursor->firstChild();
        }
        EXPECT_EQ(takeText(message->toText(cursor.get(), "  ")), example);
        ++examples;
    }
    EXPECT_GE(examples, 2);
    EXPECT_EQ(newMessage()->toText(nullptr, "--"), nullptr) << "the indentation would be read as text";
}

struct Same {
    const char* text;
    const char* as; ///< another text of the same tree
};

constexpr Same kSame[] = {
    {"\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?>\n<!-- c --><?pi x?>\n<message/>\n<!-- c -->\n",
     "<message/>"},
    {"<message>a<name/> \n <id/></message>", "<message hbx:kind='text'>a<name/><id/></message>"},
    {"<name>a&amp;<!-- c -->b<![CDATA[<c>]]><?pi x?>&#x41;&#233;</name>",
     "<name>a&amp;b&lt;c&gt;A\xC3\xA9</name>"},
    {"<name>a\r\nb\rc&#13;</name>", "<name>a\nb\nc&#13;</name>"},
    {"<name hbx:kind='xml'>&lt;a/></name>", "<name hbx:kind='xml'><![CDATA[<a/>]]></name>"},
    {"<name hbx:enc='base64'> YQ\n== </name>", "<name>a</name>"},
    {"<hbx:element hbx:id='1026'/>", "<name/>"},
    {"<a:b xml:lang='x'/>", "<hbx:element hbx:name='a:b' hbx:A786d6c3a6c616e67='x'/>"},
    {"<\xC3\xA9/>", "<hbx:element hbx:name64='w6k='/>"},
    {"<name hbx:a1010='x' hbx:A6F75='y'/>", "<name id='x' ou='y'/>"},
    {"<name hbx:ns64='c2NoZWR1bGVy' hbx:tns='q' hbx:typeid='130'/>",
     "<name hbx:tns64='cQ==' hbx:typeid='130' hbx:ns='scheduler' hbx:v='1' xmlns:hbx='urn:hbx:message'/>"},
    {"<message><hbx:envelope>\n<hbx:target hbx:enc='base64'>dA==</hbx:target> </hbx:envelope>v</message>",
     "<message><hbx:envelope><hbx:target>t</hbx:target></hbx:envelope>v</message>"},
};

TEST(XmlForm, ReadsWhatPeopleWrite) {
    for (const Same& row : kSame) {
        SCOPED_TRACE(row.text);
        const Message one = fromText(row.text);
        ASSERT_NE(one, nullptr) << getErrorMessage();
        const Message other = fromText(row.as);
        ASSERT_NE(other, nullptr) << getErrorMessage();
        EXPECT_EQ(toText(one), toText(other));
        EXPECT_EQ(bytesOf(one), bytesOf(other));
    }
}

struct Refused {
    std::string text, message;
};

const Refused kRefused[] = {
    // Well-formed or not.
    {"", "line 1, column 1, /: Document is empty"},
    {"<name>\xC3\xA9&x;</name>", "line 1, column 12, /name: Entity 'x' not defined"},
    {"<name>\n<id/></nome>", "line 2, column 6, /name: mismatched tag"},
    {"<name><id>", "line 1, column 11, /name/id: the text ends inside an element"},
    {"<name>\xC0\xAF</name>", "line 1, column 7, /name: no UTF-8, or no character of XML"},
    {"<name>\xED\xA0\x80</name>", "line 1, column 7, /name: no UTF-8, or no character of XML"},
    {"<name>&#1;</name>", "line 1, column 11, /name: no UTF-8, or no character of XML"},
    // Encodings and DOCTYPE.
    {"<?xml version='1.0' encoding='latin1'?><a/>", "line 1, column 1, /: the encoding must be UTF-8"},
    {"\xFE\xFF", "line 1, column 1, /: the text is not UTF-8"},
    {"Lo\xA7\x94\x93@", "line 1, column 1, /: the text is not UTF-8"},
    {"<!DOCTYPE a [<!ENTITY b 'c'><!ENTITY d '&b;&b;'>]><a>&d;</a>",
     "line 1, column 13, /: DOCTYPE is not allowed"},
    // What would take long if it were read to its end.
    {"<!-- -- --><!DOCTYPE a [<!ENTITY b '" + std::string(2000, 'b') + "'>]><a>&b;</a>",
     "line 1, column 6, /: Double hyphen within comment"},
    {"<a>\n<a" + repeated(80'000, [](int i) { return " a" + std::to_string(i) + "=''"; }),
     "line 2, column 1, /a: more than 256 attributes"},
    {repeated(250'000, [](int i) { return "<?p" + std::to_string(i) + "?>"; }) + "<a/>",
     ": more than 196608 names of elements and attributes"},
    // Our words.
    {"<message>\r\n <name hbx:v='1'/></message>",
     "line 2, column 2, /name: hbx:v must be 1 and stand on the document element"},
    {"<message><hbx:x/></message>", "line 1, column 10, /: unknown element hbx:x"},
    {"<name hbx:id='1'/>", "line 1, column 1, /name: hbx:id belongs to hbx:element"},
    {"<hbx:element hbx:id='1' hbx:name='a'/>", "line 1, column 1, /: the element is named twice"},
    {"<hbx:element hbx:id='1073741824'/>", "line 1, column 1, /: a number must be 1 to 1073741823"},
    {"<a hbx:type='b' hbx:typeid='2'/>", "line 1, column 1, /a: type given twice"},
    {"<a id='b' hbx:a1010='2'/>", "line 1, column 1, /a: attribute given twice"},
    {"<a hbx:enc='base64'>\nYQ=</a>", "line 2, column 4, /a: no base64"},
    {"<message><a/>\n \xC3\xA9</message>", "line 2, column 2, /: text after a child element"},
    {"<" + std::string(1025, 'n') + "/>",
     "line 1, column 1, /: a name has 1 to 1024 bytes, none of them zero"},
    {"<" + std::string(100, 'n') + "><hbx:element hbx:name='a/&#10;b'><a/>x",
     "line 1, column 140, /" + std::string(64, 'n') + ".../a??b: text after a child element"},
    // The envelope.
    {"<a><hbx:envelope/></a>", "line 1, column 4, /a: hbx:envelope must come first in the message"},
    {"<message><hbx:envelope uid='x' uid64='eA=='/></message>",
     "line 1, column 10, /: envelope field given twice"},
    {"<message><hbx:envelope log='2147483648'/></message>",
     "line 1, column 10, /: envelope field log is no number in range"},
    {"<message><hbx:envelope><hbx:target id='a'/></hbx:envelope></message>",
     "line 1, column 24, /: a target takes hbx:enc=\"base64\" and nothing else"},
    {"<message><hbx:envelope><hbx:target><a/></hbx:target></hbx:envelope></message>",
     "line 1, column 36, /: an element inside hbx:target"},
};

TEST(XmlForm, RefusesTheRestAndSaysWhere) {
    const Message message = newMessage();
    rootOf(message)->putValue("kept"s, 1026);
    const std::string before = bytesOf(message);
    for (const Refused& row : kRefused) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(message->fromText(row.text.c_str(), nullptr), -1);
        EXPECT_THAT(getErrorMessage(), testing::EndsWith(row.message));
        EXPECT_EQ(bytesOf(message), before);
    }
    const ScratchFolder folder;
    const std::string file = folder.write("zero", "<name/>\0<id/>"s);
    EXPECT_EQ(message->fromTextFile(file), -1);
    EXPECT_EQ(getErrorMessage(), file + ": line 1, column 8, /: not well-formed");
}

} // namespace
} // namespace HBX::test
