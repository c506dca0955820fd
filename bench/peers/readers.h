// Other readers of OBJ files, as Debian packages them. Each takes a file's name.
#pragma once

#include "measuring/contender.h"

namespace obj_adapter::bench {

// tinyobjloader, doubles, polygons triangulated.
void readWithTinyObjLoader(const Arguments& arguments, Measured& measured);

// assimp, polygons triangulated; the second also joins identical vertices.
void readWithAssimp(const Arguments& arguments, Measured& measured);
void readAndJoinWithAssimp(const Arguments& arguments, Measured& measured);

// OpenMesh, into a triangle mesh with half-edges.
void readWithOpenMesh(const Arguments& arguments, Measured& measured);

}  // namespace obj_adapter::bench
