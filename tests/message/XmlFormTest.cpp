// The text form of messages: docs/message-text.md.

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXMessage/HBXBinaryIterator.h>
#include <HBXMessage/HBXDefaultMap.h>
#include <HBXMessage/HBXMessage.h>

namespace {

using namespace HBX;
using namespace std::string_literals;
using testing::HasSubstr;
using Message = boost::intrusive_ptr<HBXMessage>;

const std::string kStart =
    R"(<?xml version="1.0" encoding="UTF-8"?><message xmlns:hbx="urn:hbx:message" hbx:v="1")";
const std::string kEnd = "</message>";

Message newMessage() { return adoptMessage(HBXMsgFactory::createNew()); }

HBXBinaryIterator cursorOf(const Message& message) {
    return HBXBinaryIterator(static_cast<HBXBinary&>(*message));
}

std::string taken(char* text) {
    const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
    return text == nullptr ? "(refused: " + getErrorMessage() + ")" : text;
}

std::string toText(const Message& message, const std::string& indent = "") {
    return taken(message->toText(nullptr, indent));
}

/// Null when the text is refused.
Message fromText(const std::string& text) {
    Message message = newMessage();
    return message->fromText(text.c_str(), nullptr) == 0 ? message : nullptr;
}

/// Equal trees with equal envelopes have equal bytes, so these serve to compare.
std::string bytesOf(const Message& message) {
    char* bytes = nullptr;
    int length = 0;
    EXPECT_EQ(message->serialize(&bytes, &length, nullptr, 0), 0) << getErrorMessage();
    std::string result(bytes, static_cast<std::size_t>(length));
    std::free(bytes);
    return result;
}

/// The id under which a name can be used for attributes.
int idOf(HBXMessageIterator& cursor, const std::string& name) {
    EXPECT_EQ(cursor.newChild(name), 0);
    const int id = cursor.curID();
    EXPECT_EQ(cursor.deleteFromChild(), 0);
    return id;
}

// --- what is written ---------------------------------------------------------------------------------------

struct Written {
    const char* what;
    std::function<void(HBXBinaryIterator&)> build;
    std::string text; ///< between the document element's own marks and its end
};

TEST(XmlForm, WritesEachPieceInItsForm) {
    const Written kRows[] = {
        {"nothing", [](auto&) {}, "/>"},
        {"value", [](auto& at) { at.putValue("a<b> & \"c\"\t\n\r"s, 1026); },
         "><name>a&lt;b&gt; &amp; \"c\"\t\n&#13;</name></message>"},
        {"no value", [](auto& at) { at.newChild(1026); }, "><name/></message>"},
        {"empty value", [](auto& at) { at.putValue(""s, 1026); }, "><name hbx:kind=\"text\"/></message>"},
        {"blank value", [](auto& at) { at.putValue(" \r"s, 1026); },
         "><name hbx:kind=\"text\"> &#13;</name></message>"},
        {"value before children",
         [](auto& at) {
             at.newChild(1026);
             at.putValue("v"s, 0);
             at.putValue("c"s, 1010);
         },
         "><name hbx:kind=\"text\">v<id>c</id></name></message>"},
        {"value of the root", [](auto& at) { at.putValue("v"s, 0); }, ">v</message>"},
        {"binary value", [](auto& at) { at.putValue("\0\x01"s, 1026); },
         "><name hbx:enc=\"base64\">AAE=</name></message>"},
        {"invalid UTF-8", [](auto& at) { at.putValue("long enough \xC0\x80"s, 1026); },
         "><name hbx:enc=\"base64\">bG9uZyBlbm91Z2ggwIA=</name></message>"},
        {"XML", [](auto& at) { at.putValueXML("<a>]]></a>"s, 1026); },
         "><name hbx:kind=\"xml\"><![CDATA[<a>]]]]><![CDATA[></a>]]></name></message>"},
        {"empty XML", [](auto& at) { at.putValueXML(""s, 1026); }, "><name hbx:kind=\"xml\"/></message>"},
        {"XML with CR", [](auto& at) { at.putValueXML("\r"s, 1026); },
         "><name hbx:kind=\"xml\" hbx:enc=\"base64\">DQ==</name></message>"},
        {"number without name", [](auto& at) { at.newChild(17); }, "><hbx:element hbx:id=\"17\"/></message>"},
        {"unknown names",
         [](auto& at) {
             for (const char* name : {"plain_1.x-", "a b", "XMLx", "hbx:x", "1", "\xFF"}) {
                 at.newChild(std::string(name));
                 at.seekUp();
             }
         },
         "><plain_1.x-/><hbx:element hbx:name=\"a b\"/><hbx:element hbx:name=\"XMLx\"/>"
         "<hbx:element hbx:name=\"hbx:x\"/><hbx:element hbx:name=\"1\"/>"
         "<hbx:element hbx:name64=\"/w==\"/></message>"},
        {"namespace and type by name",
         [](auto& at) {
             at.newChild(1185);
             at.setNamespace("scheduler");
             at.setComplexType("some where", "\x02");
         },
         "><env_config hbx:ns=\"scheduler\" hbx:tns=\"some where\" hbx:type64=\"Ag==\"/></message>"},
        {"namespace and type by number",
         [](auto& at) {
             at.setNamespace(7);
             at.setComplexType(8, 9);
         },
         " hbx:nsid=\"7\" hbx:tnsid=\"8\" hbx:typeid=\"9\"/>"},
        {"attributes in order",
         [](auto& at) {
             at.putAttr("1"s, idOf(at, "zz"));
             at.putAttr("2"s, idOf(at, "a b"));
             at.putAttr("\xFF"s, idOf(at, "aa"));
             at.putAttr("<\"&\t\n\r> "s, 1026);
             at.putAttr("\x01"s, 1010);
             at.putAttr("x"s, 17);
             at.putAttr("\0"s, 18);
         },
         " hbx:a17=\"x\" hbx:b18=\"AA==\" hbx:b1010=\"AQ==\" name=\"&lt;&quot;&amp;&#9;&#10;&#13;&gt; \""
         " hbx:A612062=\"2\" hbx:B6161=\"/w==\" zz=\"1\"/>"},
    };
    for (const Written& row : kRows) {
        SCOPED_TRACE(row.what);
        const Message message = newMessage();
        HBXBinaryIterator cursor = cursorOf(message);
        row.build(cursor);
        EXPECT_EQ(toText(message), kStart + row.text);
        const Message again = fromText(toText(message));
        ASSERT_NE(again, nullptr) << getErrorMessage();
        EXPECT_EQ(bytesOf(again), bytesOf(message));
    }
}

TEST(XmlForm, IndentsOnlyWhereNoTextStands) {
    const Message message = newMessage();
    message->setOrigin("me");
    message->addTarget("you");
    HBXBinaryIterator cursor = cursorOf(message);
    cursor.newChild(1185);
    cursor.newChild(1026);
    cursor.putValue("v"s, 0);
    cursor.newChild(1010);
    cursor.putValue("c"s, 1018);
    EXPECT_EQ(toText(message, "\t"), R"(<?xml version="1.0" encoding="UTF-8"?>
<message xmlns:hbx="urn:hbx:message" hbx:v="1">
	<hbx:envelope origin="me">
		<hbx:target>you</hbx:target>
	</hbx:envelope>
	<env_config>
		<name hbx:kind="text">v<id>
				<value>c</value>
			</id></name>
	</env_config>
</message>
)");
    EXPECT_EQ(message->toText(nullptr, "--"), nullptr) << "the indentation would be read as text";
}

TEST(XmlForm, WritesAnElementAlone) {
    const Message message = newMessage();
    message->setOrigin("stays outside");
    HBXBinaryIterator cursor = cursorOf(message);
    cursor.newChild("message");
    cursor.putValue("hello"s, 0);
    const std::string text = taken(message->toText(&cursor, ""));
    EXPECT_EQ(text, R"(<?xml version="1.0" encoding="UTF-8"?>)"
                    R"(<hbx:element xmlns:hbx="urn:hbx:message" hbx:id="3030">hello</hbx:element>)");
    const Message other = fromText(text);
    ASSERT_NE(other, nullptr) << getErrorMessage();
    EXPECT_EQ(toText(other), kStart + "><message>hello</message>" + kEnd);
}

TEST(XmlForm, CarriesTheWholeEnvelope) {
    const Message message = newMessage();
    message->setOrigin("a\"b");
    message->setTarget({"one", "", " \n", "\x01", "\r"});
    message->setID("\xFE", true);
    message->setLog(-1);
    message->setTime(INT64_MIN);
    message->setUid("");
    cursorOf(message).putValue(" "s, 0);
    for (const char* indent : {"", "  "}) {
        const Message again = fromText(toText(message, indent));
        ASSERT_NE(again, nullptr) << getErrorMessage();
        EXPECT_EQ(bytesOf(again), bytesOf(message));
    }
    EXPECT_THAT(toText(message),
                HasSubstr(R"( hbx:v="1" hbx:kind="text"><hbx:envelope origin="a&quot;b" id64="/g==")"
                          R"( log="-1" time="-9223372036854775808" uid=""><hbx:target>one)"));
}

TEST(XmlForm, IsWhatItsPageShows) {
    std::ifstream page(HBX_SOURCE_DIR "/docs/message-text.md");
    const std::string all(std::istreambuf_iterator<char>(page), {});
    int examples = 0;
    for (std::size_t start = all.find("<?xml"); start != std::string::npos;
         start = all.find("<?xml", start + 1)) {
        const std::string example = all.substr(start, all.find("```", start) - start);
        SCOPED_TRACE(example);
        const Message message = fromText(example);
        ASSERT_NE(message, nullptr) << getErrorMessage();
        HBXBinaryIterator cursor = cursorOf(message);
        if (example.find("<message") == std::string::npos) {
            cursor.firstChild();
        }
        EXPECT_EQ(taken(message->toText(&cursor, "  ")), example);
        ++examples;
    }
    EXPECT_GE(examples, 2);
}

// --- what is read ------------------------------------------------------------------------------------------

struct Same {
    const char* text;
    const char* as; ///< another text of the same tree
};

constexpr Same kSame[] = {
    {"\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?>\n<!-- c --><?pi x?>\n<message/>\n<!-- c -->\n",
     "<message/>"},
    {"<name>a</name>", "<message><name>a</name></message>"},
    {"<message>\n  <name>\n</name>\r\n\t</message>", "<message><name/></message>"},
    {"<message> a </message>", "<message hbx:kind='text'> a </message>"},
    {"<message>a<name/> \n <id/></message>", "<message hbx:kind='text'>a<name/><id/></message>"},
    {"<name>a&amp;<!-- c -->b<![CDATA[<c>]]><?pi x?>&#x41;&#233;</name>",
     "<name>a&amp;b&lt;c&gt;A\xC3\xA9</name>"},
    {"<name> <!-- c --> <![CDATA[ ]]> &#32;&#13;</name>", "<name/>"},
    {"<name> <![CDATA[]]>&#120;</name>", "<name> x</name>"},
    {"<name>a\r\nb\rc&#13;</name>", "<name>a\nb\nc&#13;</name>"},
    {"<name id='a\tb\nc'/>", "<name id='a b c'/>"},
    {"<name hbx:kind='text'/>", "<name hbx:kind='text'></name>"},
    {"<name hbx:kind='xml'>&lt;a/></name>", "<name hbx:kind='xml'><![CDATA[<a/>]]></name>"},
    {"<name hbx:enc='base64'> YQ\n== </name>", "<name>a</name>"},
    {"<name hbx:enc='base64'/>", "<name hbx:kind='text'/>"},
    {"<hbx:element hbx:id='1026'/>", "<name/>"},
    {"<hbx:element hbx:name='name'/>", "<name/>"},
    {"<hbx:element hbx:name64='bmFtZQ=='/>", "<name/>"},
    {"<a:b xml:lang='x'/>", "<hbx:element hbx:name='a:b' hbx:A786d6c3a6c616e67='x'/>"},
    {"<\xC3\xA9/>", "<hbx:element hbx:name64='w6k='/>"},
    {"<name hbx:a1010='x' hbx:A6F75='y'/>", "<name id='x' ou='y'/>"},
    {"<name hbx:b1010='eA=='/>", "<name id='x'/>"},
    {"<name hbx:ns64='c2NoZWR1bGVy' hbx:tns='q' hbx:typeid='130'/>",
     "<name hbx:tns64='cQ==' hbx:typeid='130' hbx:ns='scheduler' hbx:v='1' xmlns:hbx='urn:hbx:message'/>"},
    {"<message><hbx:envelope/></message>", "<message/>"},
    {"<message hbx:kind='text'>\n<hbx:envelope uid64='dQ=='/> <name/></message>",
     "<message hbx:kind='text'><hbx:envelope uid='u'/> <name/></message>"},
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
    const char* text;
    const char* message;
};

constexpr Refused kRefused[] = {
    // Expat's part: well-formed or not.
    {"", "line 1, column 1, /: no element found"},
    {"<message>\n<name>\n</id></message>", "line 3, column 3, /name: mismatched tag"},
    {"<message/>\n x", "line 2, column 2, /: junk after document element"},
    {"<name/>\n<id/>", "line 2, column 1, /: junk after document element"},
    {"<message><name>", "line 1, column 16, /name: no element found"},
    {"<name id='1' id='2'/>", "line 1, column 14, /: duplicate attribute"},
    {"<name>\xC3\xA9&x;</name>", "line 1, column 9, /name: undefined entity"},
    {"<name>\xFF</name>", "line 1, column 7, /name: not well-formed (invalid token)"},
    {"<name>&#0;</name>", "line 1, column 7, /name: reference to invalid character number"},
    {"<name>&#xFFFE;</name>", "line 1, column 7, /name: reference to invalid character number"},
    {"<name>\x01</name>", "line 1, column 7, /name: not well-formed (invalid token)"},
    // Encodings and DOCTYPE.
    {"<?xml version='1.0' encoding='latin1'?><a/>", "line 1, column 1, /: the encoding must be UTF-8"},
    {"\xFE\xFF", "line 1, column 1, /: the text is not UTF-8"},
    {"<!DOCTYPE a><a/>", "line 1, column 12, /: DOCTYPE is not allowed"},
    {"<!DOCTYPE a [<!ENTITY b 'c'><!ENTITY d '&b;&b;'>]><a>&d;</a>",
     "line 1, column 13, /: DOCTYPE is not allowed"},
    {"<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>", "line 1, column 40, /: DOCTYPE is not allowed"},
    // Our words.
    {"<message hbx:v='2'/>", "line 1, column 1, /: hbx:v must be 1 and stand on the document element"},
    {"<message>\r\n <name hbx:v='1'/></message>",
     "line 2, column 2, /name: hbx:v must be 1 and stand on the document element"},
    {"<message xmlns:hbx='urn:other'/>", "line 1, column 1, /: xmlns:hbx must be urn:hbx:message"},
    {"<message hbx:x='2'/>", "line 1, column 1, /: unknown attribute hbx:x"},
    {"<message hbx:='2'/>", "line 1, column 1, /: unknown attribute hbx:"},
    {"<message><hbx:x/></message>", "line 1, column 10, /: unknown element hbx:x"},
    {"<name hbx:id='1'/>", "line 1, column 1, /name: hbx:id belongs to hbx:element"},
    {"<hbx:element/>", "line 1, column 1, /: hbx:element needs hbx:id or hbx:name"},
    {"<hbx:element hbx:id='1' hbx:name='a'/>", "line 1, column 1, /: the element is named twice"},
    {"<hbx:element hbx:id='0'/>", "line 1, column 1, /: a number must be 1 to 1073741823"},
    {"<hbx:element hbx:id='01'/>", "line 1, column 1, /: a number must be 1 to 1073741823"},
    {"<hbx:element hbx:id='-1'/>", "line 1, column 1, /: a number must be 1 to 1073741823"},
    {"<hbx:element hbx:id='1073741824'/>", "line 1, column 1, /: a number must be 1 to 1073741823"},
    {"<hbx:element hbx:name=''/>", "line 1, column 1, /: a name has 1 to 1024 bytes, none of them zero"},
    {"<hbx:element hbx:name64='AA=='/>",
     "line 1, column 1, /: a name has 1 to 1024 bytes, none of them zero"},
    {"<hbx:element hbx:name64='A'/>", "line 1, column 1, /: no base64"},
    {"<hbx:element hbx:id='9'><a hbx:ns='' /></hbx:element>",
     "line 1, column 25, /9/a: a name has 1 to 1024 bytes, none of them zero"},
    {"<a hbx:ns='b' hbx:nsid='1'/>", "line 1, column 1, /a: namespace given twice"},
    {"<a hbx:tns='b' hbx:tns64='Yg=='/>", "line 1, column 1, /a: type given twice"},
    {"<a hbx:type='b' hbx:typeid='2'/>", "line 1, column 1, /a: type given twice"},
    {"<a id='b' hbx:a1010='2'/>", "line 1, column 1, /a: attribute given twice"},
    {"<a ou='b' hbx:B6f75='eA=='/>", "line 1, column 1, /a: attribute given twice"},
    {"<a hbx:A6='b'/>", "line 1, column 1, /a: a name has 1 to 1024 bytes, none of them zero"},
    {"<a hbx:a='b'/>", "line 1, column 1, /a: a number must be 1 to 1073741823"},
    {"<a hbx:kind='bool'/>", "line 1, column 1, /a: hbx:kind must be text or xml"},
    {"<a hbx:enc='hex'/>", "line 1, column 1, /a: hbx:enc must be base64"},
    {"<a hbx:enc='base64'>\nYQ=</a>", "line 2, column 4, /a: no base64"},
    {"<message><a/>\n \xC3\xA9</message>", "line 2, column 2, /: text after a child element"},
    {"<a><b/><![CDATA[ x]]></a>", "line 1, column 18, /a: text after a child element"},
    {"<a><b/>&#65;</a>", "line 1, column 8, /a: text after a child element"},
    // The envelope.
    {"<hbx:envelope/>", "line 1, column 1, /: unknown element hbx:envelope"},
    {"<a><hbx:envelope/></a>", "line 1, column 4, /a: hbx:envelope must come first in the message"},
    {"<message><a/><hbx:envelope/></message>",
     "line 1, column 14, /: hbx:envelope must come first in the message"},
    {"<message>x<hbx:envelope/></message>",
     "line 1, column 11, /: hbx:envelope must come first in the message"},
    {"<message><hbx:envelope/><hbx:envelope/></message>",
     "line 1, column 25, /: hbx:envelope must come first in the message"},
    {"<message><hbx:envelope from='x'/></message>", "line 1, column 10, /: unknown envelope attribute from"},
    {"<message><hbx:envelope target='x'/></message>",
     "line 1, column 10, /: unknown envelope attribute target"},
    {"<message><hbx:envelope log64='MQ=='/></message>",
     "line 1, column 10, /: unknown envelope attribute log64"},
    {"<message><hbx:envelope uid='x' uid64='eA=='/></message>",
     "line 1, column 10, /: envelope field given twice"},
    {"<message><hbx:envelope log='2147483648'/></message>",
     "line 1, column 10, /: envelope field log is no number in range"},
    {"<message><hbx:envelope>x</hbx:envelope></message>", "line 1, column 24, /: text inside the envelope"},
    {"<message><hbx:envelope><a/></hbx:envelope></message>",
     "line 1, column 24, /: unknown element a in the envelope"},
    {"<message><hbx:envelope><hbx:target id='a'/></hbx:envelope></message>",
     "line 1, column 24, /: a target takes hbx:enc=\"base64\" and nothing else"},
    {"<message><hbx:envelope><hbx:target><a/></hbx:target></hbx:envelope></message>",
     "line 1, column 36, /: an element inside hbx:target"},
};

TEST(XmlForm, RefusesTheRestAndSaysWhere) {
    const Message message = newMessage();
    cursorOf(message).putValue("kept"s, 1026);
    const std::string before = bytesOf(message);
    for (const Refused& row : kRefused) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(message->fromText(row.text, nullptr), -1);
        EXPECT_EQ(getErrorMessage(), row.message);
        EXPECT_EQ(bytesOf(message), before);
    }
}

