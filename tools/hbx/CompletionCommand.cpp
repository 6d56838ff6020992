#include "Command.h"

#include <algorithm>

#include "Areas.h"
#include "Console.h"
#include "HelpText.h"
#include "OptionList.h"

namespace HBX::tool {

namespace {

constexpr const char* kHead = R"(# Completion of hbx for bash, printed by "hbx completion bash".

# What can follow, by the words before: area, verb, an option that has a value. "@file" stands for all files.
declare -gA _hbx_next=(
)";

constexpr const char* kTail = R"()

_hbx() {
    local current=${COMP_WORDS[COMP_CWORD]} last=$((COMP_CWORD - 1)) key=hbx word i
    if [[ $current == '=' ]]; then # of "--to=x" bash makes three words
        current=''
    elif [[ ${COMP_WORDS[last]} == '=' ]]; then
        last=$((last - 1))
    fi
    for ((i = 1; i <= last; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word == -* || -z ${_hbx_next["$key $word"]+known} ]]; then
            [[ $word != -* && ${_hbx_next[$key]} == [a-z]* ]] && return # no area or verb: nothing fits behind it
            break
        fi
        key+=" $word"
    done
    if [[ ${COMP_WORDS[last]} == -* && -n ${_hbx_next["$key ${COMP_WORDS[last]}"]+known} ]]; then
        key+=" ${COMP_WORDS[last]}"
    fi
    if [[ ${_hbx_next[$key]} == *@file* && $current != -* ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "${_hbx_next[$key]}" -- "$current")
    fi
}
complete -F _hbx hbx
)";

constexpr const char* kFileWord = "@file";

std::string row(const std::string& words, const std::string& next) {
    return "    ['" + words + "']='" + next + "'\n";
}

/// What an option's value can be; "" when that cannot be listed.
std::string valuesOf(const OptionText& option) {
    if (option.value == "FILE") {
        return kFileWord;
    }
    std::string values = option.value.find('|') == std::string::npos ? "" : option.value;
    std::replace(values.begin(), values.end(), '|', ' ');
    return values;
}

std::string rowsOf(const Command& command) {
    const std::string name = nameOf(command);
    const bool takesFiles = std::string_view(command.operands).find("FILE") != std::string_view::npos;
    std::string next = takesFiles ? std::string(kFileWord) + ' ' : "";
    std::string rows;
    for (const OptionText& option : optionTexts(command)) {
        next += option.name + ' ';
        if (option.value.empty()) {
            continue;
        }
        rows += row(name + ' ' + option.name, valuesOf(option));
        if (!option.brief.empty()) {
            rows += row(name + ' ' + option.brief, valuesOf(option));
        }
    }
    next.pop_back();
    return row(name, next) + rows;
}

std::string rowsOf(const Area& area) {
    std::string verbs;
    std::string rows;
    for (const Command& command : area.commands()) {
        verbs += std::string(command.verb) + ' ';
        rows += rowsOf(command);
    }
    if (isVerbItself(area)) {
        return rows;
    }
    return row(std::string("hbx ") + area.name, verbs + "--help") +
           row(std::string("hbx help ") + area.name, verbs) + rows;
}

std::string tableRows() {
    std::string names;
    std::string rows;
    for (const Area& area : areas()) {
        names += std::string(area.name) + ' ';
        rows += rowsOf(area);
    }
    // Bash keeps the last row of several for the same words: "help" takes areas, not only options.
    return rows + row("hbx", names + "--help --options --version") + row("hbx --options", kFileWord) +
           row("hbx help", names + kExitCodesTopic + " --man --help");
}

ExitCode bash(const Arguments&) {
    print(kHead + tableRows() + kTail);
    return ExitCode::Ok;
}

constexpr Command kCompletionCommands[] = {
    {"completion", "bash", "", "Prints a script that makes bash complete calls of this program.", 0, 0,
     [](boost::program_options::options_description_easy_init) {}, bash},
};

} // namespace

std::span<const Command> completionCommands() { return kCompletionCommands; }

} // namespace HBX::tool
