// Other libraries that subdivide by Loop's scheme, in doubles, and one that merges
// vertices.
#pragma once

#include "measuring/contender.h"

namespace obj_adapter::bench {

// MESH TRIANGLES ROUNDS: one part, "rounds": the topology of all rounds is made and
// refined, with the positions of each.
void subdivideWithOpenSubdiv(const Arguments& arguments, Measured& measured);

// MESH TRIANGLES ROUNDS: the parts "build", which makes the library's mesh, then
// "round 1", "round 2", ...
void subdivideWithOpenMesh(const Arguments& arguments, Measured& measured);
void subdivideWithCgal(const Arguments& arguments, Measured& measured);

// INPUT COUNT: meshoptimizer finds equal positions by a hash table and copies the
// different ones into a table of their own. They are not sorted.
void mergeWithMeshoptimizer(const Arguments& arguments, Measured& measured);

}  // namespace obj_adapter::bench
