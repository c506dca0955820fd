// Help for people at a terminal. Covered by tests/tools.
#include "helpText.h"

#include "commandTexts.h"
#include "terminalText.h"

#include <CLI/CLI.hpp>

namespace obj_adapter::tool {

const char* const PROGRAM_DESCRIPTION =
    "Looks at Wavefront OBJ files: what is in them, what is wrong with them, what they look "
    "like; and writes them in other formats.";

const char* const PROGRAM_EXAMPLES =
    "  obj_adapter info house.obj\n"
    "  obj_adapter tree house.obj\n"
    "  obj_adapter check *.obj --json\n"
    "  obj_adapter convert house.obj house.glb\n"
    "  obj_adapter preview house.obj -o house.png\n";

namespace {

constexpr std::size_t LINE_WIDTH = 80;
constexpr std::size_t TEXT_COLUMN = 28;

// Breaks the text at blanks; all lines but the first are indented.
std::string wrapped(const std::string& text, std::size_t indent) {
    std::string lines;
    std::size_t column = indent;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t blank = std::min(text.find(' ', begin), text.size());
        const std::string word = text.substr(begin, blank - begin);
        if (column > indent && column + 1 + word.size() > LINE_WIDTH) {
            lines += "\n" + std::string(indent, ' ');
            column = indent;
        } else if (column > indent) {
            lines += " ";
            ++column;
        }
        lines += word;
        column += word.size();
        begin = blank + 1;
    }
    return lines + "\n";
}

// "  -o, --output OUT.png     The PNG file to write"; a long first part has a line
// of its own.
std::string entry(const std::string& first, const std::string& description) {
    std::string text = "  " + first;
    if (text.size() + 2 > TEXT_COLUMN)
        text += "\n" + std::string(TEXT_COLUMN, ' ');
    else
        text = textColumn(text, TEXT_COLUMN);
    return text + wrapped(description, TEXT_COLUMN);
}

std::string namesOf(const OptionText& option) {
    std::string names;
    for (const std::string& name : option.names)
        names += (names.empty() ? "" : ", ") + name;
    if (!option.value.empty())
        names += (names.empty() ? "" : " ") + option.value;
    return names;
}

std::string optionsOf(const CommandTexts& command) {
    std::string text;
    for (const OptionGroup& group : command.groups) {
        text += "\n" + group.title + ":\n";
        for (const OptionText& option : group.options)
            text += entry(namesOf(option), option.description);
    }
    return text;
}

std::string helpOfVerb(const CommandTexts& verb) {
    std::string text = wrapped(verb.description + ".", 0) + "\nUsage: " + usageOf(verb) + "\n\n";
    for (const OptionText& file : verb.files)
        text += entry(file.value, file.description);
    return text + optionsOf(verb);
}

std::string helpOfProgram(const CLI::App& program) {
    std::string text =
        wrapped(PROGRAM_DESCRIPTION, 0) + "\nUsage: obj_adapter VERB [OPTIONS] FILE...\n\nVerbs:\n";
    for (const CommandTexts& verb : describeVerbs(program))
        text += entry(verb.name, verb.description);
    text += optionsOf(describeCommand(program));
    text += std::string("\nExamples:\n") + PROGRAM_EXAMPLES;
    text += "\n" + wrapped(
                       "obj_adapter VERB --help tells the options of a verb. Data goes to the "
                       "standard output, messages to the error output. Exit codes: 0 success, "
                       "1 failure, 2 wrong command line, 3 check found warnings only, 130 "
                       "interrupted.",
                       0);
    return text;
}

}  // namespace

std::string makeHelp(const CLI::App& command) {
    return command.get_parent() == nullptr ? helpOfProgram(command)
                                           : helpOfVerb(describeCommand(command));
}

}  // namespace obj_adapter::tool
