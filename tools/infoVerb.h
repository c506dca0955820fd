// The verb that imports a file and tells what is in it.
//
// A verb adds its options to a command of the command line and runs when the
// line is read. While this is the only one, its command is the program itself;
// with a second one, each gets a subcommand.
#pragma once

#include "importRun.h"

namespace CLI {
class App;
}

namespace obj_adapter::tool {

class InfoVerb {
public:
    // The options write into this object, which must outlive the command.
    void addOptions(CLI::App& command);

    // Returns the program's exit code.
    int run() const;

private:
    ImportSettings settings;
    bool showAll = false;
};

}  // namespace obj_adapter::tool
