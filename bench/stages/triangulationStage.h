// Contenders of triangulation: the library's, and the literal method.
#pragma once

#include "measuring/contender.h"

namespace obj_adapter::bench {

// KIND CORNERS POLYGONS: the part "triangulate" covers so many polygons of that
// kind, see stages/polygons.h. The second computes every list anew in every pass.
void triangulatePolygons(const Arguments& arguments, Measured& measured);
void triangulatePolygonsSlowly(const Arguments& arguments, Measured& measured);

// FILE: all its faces of four or more corners.
void triangulateFile(const Arguments& arguments, Measured& measured);

}  // namespace obj_adapter::bench
