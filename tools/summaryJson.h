// What is in an imported model, for another program.
#pragma once

#include "jsonOutput.h"
#include "modelAccess.h"

namespace obj_adapter::tool {

Json summaryToJson(const ModelAccess& model, const ImportRun& importRun,
                   const std::string& fileName);

}  // namespace obj_adapter::tool
