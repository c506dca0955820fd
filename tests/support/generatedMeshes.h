// Meshes of every kind from a seed, for comparing with the slow twins.
#pragma once

#include "support/randomSource.h"
#include "support/testMeshes.h"

#include <string>

namespace obj_adapter::test {

// One of many shapes, manifold or not, in small.
Mesh randomMesh(RandomSource& random);

// Any triangles over few points: edges of many faces, bow ties, loose points.
Mesh randomTriangles(RandomSource& random);

int addTexturePoint(ObjModel& model, double u, double v, double w = 0);

// Gives the faces groups, materials, normals and texture points at random.
void decorateFaces(ObjModel& model, RandomSource& random);

// The model checker's findings on such a model, subdivided.
std::string findViolationsAfter(ObjModel& model);

}  // namespace obj_adapter::test
