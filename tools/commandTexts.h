// The command line as texts: help, man page and completion are made from these,
// so that none can fall behind the options that there are.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace obj_adapter::tool {

struct OptionText {
    std::vector<std::string> names;  // "-o", "--output"; none for a file
    std::string value;               // "DEGREES"; empty for a flag
    std::string description;
    bool isRequired = false;
};

struct OptionGroup {
    std::string title;
    std::vector<OptionText> options;
};

struct CommandTexts {
    std::string name;  // "info"; that of the program for the program itself
    std::string description;
    std::vector<OptionText> files;  // in the order of the command line
    std::vector<OptionGroup> groups;
};

CommandTexts describeCommand(const CLI::App& command);

// The verbs in their order.
std::vector<CommandTexts> describeVerbs(const CLI::App& program);

// "obj_adapter info [OPTIONS] FILE.obj"; what is required stands at the end.
std::string usageOf(const CommandTexts& command);

}  // namespace obj_adapter::tool
