#pragma once

#include <charconv>
#include <string_view>
#include <system_error>

#include <HBXMessage/internal/Tree.h>

// The words that the text form reserves for itself; docs/message-text.md lists them with their meaning.

namespace HBX::internal {

inline constexpr std::string_view kXmlPrefix = "hbx:";
inline constexpr std::string_view kXmlBinding = "xmlns:hbx";
inline constexpr std::string_view kXmlUri = "urn:hbx:message";

inline constexpr std::string_view kXmlMessage = "message";
inline constexpr std::string_view kXmlEnvelope = "hbx:envelope";
inline constexpr std::string_view kXmlTarget = "hbx:target";
inline constexpr std::string_view kXmlElement = "hbx:element";

inline constexpr std::string_view kXmlKindText = "text";
inline constexpr std::string_view kXmlKindXml = "xml";
inline constexpr std::string_view kXmlBase64 = "base64";

/// What a reserved attribute of an element says.
enum class XmlMark { Version, Id, Name, Ns, NsId, TypeNs, TypeNsId, Type, TypeId, Kind, Encoding };

struct XmlMarkRow {
    std::string_view word; ///< behind the prefix
    XmlMark mark;
    bool base64 = false; ///< the value is base64 of what it would be
};

inline constexpr XmlMarkRow kXmlMarks[] = {
    {"ns", XmlMark::Ns},
    {"tns", XmlMark::TypeNs},
    {"type", XmlMark::Type},
    {"kind", XmlMark::Kind},
    {"enc", XmlMark::Encoding},
    {"nsid", XmlMark::NsId},
    {"tnsid", XmlMark::TypeNsId},
    {"typeid", XmlMark::TypeId},
    {"id", XmlMark::Id},
    {"name", XmlMark::Name},
    {"ns64", XmlMark::Ns, true},
    {"tns64", XmlMark::TypeNs, true},
    {"type64", XmlMark::Type, true},
    {"name64", XmlMark::Name, true},
    {"v", XmlMark::Version},
};

/// Attributes that do not go by their name: prefix, this letter, then the number or the name in hexadecimal.
inline constexpr char kXmlNumberText = 'a';
inline constexpr char kXmlNumberBytes = 'b';
inline constexpr char kXmlNameText = 'A';
inline constexpr char kXmlNameBytes = 'B';

/// Whether a name stands in the text as it is: ASCII letters, digits, "_", "-" and ".", a letter or "_"
/// first, and not "xml...", which the language keeps for itself.
inline bool isPlainXmlName(std::string_view name) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    if (name.empty() || !isLetter(name[0])) {
        return false;
    }
    for (const char c : name) {
        if (!isLetter(c) && !(c >= '0' && c <= '9') && c != '-' && c != '.') {
            return false;
        }
    }
    const auto isCaseless = [&](std::size_t at, char c) { return (name[at] | 0x20) == c; };
    return name.size() < 3 || !isCaseless(0, 'x') || !isCaseless(1, 'm') || !isCaseless(2, 'l');
}

/// The number of an element, namespace or type; 0 unless it is in range and written in its shortest form.
inline Ref parseXmlNumber(std::string_view text) {
    Ref number = 0;
    const char* end = text.data() + text.size();
    if (text.empty() || text[0] == '0') {
        return 0;
    }
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stopped == end && number < kDynamicRef ? number : 0;
}

} // namespace HBX::internal
