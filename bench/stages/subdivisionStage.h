// Contenders of subdivision: the library's rounds, and the floor below them.
#pragma once

#include "measuring/contender.h"

namespace obj_adapter::bench {

// MESH TRIANGLES ROUNDS [textured]; parts "round 1", "round 2", ...
void subdivideMesh(const Arguments& arguments, Measured& measured);

// FACES VERTICES TEXTURE_POINTS small|huge: writes tables of so many records, and
// a list of faces, once and in order, on fresh pages of either kind.
void writeTables(const Arguments& arguments, Measured& measured);

}  // namespace obj_adapter::bench
