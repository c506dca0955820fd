// The verb that imports files and tells what is wrong with them.
#pragma once

#include "importRun.h"
#include "verb.h"

#include <string>
#include <vector>

namespace obj_adapter::tool {

class CheckVerb : public Verb {
public:
    void addTo(CLI::App& program) override;
    int run() override;

private:
    ImportSettings settings;
    std::vector<std::string> fileNames;
    bool json = false;
    bool showAll = false;
};

}  // namespace obj_adapter::tool
