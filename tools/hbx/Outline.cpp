#include "Outline.h"

#include <functional>
#include <memory>

#include <expat.h>

#include "Failure.h"
#include "MessageFile.h"

namespace HBX::tool {

namespace {

/// Takes the events of the parser. The text is our own, so it needs no care for what else XML can hold.
class Builder {
public:
    Builder() { open_.emplace_back(); }

    void start(const char* tag, const char** attributes) {
        Outline& element = open_.emplace_back();
        element.tag = tag;
        for (; *attributes != nullptr; attributes += 2) {
            addAttribute(element, attributes[0], attributes[1]);
        }
    }

    void text(std::string_view piece) {
        std::optional<std::string>& value = open_.back().value;
        value ? value->append(piece) : value.emplace(piece);
    }

    void end() {
        Outline element = std::move(open_.back());
        open_.pop_back();
        element.hash = hashOf(element);
        open_.back().children.push_back(std::move(element));
    }

    Outline take() { return std::move(open_.front().children.front()); }

private:
    static void addAttribute(Outline& element, const std::string& key, const char* value) {
        if (key == "xmlns:hbx") {
            return; // the same everywhere
        }
        if (key == "hbx:kind" || key == "hbx:enc") {
            element.value = ""; // there is a value, even if no text follows
        }
        element.attributes.emplace_back(key, value);
    }

    static std::size_t hashOf(const Outline& element) {
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

    std::vector<Outline> open_; ///< elements not yet ended, the outermost being the document's place
};

Builder& builder(void* user) { return *static_cast<Builder*>(user); }

} // namespace

Outline outlineOf(const std::string& path, const HBXMessageIterator& element) {
    const std::string text = elementText(path, element, 0);
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                              &XML_ParserFree);
    Builder result;
    XML_SetUserData(parser.get(), &result);
    XML_SetElementHandler(
        parser.get(),
        [](void* user, const char* tag, const char** attributes) { builder(user).start(tag, attributes); },
        [](void* user, const char*) { builder(user).end(); });
    XML_SetCharacterDataHandler(parser.get(), [](void* user, const char* piece, int length) {
        builder(user).text({piece, static_cast<std::size_t>(length)});
    });
    if (XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) != XML_STATUS_OK) {
        throw Failure(ExitCode::InvalidInput, path + ": " + XML_ErrorString(XML_GetErrorCode(parser.get())));
    }
    return result.take();
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
