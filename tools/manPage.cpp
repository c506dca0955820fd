// Writes the man page. Covered by tests/tools/generatedTexts.cmake.
#include "manPage.h"

#include "commandTexts.h"
#include "helpText.h"
#include "programVersion.h"

#include <CLI/CLI.hpp>

namespace obj_adapter::tool {

namespace {

// A backslash and a hyphen have a meaning of their own, and so have a point and an
// apostrophe at the beginning of a line.
std::string escaped(const std::string& text) {
    std::string result = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
    for (const char byte : text) {
        if (byte == '\\')
            result += "\\e";
        else if (byte == '-')
            result += "\\-";
        else
            result += byte;
    }
    return result;
}

std::string headOf(const OptionText& option) {
    std::string head;
    for (const std::string& name : option.names)
        head += (head.empty() ? "" : ", ") + std::string("\\fB") + escaped(name) + "\\fR";
    if (!option.value.empty())
        head += (head.empty() ? "" : " ") + std::string("\\fI") + escaped(option.value) + "\\fR";
    return head;
}

std::string entry(const OptionText& option) {
    return ".TP\n" + headOf(option) + "\n" + escaped(option.description) + "\n";
}

std::string sectionOf(const CommandTexts& verb) {
    std::string text = ".SS " + escaped(usageOf(verb)) + "\n" + escaped(verb.description) + ".\n";
    for (const OptionText& file : verb.files)
        text += entry(file);
    for (const OptionGroup& group : verb.groups) {
        // The import's options are the same for every verb.
        if (group.title == "Import")
            continue;
        for (const OptionText& option : group.options)
            text += option.names.back() == "--help" ? "" : entry(option);
    }
    return text;
}

std::string generalSectionOf(const CommandTexts& program) {
    std::string text = ".SH OPTIONS\n";
    for (const OptionGroup& group : program.groups) {
        for (const OptionText& option : group.options)
            text += entry(option);
    }
    return text + ".PP\nBehind a verb, \\fB\\-\\-help\\fR tells of that verb alone.\n";
}

std::string importSectionOf(const CommandTexts& verb) {
    std::string text = ".SH OPTIONS OF THE IMPORT\nEvery verb takes these.\n";
    for (const OptionGroup& group : verb.groups) {
        for (const OptionText& option : group.options)
            text += group.title == "Import" ? entry(option) : "";
    }
    return text;
}

}  // namespace

std::string makeManPage(const CLI::App& program) {
    const std::vector<CommandTexts> verbs = describeVerbs(program);
    std::string text = R"(.TH OBJ_ADAPTER 1 "" ")" + getProgramVersion() + "\"\n";
    text += ".SH NAME\nobj_adapter \\- look at Wavefront OBJ files and convert them\n";
    text += ".SH SYNOPSIS\n";
    for (const CommandTexts& verb : verbs)
        text += ".B " + escaped(usageOf(verb)) + "\n.br\n";
    text += std::string(".SH DESCRIPTION\n") + escaped(PROGRAM_DESCRIPTION) + "\n";
    text += ".SH VERBS\n";
    for (const CommandTexts& verb : verbs)
        text += sectionOf(verb);
    text += importSectionOf(verbs.front());
    text += generalSectionOf(describeCommand(program));
    text +=
        ".SH EXIT STATUS\n"
        ".TP\n0\nSuccess; for check: nothing wrong.\n"
        ".TP\n1\nFailure: a file could not be imported or written; for check: errors.\n"
        ".TP\n2\nThe command line is wrong.\n"
        ".TP\n3\nCheck found warnings only.\n"
        ".TP\n130\nInterrupted by Ctrl\\-C: the import was cancelled and nothing was written.\n";
    text +=
        ".SH ENVIRONMENT\n.TP\n.B NO_COLOR\nIf set and not empty, nothing is coloured.\n"
        ".TP\n.B OBJ_ADAPTER_PROGRESS_WAIT\nMilliseconds until an import shows on a terminal how "
        "far it is; 500 if not set.\n";
    text += std::string(".SH EXAMPLES\n.nf\n") + escaped(PROGRAM_EXAMPLES) + ".fi\n";
    return text;
}

}  // namespace obj_adapter::tool
