#include "Outline.h"

#include <functional>
#include <memory>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include "Failure.h"
#include "MessageFile.h"

namespace HBX::tool {

namespace {

/// With the prefix, as written.
std::string nameOf(const xmlNs* ns, const xmlChar* name) {
    const auto* local = reinterpret_cast<const char*>(name);
    return ns == nullptr ? local : std::string(reinterpret_cast<const char*>(ns->prefix)) + ":" + local;
}

std::string_view contentOf(const xmlNode* node) {
    return node == nullptr ? "" : reinterpret_cast<const char*>(node->content);
}

void addAttributes(Outline& element, const xmlNode& node) {
    for (const xmlAttr* attribute = node.properties; attribute != nullptr; attribute = attribute->next) {
        const std::string key = nameOf(attribute->ns, attribute->name);
        if (key == "hbx:kind" || key == "hbx:enc") {
            element.value = ""; // there is a value, even if no text follows
        }
        element.attributes.emplace_back(key, contentOf(attribute->children));
    }
}

std::size_t hashOf(const Outline& element) {
    std::size_t hash = std::hash<std::string>()(element.tag);
    const auto add = [&hash](std::size_t more) { hash = hash * 31 + more; };
    for (const auto& [key, value] : element.attributes) {
        add(std::hash<std::string>()(key));
        add(std::hash<std::string>()(value));
    }
    add(std::hash<std::optional<std::string>>()(element.value));
    for (const Outline& child : element.children) {
        add(child.hash);
    }
    return hash;
}

/// The text is our own, so it holds nothing but elements and texts, and is not nested too deeply to recurse.
Outline outlineOf(const xmlNode& node) {
    Outline element;
    element.tag = nameOf(node.ns, node.name);
    addAttributes(element, node);
    for (const xmlNode* child = node.children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) {
            element.children.push_back(outlineOf(*child));
        } else {
            element.value = element.value.value_or("").append(contentOf(child));
        }
    }
    element.hash = hashOf(element);
    return element;
}

} // namespace

Outline outlineOf(const std::string& path, const HBXMessageIterator& element) {
    const std::string text = elementText(path, element, 0);
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                      XML_PARSE_HUGE | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        &xmlFreeDoc);
    if (document == nullptr) {
        throw Failure(ExitCode::InvalidInput, path + ": " + xmlGetLastError()->message);
    }
    return outlineOf(*xmlDocGetRootElement(document.get()));
}

nlohmann::ordered_json toJson(const Outline& outline) {
    nlohmann::ordered_json json{{"name", outline.tag}};
    for (const auto& [key, value] : outline.attributes) {
        json["attributes"][key] = value;
    }
    if (outline.value) {
        json["value"] = *outline.value;
    }
    for (const Outline& child : outline.children) {
        json["children"].push_back(toJson(child));
    }
    return json;
}

} // namespace HBX::tool
