// A model for tests of the program's parts: imports texts as its verbs do.
#pragma once

#include "importRun.h"
#include "modelAccess.h"
#include "support/temporaryDirectory.h"

#include <map>
#include <string>

namespace obj_adapter::test {

// The converter keeps the model until the next one of a test.
class ImportedText {
public:
    // The OBJ file is test.obj. otherFiles come beside it: name to content.
    explicit ImportedText(const std::string& objText,
                          const std::map<std::string, std::string>& otherFiles = {},
                          tool::ImportSettings settings = {});

    const tool::ModelAccess& getModel() const { return model; }
    const tool::ImportRun& getRun() const { return run; }
    const tool::ImportSettings& getSettings() const { return settings; }

    // With a slash at the end.
    const std::string& getFolder() const { return directory.getPath(); }

private:
    TemporaryDirectory directory;
    tool::ImportSettings settings;
    tool::ImportRun run;
    tool::ModelAccess model;
};

// Imports into a new converter and drops the messages.
tool::ImportRun importQuietly(const tool::ImportSettings& settings);

}  // namespace obj_adapter::test
