#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <HBXCommon/HBXExport.h>

namespace HBX {

/// A reference of some type: "TYPE://PATH". The first "://" splits; nothing is escaped.
class HBX_EXPORT HBXURI {
public:
    HBXURI() = default;
    explicit HBXURI(std::string_view text) { uri(text); }

    /// What stands before "://".
    [[nodiscard]] const std::string& type() const { return type_; }
    void type(std::string value) { type_ = std::move(value); }
    /// What stands behind it.
    [[nodiscard]] const std::string& path() const { return path_; }
    void path(std::string value) { path_ = std::move(value); }

    /// The whole text.
    [[nodiscard]] std::string uri() const { return type_ + "://" + path_; }
    /// A text without "://" leaves both parts empty.
    void uri(std::string_view text);
    /// Whether the type is not empty and made of ASCII letters, digits, "+", "-" and "." only.
    [[nodiscard]] bool isValid() const;

private:
    std::string type_;
    std::string path_;
};

} // namespace HBX
