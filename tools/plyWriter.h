// The mesh as a binary PLY file: vertices in double precision, triangles, and the
// colour of each triangle's material where the model has materials.
#pragma once

#include "modelAccess.h"
#include "outputFile.h"

namespace obj_adapter::tool {

// Every vertex is written, used or not, so that indices stay those of the model;
// coordinates that are no finite numbers are written as 0. Faces that are not
// drawable are left out.
void writePly(OutputFile& file, const ModelAccess& model);

}  // namespace obj_adapter::tool
