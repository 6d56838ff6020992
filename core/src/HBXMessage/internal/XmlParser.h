#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <libxml/parser.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXStringUtil.h>
#include <HBXMessage/internal/Limits.h>
#include <HBXMessage/internal/XmlNames.h>

namespace HBX::internal {

/// Of a start tag, as written but with its references resolved; lives as long as the call that tells of it.
struct XmlAttribute {
    std::string_view name, value;
};

/// Drives libxml2 over one text for a class derived from it, which is told what is found through onStart,
/// onEnd and onText and says through path() where it stands. What holds for every text is checked here: size,
/// encoding and no DOCTYPE. Template and not virtual: the calls come for every tag.
template <class Handler>
class XmlParser {
protected:
    using Attributes = std::span<const XmlAttribute>;

    explicit XmlParser(std::string_view text) : text_(text) {}

    /// 0, or -1 with line, column, path and reason in the thread's error message.
    int parse();

    /// Sets the message of the first failure, at the tag just told of; nothing more is told after it.
    void fail(std::string_view reason) { failAt(startOfTag(), reason); }
    /// The same, at the beginning of `rest`, which is the last part of the text just told of.
    void failAtText(std::string_view rest, std::string_view reason);
    [[nodiscard]] bool failed() const { return failed_; }

private:
    struct Free {
        void operator()(xmlParserCtxtPtr context) const { xmlFreeParserCtxt(context); }
    };

