#pragma once

#include <string>
#include <vector>

#include <boost/program_options/options_description.hpp>

#include "Command.h"

namespace HBX::tool {

/// All options of a command, as the parser takes them.
boost::program_options::options_description optionsOf(const Command& command);

/// What help, manual and completion say of one option.
struct OptionText {
    std::string name;  ///< with its hyphens
    std::string brief; ///< the form of one letter, with its hyphen; "" when there is none
    /// What its value is called: "FILE"; "text|binary" when it is one of a few words; "" for a switch.
    std::string value;
    std::string fallback; ///< the value when it is not given; "" when there is none
    std::string description;
};

std::vector<OptionText> optionTexts(const Command& command);

/// "--output FILE"; the short form before it where there is one.
std::string callOf(const OptionText& option);

} // namespace HBX::tool
