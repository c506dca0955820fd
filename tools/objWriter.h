// The processed mesh as OBJ and MTL files.
#pragma once

#include "modelAccess.h"
#include "outputFile.h"

#include <string>

namespace obj_adapter::tool {

// Vertices, texture points and normals keep their numbers; coordinates that are
// no finite numbers are written as 0, and faces that are not drawable are left
// out. Numbers are as short as reading them back to the same bits allows.
//
// libraryName  the MTL file that is written beside; empty for none
void writeObj(OutputFile& file, const ModelAccess& model, const std::string& libraryName);

// All materials. A model that has faces with and without a material gets one more
// at the end, with nothing but a name, for those without: no statement takes a
// material off again.
void writeMtl(OutputFile& file, const ModelAccess& model);

// Whether there is anything for an MTL file.
inline bool hasMaterials(const ModelAccess& model) {
    return model.getNumberOfMaterials() > 0;
}

}  // namespace obj_adapter::tool