    static XmlParser& parser(void* self) { return *static_cast<XmlParser*>(self); }
    static xmlSAXHandler callbacks();
    static int read(void* self, char* to, int room) noexcept;
    static void takeError(void* self, const char* format, ...) noexcept;
    void failOn(const xmlError& error);
    static std::string_view view(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

    template <class Event>
    static void tell(void* self, Event event);
    Attributes listAttributes(const xmlChar** namesAndValues);
    void checkEncodingMarks();
    void checkDeclaration();
    void checkWork();
    [[nodiscard]] std::size_t consumed() const;
    [[nodiscard]] std::size_t startOfTag() const;
    void failAt(std::size_t offset, std::string_view reason);
    [[nodiscard]] std::string placeOf(std::size_t offset) const;

    std::string_view text_;
    std::size_t given_ = 0; ///< bytes that libxml2 has taken into its buffer
    std::unique_ptr<xmlParserCtxt, Free> context_;
    std::vector<XmlAttribute> attributes_;
    bool failed_ = false;
};

template <class Handler>
int XmlParser<Handler>::parse() {
    [[maybe_unused]] static const bool isReady = (xmlInitParser(), true);
    if (text_.size() > kMaxInput) {
        failAt(0, "the text is longer than " + std::to_string(kMaxInput) + " bytes");
    } else {
        checkEncodingMarks();
    }
    if (failed_) {
        return -1;
    }
    xmlSAXHandler handler = callbacks();
    context_.reset(xmlCreateIOParserCtxt(&handler, this, &read, nullptr, this, XML_CHAR_ENCODING_NONE));
    if (context_ == nullptr) {
        failAt(0, "out of memory");
        return -1;
    }
    // The limits are ours (HUGE), references in attributes are resolved (NOENT), and what the text declares
    // to be its encoding is not followed but checked.
    xmlCtxtUseOptions(context_.get(),
                      XML_PARSE_HUGE | XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
    const int result = xmlParseDocument(context_.get());
    if (result != 0 || consumed() != text_.size()) {
        failAt(consumed(), "not well-formed"); // or a zero byte, which libxml2 takes for the end
    }
    return failed_ ? -1 : 0;
}

template <class Handler>
xmlSAXHandler XmlParser<Handler>::callbacks() {
    xmlSAXHandler handler{};
    handler.startDocument = [](void* self) noexcept {
        tell(self, [](XmlParser& to) { to.checkDeclaration(); });
    };
    handler.internalSubset = [](void* self, const xmlChar*, const xmlChar*, const xmlChar*) noexcept {
        tell(self, [](XmlParser& to) { to.failAt(to.consumed(), "DOCTYPE is not allowed"); });
    };
    handler.startElement = [](void* self, const xmlChar* name, const xmlChar** attributes) noexcept {
        tell(self, [&](Handler& to) { to.onStart(view(name), parser(self).listAttributes(attributes)); });
    };
    handler.endElement = [](void* self, const xmlChar*) noexcept {
        tell(self, [](Handler& to) { to.onEnd(); });
    };
    handler.characters = [](void* self, const xmlChar* text, int length) noexcept {
        const std::string_view piece(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
        tell(self, [&](Handler& to) { to.onText(piece); });
    };
    handler.ignorableWhitespace = handler.characters;
    handler.error = &takeError;
    return handler;
}

/// Whoever is told something may stop libxml2.
template <class Handler>
template <class Event>
void XmlParser<Handler>::tell(void* self, Event event) {
    XmlParser& to = parser(self);
    if (!to.failed_) {
        event(static_cast<Handler&>(to));
    }
    if (to.failed_) {
        xmlStopParser(to.context_.get());
    }
}

/// Libxml2 fetches the text in pieces of some thousand bytes; when there are no more, it ends.
template <class Handler>
int XmlParser<Handler>::read(void* self, char* to, int room) noexcept {
    XmlParser& from = parser(self);
    from.checkWork();
    if (from.failed_) {
        return 0;
    }
    const std::string_view piece = from.text_.substr(from.given_, static_cast<std::size_t>(room));
    std::memcpy(to, piece.data(), piece.size());
    from.given_ += piece.size();
    return static_cast<int>(piece.size());
}

/// Libxml2 compares each attribute of an element with all before it, and keeps names in a table that grows
/// but once: what a text can make of that ends here, long before the limits on elements would be reached. It
/// doubles its list of names and values when that is full, so a list this long holds more than an element may
/// have.
template <class Handler>
void XmlParser<Handler>::checkWork() {
    constexpr std::size_t kMostAttributes = kMaxAttributes + std::size(kXmlMarks) + 1;
    if (static_cast<std::size_t>(context_->maxatts) > 4 * kMostAttributes) {
        fail("more than " + std::to_string(kMaxAttributes) + " attributes");
    } else if (xmlDictSize(context_->dict) > static_cast<int>(kMaxXmlNames)) {
        fail("more than " + std::to_string(kMaxXmlNames) + " names of elements and attributes");
    }
}

/// Libxml2 goes on behind an error, where nothing is told any more and so nothing would be checked, and it
/// cannot be stopped while it reports one: what it still has in its buffer is made blank.
template <class Handler>
void XmlParser<Handler>::takeError(void* self, const char*, ...) noexcept {
    XmlParser& to = parser(self);
    const xmlParserInput* input = to.context_->input;
    if (to.context_->lastError.level == XML_ERR_FATAL && input != nullptr) {
        to.failOn(to.context_->lastError);
        std::memset(const_cast<xmlChar*>(input->cur), 0, static_cast<std::size_t>(input->end - input->cur));
    }
}

/// In our own words where libxml2's name lines, which it does not count here, or advise what would not help.
template <class Handler>
void XmlParser<Handler>::failOn(const xmlError& error) {
    switch (error.code) {
    case XML_ERR_TAG_NAME_MISMATCH:
        return fail("mismatched tag");
    case XML_ERR_TAG_NOT_FINISHED:
        return failAt(consumed(), "the text ends inside an element");
    case XML_ERR_INVALID_CHAR:
        return failAt(consumed(), "no UTF-8, or no character of XML");
    default:
        constexpr std::size_t kShown = 256; // of a message, which may repeat a name of any length
        const std::string_view message = error.message == nullptr ? "out of memory" : error.message;
        failAt(consumed(), message.substr(0, std::min(message.find('\n'), kShown)));
    }
}

template <class Handler>
auto XmlParser<Handler>::listAttributes(const xmlChar** namesAndValues) -> Attributes {
    attributes_.clear();
    for (; namesAndValues != nullptr && *namesAndValues != nullptr; namesAndValues += 2) {
        attributes_.push_back({view(namesAndValues[0]), view(namesAndValues[1])});
    }
    return attributes_;
}

/// Libxml2 follows these marks whatever it is told: of two and four byte encodings, and of EBCDIC.
template <class Handler>
void XmlParser<Handler>::checkEncodingMarks() {
    const auto byte = [&](std::size_t i) {
        return static_cast<unsigned char>(i < text_.size() ? text_[i] : ' ');
    };
    if (byte(0) >= 0xFE || byte(0) == 0 || byte(1) == 0 || text_.starts_with("Lo\xA7\x94")) {
        failAt(0, "the text is not UTF-8");
    }
}

/// The declaration has been read by now, if there is one, so it is well-formed.
template <class Handler>
void XmlParser<Handler>::checkDeclaration() {
    const std::string_view declaration = text_.substr(0, consumed());
    const std::size_t quote = declaration.find_first_of("\"'", declaration.find("encoding"));
    if (quote == std::string_view::npos) {
        return;
    }
    const std::size_t end = declaration.find(declaration[quote], quote + 1);
    if (compareNoCase(std::string(declaration.substr(quote + 1, end - quote - 1)).c_str(), "UTF-8") != 0) {
        failAt(0, "the encoding must be UTF-8");
    }
}

/// Where libxml2 stands: behind what it has just told of.
template <class Handler>
std::size_t XmlParser<Handler>::consumed() const {
    return static_cast<std::size_t>(std::max(xmlByteConsumed(context_.get()), 0L));
}

/// An attribute cannot hold a "<", so the last one begins the tag that was just told of.
template <class Handler>
std::size_t XmlParser<Handler>::startOfTag() const {
    const std::size_t start = text_.substr(0, consumed()).rfind('<');
    return start == std::string_view::npos ? 0 : start;
}

/// Libxml2 tells of text where it lies in its buffer, before or after it passes it, or else of a copy, of
/// which the original has been passed.
template <class Handler>
void XmlParser<Handler>::failAtText(std::string_view rest, std::string_view reason) {
    const xmlParserInput& input = *context_->input;
    const auto* at = reinterpret_cast<const xmlChar*>(rest.data());
    const bool isCopy = std::less<>()(at, input.base) || std::less<>()(input.end, at);
    failAt(isCopy ? consumed() - rest.size() : consumed() - static_cast<std::size_t>(input.cur - at), reason);
}

template <class Handler>
void XmlParser<Handler>::failAt(std::size_t offset, std::string_view reason) {
    if (failed_) {
        return;
    }
    failed_ = true;
    std::string message = placeOf(std::min(offset, text_.size()));
    message += ", " + static_cast<Handler*>(this)->path() + ": ";
    setErrorMessage(message.append(reason));
}

/// `line L, column C` of a byte, both from 1; CR LF, LF and CR alone end a line, columns are bytes.
template <class Handler>
std::string XmlParser<Handler>::placeOf(std::size_t offset) const {
    std::size_t line = 1;
    std::size_t start = 0;
    for (std::size_t i = 0; i < offset; ++i) {
        if (text_[i] == '\n' || (text_[i] == '\r' && (i + 1 == text_.size() || text_[i + 1] != '\n'))) {
            ++line;
            start = i + 1;
        }
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(offset - start + 1);
}

} // namespace HBX::internal
