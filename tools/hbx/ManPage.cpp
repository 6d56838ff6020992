#include "ManPage.h"

#include "ExitCodes.h"
#include "HelpText.h"
#include "OptionList.h"

namespace HBX::tool {

namespace {

/// Text as troff prints it unchanged. Hyphens are such that a copied call works.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const bool isControl = result.empty() && (c == '.' || c == '\'');
        result += isControl   ? std::string("\\&") + c
                  : c == '\\' ? "\\e"
                  : c == '-'  ? "\\-"
                              : std::string(1, c);
    }
    return result;
}

std::string section(const char* title) { return std::string(".SH ") + title + '\n'; }

/// A term and, set in below it, what it means.
std::string item(const std::string& term, const std::string& meaning) {
    return ".TP\n\\fB" + escaped(term) + "\\fR\n" + escaped(meaning) + '\n';
}

std::string describe(const Command& command) {
    std::string text = ".SS " + escaped(callOf(command)) + '\n' + escaped(command.summary) + '\n';
    for (const OptionText& option : optionTexts(command)) {
        const std::string fallback = option.fallback.empty() ? "" : " (default: " + option.fallback + ')';
        text += item(callOf(option), option.description + fallback);
    }
    return text;
}

std::string commandSections() {
    std::string text = section("COMMANDS");
    for (const Area& area : areas()) {
        for (const Command& command : area.commands()) {
            text += describe(command);
        }
    }
    return text;
}

std::string exitSection() {
    std::string text = section("EXIT STATUS");
    for (const ExitCodeRow& row : exitCodes()) {
        text += item(std::to_string(static_cast<int>(row.code)), row.meaning);
    }
    return text;
}

std::string environmentSection() {
    std::string text = section("ENVIRONMENT");
    for (const VariableRow& row : variables()) {
        text += item(row.name, row.meaning);
    }
    return text;
}

} // namespace

std::string manPage(const std::string& version) {
    return ".TH HBX 1 \"\" \"hbx " + version + "\" \"User Commands\"\n" + section("NAME") + "hbx \\- " +
           kPurpose + '\n' + section("SYNOPSIS") + ".B hbx\nAREA VERB [OPTIONS] ARGS...\n.br\n.B hbx\n" +
           escaped("--options FILE [MORE...]") + '\n' + section("DESCRIPTION") + escaped(kFiles) + '\n' +
           commandSections() + exitSection() + environmentSection();
}

} // namespace HBX::tool
