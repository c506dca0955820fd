// The man page and the completion for bash, made from the command line.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace obj_adapter::tool {

// In the language of man(7).
std::string makeManPage(const CLI::App& program);

std::string makeBashCompletion(const CLI::App& program);

}  // namespace obj_adapter::tool
