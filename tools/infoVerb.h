// The verb that imports a file and tells what is in it.
#pragma once

#include "importRun.h"
#include "verb.h"

namespace obj_adapter::tool {

class InfoVerb : public Verb {
public:
    void addTo(CLI::App& program) override;
    int run() override;

private:
    ImportSettings settings;
    bool json = false;
    bool showAll = false;
};

}  // namespace obj_adapter::tool
