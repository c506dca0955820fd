// What --help prints.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace obj_adapter::tool {

// What the program is for, in one sentence.
extern const char* const PROGRAM_DESCRIPTION;

// Lines of calls, each with two blanks in front.
extern const char* const PROGRAM_EXAMPLES;

// Of a verb, or of the program as a whole.
std::string makeHelp(const CLI::App& command);

}  // namespace obj_adapter::tool
