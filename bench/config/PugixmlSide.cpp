#include "Side.h"

#include <pugixml.hpp>

namespace HBX::bench {
namespace {

class PugixmlSide final : public Side {
public:
    std::string address(const Name& name) const override {
        return "message/data/" + name.section + "/configuration/" + name.setting;
    }
    bool open(const std::string& file) override { return document_.load_file(file.c_str()); }
    bool read(const std::string& address, std::string& text) override {
        const pugi::xml_node node = document_.first_element_by_path(address.c_str());
        text = node.text().get();
        return !node.empty();
    }

private:
    pugi::xml_document document_;
};

} // namespace

std::unique_ptr<Side> makePugixml() { return std::make_unique<PugixmlSide>(); }

} // namespace HBX::bench
