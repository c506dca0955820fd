// One thing that the program can do: a subcommand of the command line.
#pragma once

namespace CLI {
class App;
}

namespace obj_adapter::tool {

class Verb {
public:
    Verb() = default;
    virtual ~Verb() = default;
    Verb(const Verb&) = delete;
    Verb& operator=(const Verb&) = delete;

    // Adds the subcommand. Its options write into this object, which must
    // outlive the command line.
    virtual void addTo(CLI::App& program) = 0;

    // Runs after the command line was read; returns the program's exit code.
    virtual int run() = 0;
};

}  // namespace obj_adapter::tool