TEST(XmlForm, ShowsHarmlessPaths) {
    const std::string name(100, 'n');
    EXPECT_EQ(fromText("<" + name + "><hbx:element hbx:name='a/&#10;b'><a/>x"), nullptr);
    EXPECT_EQ(getErrorMessage(),
              "line 1, column 140, /" + name.substr(0, 64) + ".../a??b: text after a child element");
}

// --- limits ------------------------------------------------------------------------------------------------

std::string repeated(const std::string& piece, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

std::string nested(int levels) { return repeated("<a>", levels) + repeated("</a>", levels); }

std::string numbered(int count, const std::string& before, const std::string& after) {
    std::string text;
    for (int i = 1; i <= count; ++i) {
        text.append(before).append(std::to_string(i)).append(after);
    }
    return text;
}

TEST(XmlForm, HoldsTheLimitsWhenReading) {
    struct Row {
        std::string fits, exceeds, reason;
    };
    const Row kRows[] = {
        {nested(256), nested(257), "more than 256 levels of elements"},
        {"<message>" + nested(256) + kEnd, "<message>" + nested(100'000) + kEnd,
         "more than 256 levels of elements"},
        {"<a" + numbered(256, " hbx:a", "=''") + "/>", "<a" + numbered(257, " a", "=''") + "/>",
         "more than 256 attributes"},
        {"<message>" + numbered(65'536, "<a", "/>") + kEnd, "<message>" + numbered(65'537, "<a", "/>") + kEnd,
         "more than 65536 unknown names"},
        {"<message>" + repeated("<id/>", 1'000'000) + kEnd, "<message>" + repeated("<id/>", 1'000'001) + kEnd,
         "more than 1000000 elements"},
        {"<" + std::string(1024, 'n') + "/>", "<" + std::string(1025, 'n') + "/>",
         "a name has 1 to 1024 bytes, none of them zero"},
    };
    for (const Row& row : kRows) {
        const Message message = fromText(row.fits);
        ASSERT_NE(message, nullptr) << getErrorMessage();
        EXPECT_NE(toText(message), "");
        EXPECT_EQ(fromText(row.exceeds), nullptr);
        EXPECT_THAT(getErrorMessage(), HasSubstr(": " + row.reason));
    }
}

TEST(XmlForm, RefusesToWriteWhatItWouldNotRead) {
    struct Row {
        std::function<void(HBXBinaryIterator&)> build;
        const char* reason;
    };
    const auto step = [](HBXBinaryIterator& at) { at.newChild("a"); };
    const Row kRows[] = {
        {[&](auto& at) {
             for (int i = 0; i < 257; ++i)
                 step(at);
         },
         "more than 256 levels of elements"},
        {[](auto& at) {
             for (int i = 1; i <= 257; ++i)
                 at.putAttr(i, i);
         },
         ": more than 256 attributes"},
        {[](auto& at) {
             for (int i = 0; i <= 65'536; ++i) {
                 at.newChild("a" + std::to_string(i));
                 at.seekUp();
             }
         },
         "more than 65536 unknown names"},
        {[](auto& at) {
             for (int i = 0; i <= 1'000'000; ++i) {
                 at.newChild(1010);
                 at.seekUp();
             }
         },
         "more than 1000000 elements"},
        {[](auto& at) { at.putValue(std::string((256 << 20) - 40, 'x'), 1026); },
         "longer than 268435456 bytes"},
    };
    for (const Row& row : kRows) {
        const Message message = newMessage();
        HBXBinaryIterator cursor = cursorOf(message);
        row.build(cursor);
        EXPECT_EQ(message->toText(nullptr, ""), nullptr);
        EXPECT_THAT(getErrorMessage(), HasSubstr(row.reason));
    }
}

// --- everything there is -----------------------------------------------------------------------------------

TEST(XmlForm, WritesEveryNameOfTheTableAsItIs) {
    const Message message = newMessage();
    HBXBinaryIterator cursor = cursorOf(message);
    for (int id = 1; id < 6000; ++id) {
        if (*HBXDefaultMap::findElemID(id) != '\0') {
            cursor.newChild(id);
            cursor.seekUp();
        }
    }
    const std::string text = toText(message);
    EXPECT_EQ(text.find("hbx:element"), std::string::npos);
    const Message again = fromText(text);
    ASSERT_NE(again, nullptr) << getErrorMessage();
    EXPECT_EQ(bytesOf(again), bytesOf(message));
}

/// Trees with everything in them that a tree can hold, from one seed.
class RandomTree {
public:
    explicit RandomTree(unsigned seed) : random_(seed) {}

    Message make() {
        Message message = newMessage();
        if (chance(2)) {
            message->setOrigin(bytes());
            message->setTarget({bytes(), bytes()});
            message->setPriority(static_cast<int>(random_()));
        }
        HBXBinaryIterator cursor = cursorOf(message);
        fill(cursor);
        for (unsigned left = 1 + below(60); left != 0; --left) {
            while (chance(3) && cursor.seekUp() == 0) {
            }
            newElement(cursor);
            fill(cursor);
        }
        return message;
    }

private:
    unsigned below(unsigned end) { return static_cast<unsigned>(random_() % end); }
    bool chance(unsigned of) { return below(of) == 0; }

    std::string bytes() {
        static const std::string kPieces[] = {"",
                                              " ",
                                              "\n",
                                              "\t",
                                              "\r",
                                              "a",
                                              "text",
                                              "]]>",
                                              "<x/>",
                                              "&",
                                              "\"",
                                              "\0"s,
                                              "\x1F",
                                              "]",
                                              "\x7F",
                                              "\xC3\xA9",
                                              "\xE2\x82\xAC",
                                              "\xF0\x9F\x98\x80",
                                              "\xED\xA0\x80",
                                              "\xEF\xBF\xBF",
                                              "\xC0\x80",
                                              "\x80",
                                              "plain text that is longer than a block"};
        std::string made;
        for (unsigned left = below(4); left != 0; --left) {
            made += kPieces[below(std::size(kPieces))];
        }
        return made;
    }

    std::string name() {
        std::string made = bytes() + "n";
        std::erase(made, '\0');
        return made;
    }

    int number() { return static_cast<int>(chance(2) ? 1000 + below(900) : 1 + below((1U << 30) - 1)); }

    void newElement(HBXBinaryIterator& cursor) {
        ASSERT_EQ(chance(2) ? cursor.newChild(number()) : cursor.newChild(name()), 0);
    }

    void fill(HBXBinaryIterator& cursor) {
        switch (below(3)) {
        case 0:
            cursor.putValue(bytes(), 0);
            break;
        case 1:
            cursor.putValueXML(bytes(), 0);
            break;
        default:
            break;
        }
        if (chance(3)) {
            chance(2) ? cursor.setNamespace(number()) : cursor.setNamespace(name());
        }
        if (chance(3)) {
            chance(2) ? cursor.setComplexType(number(), number()) : cursor.setComplexType(name(), name());
        }
        for (unsigned left = chance(2) ? below(5) : 0; left != 0; --left) {
            cursor.putAttr(bytes(), chance(2) ? number() : idOf(cursor, name()));
        }
    }

    std::mt19937 random_;
};

TEST(XmlForm, BringsEveryTreeBackExactly) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Message message = RandomTree(seed).make();
        for (const char* indent : {"", "  "}) {
            const std::string text = toText(message, indent);
            const Message again = fromText(text);
            ASSERT_NE(again, nullptr) << getErrorMessage() << text;
            ASSERT_EQ(bytesOf(again), bytesOf(message)) << text;
            ASSERT_EQ(toText(again, indent), text);
        }
    }
}

TEST(XmlForm, BringsEveryElementBackExactly) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Message message = RandomTree(seed).make();
        HBXBinaryIterator cursor = cursorOf(message);
        ASSERT_EQ(cursor.firstChild(), 0);
        const Message copy = newMessage();
        HBXBinaryIterator target = cursorOf(copy);
        ASSERT_EQ(target.copyToChild(&cursor), 0);
        const std::string text = taken(message->toText(&cursor, "  "));
        const Message again = fromText(text);
        ASSERT_NE(again, nullptr) << getErrorMessage() << text;
        ASSERT_EQ(bytesOf(again), bytesOf(copy)) << text;
    }
}

TEST(XmlForm, RefusesEveryBeginning) {
    const std::string text = toText(RandomTree(7).make(), " ");
    const std::size_t end = text.rfind('>');
    for (std::size_t length = 0; length <= end; ++length) {
        EXPECT_EQ(fromText(text.substr(0, length)), nullptr) << length;
    }
}

} // namespace
