#pragma once

#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace HBX::bench {

/// Where pugixml saves to: a text in memory whose room is used again.
class StringWriter final : public pugi::xml_writer {
public:
    void write(const void* data, std::size_t size) override {
        text_.append(static_cast<const char*>(data), size);
    }
    void clear() { text_.clear(); }
    [[nodiscard]] std::string_view view() const { return text_; }

private:
    std::string text_;
};

} // namespace HBX::bench
