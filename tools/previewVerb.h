// The verb that draws a picture of a model.
#pragma once

#include "importRun.h"
#include "pictureOptions.h"
#include "verb.h"

#include <string>

namespace obj_adapter::tool {

class PreviewVerb : public Verb {
public:
    void addTo(CLI::App& program) override;
    int run() override;

private:
    ImportSettings settings;
    PictureOptions options;
    std::string outputName;
};

}  // namespace obj_adapter::tool
