#include "Side.h"

#include <string_view>

#include <libxml/parser.h>

namespace HBX::bench {
namespace {

const xmlNode* childOf(const xmlNode* parent, std::string_view name) {
    const xmlNode* child = parent->children;
    while (child != nullptr &&
           (child->type != XML_ELEMENT_NODE || reinterpret_cast<const char*>(child->name) != name)) {
        child = child->next;
    }
    return child;
}

/// Walks by hand: the library's own way by path, XPath, takes many times as long.
class Libxml2Side final : public Side {
public:
    std::string address(const Name& name) const override {
        return "data/" + name.section + "/configuration/" + name.setting;
    }
    bool open(const std::string& file) override {
        document_.reset(xmlReadFile(file.c_str(), nullptr, XML_PARSE_NOBLANKS));
        return document_ != nullptr;
    }
    bool read(const std::string& address, std::string& text) override {
        const xmlNode* node = xmlDocGetRootElement(document_.get());
        for (std::string_view path = address; node != nullptr && !path.empty();) {
            const std::size_t end = std::min(path.find('/'), path.size());
            node = childOf(node, path.substr(0, end));
            path.remove_prefix(std::min(end + 1, path.size()));
        }
        if (node == nullptr) {
            return false;
        }
        const xmlNode* content = node->children;
        text = content != nullptr ? reinterpret_cast<const char*>(content->content) : "";
        return true;
    }

private:
    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document_{nullptr, &xmlFreeDoc};
};

} // namespace

std::unique_ptr<Side> makeLibxml2() { return std::make_unique<Libxml2Side>(); }

} // namespace HBX::bench
