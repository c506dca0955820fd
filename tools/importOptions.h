// The options of an import, the same for every verb.
#pragma once

#include "importRun.h"

namespace CLI {
class App;
}

namespace obj_adapter::tool {

// Adds them in a group of their own; they write into the settings, which must
// outlive the command.
void addImportOptions(CLI::App& command, ImportSettings& settings);

// The one file of a verb that takes one.
void addInputFile(CLI::App& command, ImportSettings& settings);

}  // namespace obj_adapter::tool
