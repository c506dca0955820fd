// The triangulation of polygons done step by step, with every list computed
// anew in every pass. Cubic in the number of corners: for comparison in tests,
// never for the library.
#pragma once

#include "model/objModel.h"

#include <obj_adapter/geometryRecords.h>

#include <vector>

namespace obj_adapter::test::slow {

// Three doubles subtracted; the record serves as a vector, its index is -1.
NormalPoint difference(const Vertex& end, const Vertex& start);
NormalPoint crossProduct(const NormalPoint& a, const NormalPoint& b);
double dotProduct(const NormalPoint& a, const NormalPoint& b);

bool isCoplanar(const Vertex& p0, const Vertex& p1, const Vertex& p2, const Vertex& p3);
bool isPointInTriangle(const Vertex& p, const Vertex& a, const Vertex& b, const Vertex& c);

bool isTriangulable(const ObjModel& model, const std::vector<FaceElement>& corners);
void computeCornerNormals(const ObjModel& model, const std::vector<FaceElement>& corners,
                          std::vector<NormalPoint>& normals);

// Both lists are empty on entry. std::runtime_error for a straight line.
void classifyCorners(const ObjModel& model, const std::vector<FaceElement>& corners,
                     std::vector<int>& convex, std::vector<int>& reflex);

void fanTriangulate(const std::vector<FaceElement>& corners, std::vector<Face>& triangles);

// Corners are removed from the list. std::logic_error after more passes than
// there are corners: only passes without an ear bring it there, and those never
// end.
void clipEars(const ObjModel& model, std::vector<FaceElement>& corners,
              std::vector<Face>& triangles);

void triangulate(const ObjModel& model, std::vector<FaceElement>& corners,
                 std::vector<Face>& triangles);

}  // namespace obj_adapter::test::slow
