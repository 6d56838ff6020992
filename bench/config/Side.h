#pragma once

#include <memory>
#include <string>
#include <vector>

namespace HBX::bench {

/// A setting of a section, told by its names.
struct Name {
    std::string section;
    std::string setting;
};

/// One library that reads configurations. What `read` needs for a name is made beforehand by `address`.
class Side {
public:
    virtual ~Side() = default;
    /// How the path of a setting is written here.
    [[nodiscard]] virtual std::string address(const Name& name) const = 0;
    /// Reads a file in place of the one before; false when it does not parse.
    virtual bool open(const std::string& file) = 0;
    /// The text of a setting of the open file; false when there is none.
    virtual bool read(const std::string& address, std::string& text) = 0;
};

std::unique_ptr<Side> makeHbx();
std::unique_ptr<Side> makeLibconfig();
std::unique_ptr<Side> makeLibxml2();
std::unique_ptr<Side> makePropertyTree();
std::unique_ptr<Side> makePugixml();

} // namespace HBX::bench
