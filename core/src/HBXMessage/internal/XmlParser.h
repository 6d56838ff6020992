#pragma once

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include <expat.h>
#include <sys/random.h>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXStringUtil.h>
#include <HBXMessage/internal/Limits.h>

namespace HBX::internal {

/// Drives Expat over one text for a class derived from it, which is told what is found through onStart, onEnd
/// and onText and says through path() where it stands. What holds for every text is checked here: size,
/// encoding and no DOCTYPE. Template and not virtual: the calls come for every tag.
template <class Handler>
class XmlParser {
protected:
    using Attributes = const XML_Char**; ///< names and values in turn, null at the end

    explicit XmlParser(std::string_view text) : text_(text), parser_(XML_ParserCreate("UTF-8")) {}

    /// 0, or -1 with line, column, path and reason in the thread's error message.
    int parse();

    /// Sets the message of the first failure and stops Expat, which may still deliver a callback or two.
    /// @param offset  bytes behind the start of what Expat just reports.
    void fail(std::string_view reason, std::size_t offset = 0);
    [[nodiscard]] bool failed() const { return failed_; }

private:
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    static Handler& handler(void* self) { return *static_cast<Handler*>(static_cast<XmlParser*>(self)); }
    static unsigned long randomSalt();
    void setHandlers();
    void refuseOtherEncodings();
    [[nodiscard]] std::string placeOf(std::size_t offset) const;

    std::string_view text_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free> parser_;
    bool failed_ = false;
};

template <class Handler>
int XmlParser<Handler>::parse() {
    if (parser_ == nullptr) {
        fail("out of memory");
    } else if (text_.size() > kMaxInput) {
        fail("the text is longer than " + std::to_string(kMaxInput) + " bytes");
    } else {
        refuseOtherEncodings();
    }
    if (failed_) {
        return -1;
    }
    setHandlers();
    // In one piece: Expat works faster when it knows that nothing follows, and never looks at a token twice.
    static_assert(kMaxInput <= std::numeric_limits<int>::max());
    if (XML_Parse(parser_.get(), text_.data(), static_cast<int>(text_.size()), XML_TRUE) != XML_STATUS_OK) {
        fail(XML_ErrorString(XML_GetErrorCode(parser_.get())));
    }
    return failed_ ? -1 : 0;
}

template <class Handler>
void XmlParser<Handler>::fail(std::string_view reason, std::size_t offset) {
    if (failed_) {
        return;
    }
    failed_ = true;
    const XML_Index index = XML_GetCurrentByteIndex(parser_.get());
    const std::size_t start = index < 0 ? 0 : static_cast<std::size_t>(index);
    std::string message = placeOf(std::min(start + offset, text_.size()));
    message += ", " + handler(this).path() + ": ";
    setErrorMessage(message.append(reason));
    XML_StopParser(parser_.get(), XML_FALSE);
}

/// Expat's tables are to fill differently each time, so that nobody can choose names that collide. Without
/// random bytes (there always are some once the system is up) Expat finds a salt of its own for 0.
template <class Handler>
unsigned long XmlParser<Handler>::randomSalt() {
    unsigned long salt = 0;
    return getrandom(&salt, sizeof salt, 0) == sizeof salt ? salt : 0;
}

template <class Handler>
void XmlParser<Handler>::setHandlers() {
    XML_Parser parser = parser_.get();
    XML_SetHashSalt(parser, randomSalt());
    XML_SetUserData(parser, this);
    XML_SetElementHandler(
        parser,
        [](void* self, const XML_Char* name, Attributes attributes) noexcept {
            if (Handler& to = handler(self); !to.failed()) {
                to.onStart(name, attributes);
            }
        },
        [](void* self, const XML_Char*) noexcept {
            if (Handler& to = handler(self); !to.failed()) {
                to.onEnd();
            }
        });
    XML_SetCharacterDataHandler(parser, [](void* self, const XML_Char* text, int length) noexcept {
        if (Handler& to = handler(self); !to.failed()) {
            to.onText({text, static_cast<std::size_t>(length)});
        }
    });
    XML_SetXmlDeclHandler(parser, [](void* self, const XML_Char*, const XML_Char* encoding, int) noexcept {
        if (encoding != nullptr && compareNoCase(encoding, "UTF-8") != 0) {
            handler(self).fail("the encoding must be UTF-8");
        }
    });
    XML_SetStartDoctypeDeclHandler(parser,
                                   [](void* self, const XML_Char*, const XML_Char*, const XML_Char*,
                                      int) noexcept { handler(self).fail("DOCTYPE is not allowed"); });
}

/// Expat follows the marks of the two-byte encodings whatever encoding it was told.
template <class Handler>
void XmlParser<Handler>::refuseOtherEncodings() {
    const auto byte = [&](std::size_t i) {
        return static_cast<unsigned char>(i < text_.size() ? text_[i] : ' ');
    };
    if (byte(0) >= 0xFE || byte(0) == 0 || byte(1) == 0) {
        fail("the text is not UTF-8");
    }
}

/// `line L, column C` of a byte, both from 1; CR LF, LF and CR alone end a line, columns are bytes. Expat's
/// own columns count characters.
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
