#include "OptionList.h"

#include <boost/program_options/cmdline.hpp>

namespace HBX::tool {

namespace {

namespace po = boost::program_options;

/// The parser's own words for a value are its name and, behind it, its default: "N (=5)".
void splitValue(const std::string& words, OptionText& option) {
    const std::size_t mark = words.find(" (=");
    option.value = words.substr(0, mark);
    if (mark != std::string::npos) {
        option.fallback = words.substr(mark + 3, words.size() - mark - 4);
    }
}

} // namespace

po::options_description optionsOf(const Command& command) {
    po::options_description options;
    command.declareOptions(options.add_options());
    options.add_options()("help", "show this help");
    return options;
}

std::vector<OptionText> optionTexts(const Command& command) {
    const po::options_description options = optionsOf(command);
    std::vector<OptionText> texts;
    for (const auto& option : options.options()) {
        OptionText text{"--" + option->long_name(), "", "", "", option->description()};
        if (const std::string brief =
                option->canonical_display_name(po::command_line_style::allow_dash_for_short);
            brief != option->long_name()) {
            text.brief = brief;
        }
        if (option->semantic()->max_tokens() != 0) {
            splitValue(option->semantic()->name(), text);
        }
        texts.push_back(std::move(text));
    }
    return texts;
}

std::string callOf(const OptionText& option) {
    return (option.brief.empty() ? "" : option.brief + ", ") + option.name +
           (option.value.empty() ? "" : ' ' + option.value);
}

} // namespace HBX::tool
