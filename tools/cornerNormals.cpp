// Normals of corners. Covered by tests/tools/cornerNormalsTest.cpp.
#include "cornerNormals.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace obj_adapter::tool {

namespace {

constexpr Vector3 ANY_DIRECTION{0.0, 0.0, 1.0};

std::size_t slotOf(int face, int corner) {
    return static_cast<std::size_t>(face) * CORNERS_PER_FACE + static_cast<std::size_t>(corner);
}

// Twice the area in the direction of the normal. Sides are scaled by the whole
// model's size, so that nothing overflows and areas can be compared.
Vector3 areaVector(const ModelAccess& model, const Face& face, double scale) {
    if (!model.isDrawable(face))
        return {};
    const Vector3 a = model.getPosition(face.elements[0].vertexIndex) * scale;
    const Vector3 b = model.getPosition(face.elements[1].vertexIndex) * scale;
    const Vector3 c = model.getPosition(face.elements[2].vertexIndex) * scale;
    return crossProduct(b - a, c - a);
}

// A power of two, so that scaling rounds nothing but what becomes too small.
double scaleOf(const ModelAccess& model) {
    double largest = 0.0;
    for (int vertex = 0; vertex < model.getNumberOfVertices(); ++vertex) {
        const Vector3 position = model.getPosition(vertex);
        if (isFinite(position))
            largest = std::max(largest, largestCoordinate(position));
    }
    // The inverse of the smallest numbers is no number.
    constexpr int LEAST_EXPONENT = -1000;
    int exponent = 0;
    std::frexp(largest, &exponent);
    return std::ldexp(1.0, -std::max(exponent, LEAST_EXPONENT));
}

// A side of a face without normals of its own: the edge, and where it stands.
struct Side {
    std::uint32_t low;
    std::uint32_t high;
    std::uint32_t face;
    std::uint8_t lowCorner;  // the corner of the face at each end
    std::uint8_t highCorner;
};

// Corners that share one normal. The smaller root wins; paths are halved.
class CornerClasses {
public:
    explicit CornerClasses(std::size_t count) : parents(count) {
        std::iota(parents.begin(), parents.end(), std::size_t{0});
    }

    std::size_t find(std::size_t corner) {
        while (parents[corner] != corner) {
            parents[corner] = parents[parents[corner]];
            corner = parents[corner];
        }
        return corner;
    }

    void join(std::size_t a, std::size_t b) {
        const std::size_t rootA = find(a);
        const std::size_t rootB = find(b);
        parents[std::max(rootA, rootB)] = std::min(rootA, rootB);
    }

private:
    std::vector<std::size_t> parents;
};

void addSides(std::vector<Side>& sides, const Face& face, std::uint32_t index) {
    for (std::uint8_t corner = 0; corner < CORNERS_PER_FACE; ++corner) {
        const auto next = static_cast<std::uint8_t>((corner + 1) % CORNERS_PER_FACE);
        const auto from = static_cast<std::uint32_t>(face.elements[corner].vertexIndex);
        const auto to = static_cast<std::uint32_t>(face.elements[next].vertexIndex);
        if (from < to)
            sides.push_back({from, to, index, corner, next});
        else if (to < from)
            sides.push_back({to, from, index, next, corner});
    }
}

bool isSameEdge(const Side& a, const Side& b) {
    return a.low == b.low && a.high == b.high;
}

}  // namespace

CornerNormals::CornerNormals(const ModelAccess& model, std::optional<double> smallestCosine)
    : indices(static_cast<std::size_t>(model.getNumberOfFaces()) * CORNERS_PER_FACE, NO_INDEX),
      fromFile(static_cast<std::size_t>(model.getNumberOfFaces())) {
    takeFromFile(model);
    if (smallestCosine)
        computeSmooth(model, *smallestCosine);
    else
        computeFlat(model);
}

void CornerNormals::takeFromFile(const ModelAccess& model) {
    for (int index = 0; index < model.getNumberOfNormals(); ++index)
        normals.push_back(unitVector(model.getNormal(index)));
    for (int index = 0; index < model.getNumberOfFaces(); ++index) {
        const Face& face = model.getFace(index);
        const bool usable = std::all_of(
            std::begin(face.elements), std::end(face.elements), [&](const FaceElement& corner) {
                const int normal = model.normalOf(corner);
                return normal != NO_INDEX && !(getNormal(normal) == Vector3());
            });
        fromFile[static_cast<std::size_t>(index)] = usable;
        for (int corner = 0; usable && corner < CORNERS_PER_FACE; ++corner)
            indices[slotOf(index, corner)] = face.elements[corner].normalIndex;
    }
}

void CornerNormals::computeFlat(const ModelAccess& model) {
    const double scale = scaleOf(model);
    for (int face = 0; face < model.getNumberOfFaces(); ++face) {
        if (isFromFile(face))
            continue;
        const Vector3 normal = unitVector(areaVector(model, model.getFace(face), scale));
        for (int corner = 0; corner < CORNERS_PER_FACE; ++corner)
            indices[slotOf(face, corner)] = static_cast<int>(normals.size());
        normals.push_back(normal == Vector3() ? ANY_DIRECTION : normal);
    }
}

void CornerNormals::computeSmooth(const ModelAccess& model, double smallestCosine) {
    const double scale = scaleOf(model);
    std::vector<Vector3> areas(fromFile.size());
    std::vector<Side> sides;
    for (int face = 0; face < model.getNumberOfFaces(); ++face) {
        if (isFromFile(face))
            continue;
        areas[static_cast<std::size_t>(face)] = areaVector(model, model.getFace(face), scale);
        if (model.hasVertices(model.getFace(face)))
            addSides(sides, model.getFace(face), static_cast<std::uint32_t>(face));
    }
    // Equal edges keep the order of their faces.
    std::stable_sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
        return a.low != b.low ? a.low < b.low : a.high < b.high;
    });

    // Neighbours along an edge share their normals at both of its ends.
    CornerClasses classes(indices.size());
    for (std::size_t side = 1; side < sides.size(); ++side) {
        const Side& a = sides[side - 1];
        const Side& b = sides[side];
        if (!isSameEdge(a, b) ||
            dotProduct(unitVector(areas[a.face]), unitVector(areas[b.face])) < smallestCosine)
            continue;
        classes.join(slotOf(static_cast<int>(a.face), a.lowCorner),
                     slotOf(static_cast<int>(b.face), b.lowCorner));
        classes.join(slotOf(static_cast<int>(a.face), a.highCorner),
                     slotOf(static_cast<int>(b.face), b.highCorner));
    }

    // The roots come first in their classes, and sums are in the order of faces.
    const auto firstComputed = static_cast<std::ptrdiff_t>(normals.size());
    for (std::size_t slot = 0; slot < indices.size(); ++slot) {
        const std::size_t face = slot / CORNERS_PER_FACE;
        if (fromFile[face])
            continue;
        const std::size_t root = classes.find(slot);
        if (root == slot) {
            indices[slot] = static_cast<int>(normals.size());
            normals.emplace_back();
        }
        indices[slot] = indices[root];
        Vector3& sum = normals[static_cast<std::size_t>(indices[slot])];
        sum = sum + areas[face];
    }
    std::transform(normals.begin() + firstComputed, normals.end(), normals.begin() + firstComputed,
                   [](const Vector3& sum) {
                       const Vector3 normal = unitVector(sum);
                       return normal == Vector3() ? ANY_DIRECTION : normal;
                   });
}

}  // namespace obj_adapter::tool
