#include "support/slowTriangulation.h"

#include "converter/messages.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>

namespace obj_adapter::test::slow {

namespace {

int sizeOf(const std::vector<FaceElement>& corners) {
    return static_cast<int>(corners.size());
}

const FaceElement& cornerAt(const std::vector<FaceElement>& corners, int corner) {
    return corners.at(static_cast<std::size_t>(corner));
}

const Vertex& positionOf(const ObjModel& model, const std::vector<FaceElement>& corners,
                         int corner) {
    const int vertex = cornerAt(corners, corner).getVertexIndex();
    return model.vertices.at(static_cast<std::size_t>(vertex));
}

Face triangleOf(const FaceElement& first, const FaceElement& second, const FaceElement& third) {
    Face triangle;
    triangle.addElement(first);
    triangle.addElement(second);
    triangle.addElement(third);
    return triangle;
}

bool equalsZero(double value) {
    return !(value < 0.0) && !(value > 0.0);
}

bool contains(const std::vector<int>& list, int value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

bool isEar(const ObjModel& model, const std::vector<FaceElement>& corners, int i) {
    const int n = sizeOf(corners);
    const int prev = (n - 1 + i) % n;
    const int next = (i + 1) % n;
    for (int j = 0; j < n; ++j) {
        if (j == prev || j == i || j == next)
            continue;
        if (isPointInTriangle(positionOf(model, corners, j), positionOf(model, corners, prev),
                              positionOf(model, corners, i), positionOf(model, corners, next)))
            return false;
    }
    return true;
}

// The first ear in corner order goes.
void runPass(const ObjModel& model, std::vector<FaceElement>& corners,
             const std::vector<int>& reflex, std::vector<Face>& triangles) {
    const int n = sizeOf(corners);
    for (int i = 0; i < n; ++i) {
        if (contains(reflex, i) || !isEar(model, corners, i))
            continue;
        triangles.push_back(triangleOf(cornerAt(corners, (n - 1 + i) % n), cornerAt(corners, i),
                                       cornerAt(corners, (i + 1) % n)));
        corners.erase(corners.begin() + i);
        return;
    }
}

}  // namespace

NormalPoint difference(const Vertex& end, const Vertex& start) {
    NormalPoint result;
    result.x = end.x - start.x;
    result.y = end.y - start.y;
    result.z = end.z - start.z;
    return result;
}

NormalPoint crossProduct(const NormalPoint& a, const NormalPoint& b) {
    NormalPoint result;
    result.x = a.y * b.z - a.z * b.y;
    result.y = a.z * b.x - a.x * b.z;
    result.z = a.x * b.y - a.y * b.x;
    return result;
}

double dotProduct(const NormalPoint& a, const NormalPoint& b) {
    return (a.y * b.y + a.x * b.x) + a.z * b.z;
}

bool isCoplanar(const Vertex& p0, const Vertex& p1, const Vertex& p2, const Vertex& p3) {
    const NormalPoint a = difference(p1, p0);
    const NormalPoint b = difference(p3, p2);
    const NormalPoint c = difference(p2, p0);
    return equalsZero(dotProduct(c, crossProduct(a, b)));
}

bool isPointInTriangle(const Vertex& p, const Vertex& a, const Vertex& b, const Vertex& c) {
    if (!isCoplanar(p, a, b, c))
        return false;
    const NormalPoint ab = difference(b, a);
    const NormalPoint ac = difference(c, a);
    const NormalPoint ap = difference(p, a);
    const double s00 = dotProduct(ab, ab);
    const double s01 = dotProduct(ab, ac);
    const double s11 = dotProduct(ac, ac);
    const double s20 = dotProduct(ap, ab);
    const double s21 = dotProduct(ap, ac);
    const double inv = 1.0 / (s11 * s00 - s01 * s01);
    const double v = (s21 * s00 - s20 * s01) * inv;
    const double u = (s20 * s11 - s21 * s01) * inv;
    if (!(1.0 - u - v >= 0.0))
        return false;
    if (!(u >= 0.0))
        return false;
    return v >= 0.0;
}

bool isTriangulable(const ObjModel& model, const std::vector<FaceElement>& corners) {
    for (const FaceElement& corner : corners) {
        if (corner.getVertexIndex() < 0 || corner.getVertexIndex() >= model.getNumberOfVertices())
            return false;
    }
    if (corners.size() == 1)
        return true;
    for (int i = 0; i < sizeOf(corners); ++i) {
        for (int j = i + 1; j < sizeOf(corners); ++j) {
            if (positionOf(model, corners, i) == positionOf(model, corners, j))
                return false;
        }
    }
    return true;
}

void computeCornerNormals(const ObjModel& model, const std::vector<FaceElement>& corners,
                          std::vector<NormalPoint>& normals) {
    normals.clear();
    const int n = sizeOf(corners);
    for (int i = 0; i < n; ++i) {
        const Vertex& previous = positionOf(model, corners, (i + n - 1) % n);
        const Vertex& corner = positionOf(model, corners, i);
        const Vertex& next = positionOf(model, corners, (i + 1) % n);
        normals.push_back(crossProduct(difference(corner, previous), difference(next, corner)));
    }
}

void classifyCorners(const ObjModel& model, const std::vector<FaceElement>& corners,
                     std::vector<int>& convex, std::vector<int>& reflex) {
    std::vector<NormalPoint> normals;
    computeCornerNormals(model, corners, normals);

    NormalPoint sum;
    sum.x = 0.0;
    sum.y = 0.0;
    sum.z = 0.0;
    for (const NormalPoint& normal : normals) {
        sum.x = sum.x + normal.x;
        sum.y = sum.y + normal.y;
        sum.z = sum.z + normal.z;
    }
    if (equalsZero(sum.x) && equalsZero(sum.y) && equalsZero(sum.z)) {
        throw std::runtime_error(
            "Cannot calculate convexity/reflexivity of vertices in a straight line");
    }

    const double inverseLength = 1.0 / std::sqrt(sum.x * sum.x + sum.y * sum.y + sum.z * sum.z);
    NormalPoint unit;
    unit.x = sum.x * inverseLength;
    unit.y = sum.y * inverseLength;
    unit.z = sum.z * inverseLength;

    for (int i = 0; i < sizeOf(corners); ++i) {
        if (dotProduct(normals.at(static_cast<std::size_t>(i)), unit) > 0.0)
            convex.push_back(i);
        else
            reflex.push_back(i);
    }
    if (convex.size() < reflex.size())
        convex.swap(reflex);
}

void fanTriangulate(const std::vector<FaceElement>& corners, std::vector<Face>& triangles) {
    for (int k = 1; k <= sizeOf(corners) - 2; ++k) {
        triangles.push_back(
            triangleOf(cornerAt(corners, 0), cornerAt(corners, k), cornerAt(corners, k + 1)));
    }
}

void clipEars(const ObjModel& model, std::vector<FaceElement>& corners,
              std::vector<Face>& triangles) {
    const int passLimit = sizeOf(corners);
    int passes = 0;
    int previousCount = sizeOf(corners);
    while (previousCount > 3) {
        if (++passes > passLimit)
            throw std::logic_error("passes without end");
        previousCount = sizeOf(corners);
        std::vector<int> convex;
        std::vector<int> reflex;
        try {
            classifyCorners(model, corners, convex, reflex);
        } catch (const std::runtime_error&) {
            return;
        }
        runPass(model, corners, reflex, triangles);
    }
}

void triangulate(const ObjModel& model, std::vector<FaceElement>& corners,
                 std::vector<Face>& triangles) {
    if (!isTriangulable(model, corners)) {
        reportError("Polygonal face has elements that cannot be processed. It will be skipped.");
        return;
    }
    std::vector<int> convex;
    std::vector<int> reflex;
    classifyCorners(model, corners, convex, reflex);
    if (reflex.empty())
        fanTriangulate(corners, triangles);
    else
        clipEars(model, corners, triangles);
}

}  // namespace obj_adapter::test::slow
