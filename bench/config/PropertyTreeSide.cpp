#include "Side.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

namespace HBX::bench {
namespace {

namespace pt = boost::property_tree;

class PropertyTreeSide final : public Side {
public:
    std::string address(const Name& name) const override {
        return "message/data/" + name.section + "/configuration/" + name.setting;
    }
    bool open(const std::string& file) override {
        pt::read_xml(file, tree_, pt::xml_parser::trim_whitespace);
        return true;
    }
    bool read(const std::string& address, std::string& text) override {
        const auto found = tree_.get_child_optional(pt::ptree::path_type(address, '/'));
        if (!found) {
            return false;
        }
        text = found->data();
        return true;
    }

private:
    pt::ptree tree_;
};

} // namespace

std::unique_ptr<Side> makePropertyTree() { return std::make_unique<PropertyTreeSide>(); }

} // namespace HBX::bench
