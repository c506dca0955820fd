// The verb that writes a model in another format.
#pragma once

#include "importRun.h"
#include "verb.h"

#include <optional>
#include <string>

namespace obj_adapter::tool {

class ModelAccess;

class ConvertVerb : public Verb {
public:
    void addTo(CLI::App& program) override;
    int run() override;

private:
    void write(const ModelAccess& model, const ImportRun& importRun) const;
    int writeGlbFile(const ModelAccess& model, const ImportRun& importRun) const;
    void writeObjFiles(const ModelAccess& model, const ImportRun& importRun) const;

    ImportSettings settings;
    std::string outputName;
    std::optional<double> creaseAngle;
    bool bumpIsNormal = false;
};

}  // namespace obj_adapter::tool
