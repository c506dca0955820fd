// The verb that imports a file and shows the tree of its group names.
#pragma once

#include "importRun.h"
#include "verb.h"

namespace obj_adapter::tool {

class TreeVerb : public Verb {
public:
    void addTo(CLI::App& program) override;
    int run() override;

private:
    ImportSettings settings;
    bool json = false;
    bool showAll = false;
};

}  // namespace obj_adapter::tool
