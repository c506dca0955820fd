// The triangles as a binary STL file.
#pragma once

#include "modelAccess.h"
#include "outputFile.h"

namespace obj_adapter::tool {

// The format has single precision: faces with a coordinate beyond it are left
// out, as those are that are not drawable. Returns how many were written.
int writeStl(OutputFile& file, const ModelAccess& model);

}  // namespace obj_adapter::tool
