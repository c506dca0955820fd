// Imports a text as a host would import a file.
#pragma once

#include "support/modelChecker.h"
#include "support/modelView.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace obj_adapter::test {

// The settings of an import; the defaults of the tests read only, so that the
// tables are what the file says.
struct ImportOptions {
    bool compaction = false;
    bool hierarchy = false;
    bool reverse = false;
    bool showLastNamesOnly = true;
    bool skipPolygonsWithoutEar = false;
    std::string limitType;
    int rounds = 0;
    std::string fileName = "test.obj";

    // Further files beside the OBJ file: name to content.
    std::map<std::string, std::string> otherFiles;
};

// What came of it. The converter keeps the model until the next import of a
// test.
struct ImportResult {
    int code = 0;
    ModelView model;

    // The messages between "Reading input file..." and "Done reading input.",
    // each "level|text" with a line feed after it. The test directory's path
    // stands as "{dir}".
    std::string readingMessages;

    // All of them.
    std::string allMessages;
};

// Imports into a fresh converter and checks the invariants of what came out.
ImportResult importText(const std::string& objText, const ImportOptions& options = {});

// Imports a file of the file system, with these settings, into a fresh
// converter, and checks the invariants.
ImportResult importFile(const std::string& fileName, const ImportOptions& options = {});

// What the state of the model must be after an import with these settings.
ModelState expectedState(int code, const ImportOptions& options);

}  // namespace obj_adapter::test
