#pragma once

#include <iterator>
#include <random>
#include <string>

#include "support/MessageTestUtil.h"

/// Random writing through a cursor, for trees with a past and for writers that nobody would write.
namespace HBX::test {

using Random = std::mt19937_64;

using namespace std::string_literals;
inline const std::string kLongName(1024, 'x');
inline const std::string kLongText(16'380, 'x');

/// Elements, attributes, namespaces and types are drawn from these: of the table, numbers without a name,
/// names of the message's own, among them such as no text form can write as they are. 0 removes, or is
/// refused; 13 and 77 share a bit of a 64-bit mask.
inline const std::string kNames[] = {"own",       "\xC3\xBC n", "with space",  "hbx:odd", "xmlish",
                                     "scheduler", "4711",       "\x01\xFF/\n", kLongName};
constexpr int kNumbers[] = {0, 283, 1026, 1018, 1021, 77, 13, 0x3FFFFFFF};
inline const std::string kTexts[] = {"",
                                     " \t\n",
                                     "text",
                                     "&lt;<a b=\"c\">]]>",
                                     "\0\xFF\r\n"s,
                                     "trail \r",
                                     "\xC3\xA4",
                                     "\xED\xA0\x80",
                                     "\xF0\x9F\x98\x80",
                                     "\xEF\xBF\xBF",
                                     "long enough text \xC0\x80]",
                                     kLongText};

template <class Range>
const auto& oneOf(Random& random, const Range& range) {
    return range[random() % std::size(range)];
}

/// What an edit may use.
struct Draw {
    explicit Draw(Random& random)
        : number(oneOf(random, kNumbers)), name(oneOf(random, kNames)), text(oneOf(random, kTexts)) {}

    int number;
    const std::string& name;
    const std::string& text;
};

using Edit = int (*)(HBXMessageIterator&, const Draw&);

/// Edits of which most only append.
constexpr Edit kAppends[] = {
    [](auto& it, const Draw& draw) { return it.newChild(draw.number); },
    [](auto& it, const Draw& draw) { return it.newChild(draw.number); },
    [](auto& it, const Draw&) { return it.seekUp(); },
    [](auto& it, const Draw&) { return it.seekUp(); },
    [](auto& it, const Draw& draw) { return it.putValue(draw.text, draw.number); },
    [](auto& it, const Draw& draw) { return it.putValueXML(draw.text, draw.number); },
    [](auto& it, const Draw& draw) { return it.setNamespace(draw.number); },
    [](auto& it, const Draw& draw) { return it.saveNamespace(draw.number); },
    [](auto& it, const Draw& draw) { return it.setComplexType(draw.number, 295); },
    [](auto& it, const Draw& draw) { return it.setComplexType("scheduler", draw.number == 0 ? "" : "env"); },
};

/// Edits with names of the message's own, and such as need a tree.
constexpr Edit kChanges[] = {
    [](auto& it, const Draw& draw) { return it.newChild(draw.name); },
    [](auto& it, const Draw& draw) { return it.putValue(draw.text, draw.name); },
    [](auto& it, const Draw& draw) { return it.setNamespace(draw.name); },
    [](auto& it, const Draw& draw) { return it.saveNamespace(draw.name); },
    [](auto& it, const Draw& draw) { return it.setComplexType(draw.name, draw.name); },
    [](auto& it, const Draw& draw) { return it.putAttr(draw.text, draw.number); },
    [](auto& it, const Draw& draw) { return it.putAttr(draw.text, it.idOfName(draw.name)); },
    [](auto& it, const Draw& draw) { return it.setNamespaceChild(draw.number); },
    [](auto& it, const Draw& draw) { return it.putChild(draw.number); },
    [](auto& it, const Draw& draw) { return it.seek(draw.number); },
    [](auto& it, const Draw& draw) { return it.deleteChild(draw.number); },
    [](auto& it, const Draw&) { return it.deleteFromChild(); },
    [](auto& it, const Draw&) { return it.firstChild(); },
    [](auto& it, const Draw&) { return it.nextSibling(); },
};

} // namespace HBX::test
