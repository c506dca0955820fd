// Reads the command line's own description. Covered by tests/tools.
#include "commandTexts.h"

#include <CLI/CLI.hpp>

namespace obj_adapter::tool {

namespace {

OptionText describeOption(const CLI::Option& option) {
    OptionText text;
    for (const std::string& name : option.get_snames())
        text.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        text.names.push_back("--" + name);
    if (option.get_type_size() != 0)
        text.value = option.get_type_name();
    text.description = option.get_description();
    text.isRequired = option.get_required();
    return text;
}

}  // namespace

CommandTexts describeCommand(const CLI::App& command) {
    CommandTexts texts;
    texts.name = command.get_name();
    texts.description = command.get_description();
    for (const std::string& title : command.get_groups())
        texts.groups.push_back({title, {}});
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional()) {
            texts.files.push_back(describeOption(*option));
            continue;
        }
        // An option without a group is not for people.
        for (OptionGroup& group : texts.groups) {
            if (!group.title.empty() && group.title == option->get_group())
                group.options.push_back(describeOption(*option));
        }
    }
    std::erase_if(texts.groups, [](const OptionGroup& group) { return group.options.empty(); });
    return texts;
}

std::vector<CommandTexts> describeVerbs(const CLI::App& program) {
    std::vector<CommandTexts> verbs;
    for (const CLI::App* command : program.get_subcommands({}))
        verbs.push_back(describeCommand(*command));
    return verbs;
}

std::string usageOf(const CommandTexts& command) {
    std::string usage = "obj_adapter " + command.name + " [OPTIONS]";
    for (const OptionText& file : command.files)
        usage += " " + file.value;
    for (const OptionGroup& group : command.groups) {
        for (const OptionText& option : group.options)
            usage += option.isRequired ? " " + option.names.front() + " " + option.value : "";
    }
    return usage;
}

}  // namespace obj_adapter::tool
