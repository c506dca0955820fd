// The command line of the program: its verbs and what is said about them.
#pragma once

#include <memory>
#include <vector>

namespace CLI {
class App;
}

namespace obj_adapter::tool {

class Verb;

class CommandLine {
public:
    CommandLine();
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    // Reads the arguments and runs the verb; returns the program's exit code.
    int run(int argc, const char* const* argv);

private:
    std::unique_ptr<CLI::App> app;
    std::vector<std::unique_ptr<Verb>> verbs;
};

}  // namespace obj_adapter::tool
