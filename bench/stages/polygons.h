// Polygons whose triangulation is measured.
#pragma once

#include "model/objModel.h"

#include <string>
#include <vector>

namespace obj_adapter::bench {

// Polygons over the vertices of one model, all of one kind.
struct PolygonSet {
    ObjModel model;
    std::vector<std::vector<FaceElement>> polygons;
};

// Kinds of any number of corners, one polygon each:
//   convex   around a circle
//   comb     teeth of many heights on a long back
//   saw      teeth that lean over, each over the valley beside it
//   spiral   a band wound many times around
//   blocked  an arc of convex corners, each blocked by a corner that comes late;
//            a triangulation that looks at all corners in every pass is cubic here
// Small ones, some thousand of each: quad, pentagon (convex), dart.
//
// Throws std::runtime_error for another kind.
void makePolygons(const std::string& kind, int corners, PolygonSet& set);

}  // namespace obj_adapter::bench
