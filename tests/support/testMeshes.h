// Named triangle meshes for the tests of mesh processing.
#pragma once

#include "model/objModel.h"
#include "support/randomSource.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace obj_adapter::test {

struct Mesh {
    std::vector<std::array<double, 3>> points;
    std::vector<std::array<int, 3>> triangles;

    int addPoint(double x, double y, double z) {
        points.push_back({x, y, z});
        return static_cast<int>(points.size()) - 1;
    }
};

// Appends the mesh to a model, all in one simple group "mesh", as if compacted
// and free of conflicts.
inline void fillModel(const Mesh& mesh, ObjModel& model) {
    model.groups.emplace_back().name = "mesh";
    for (const auto& [x, y, z] : mesh.points) {
        Vertex vertex(x, y, z);
        model.addVertex(vertex);
    }
    for (const std::array<int, 3>& triangle : mesh.triangles) {
        Face face;
        for (std::size_t corner = 0; corner < triangle.size(); ++corner)
            face.elements[corner].vertexIndex = triangle[corner];
        model.addFaceInCurrentGroup(face);
    }
    model.hasConflictingFaces = false;
}

//   2
//   | \.
//   0--1
inline Mesh oneTriangle() {
    return {{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, {{0, 1, 2}}};
}

// 0 is joined to 1, 2 and 3; outward winding.
inline Mesh tetrahedron() {
    return {{{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}},
            {{0, 1, 2}, {0, 2, 3}, {0, 3, 1}, {1, 3, 2}}};
}

// Poles 0 and 1, equator 2 to 5.
inline Mesh octahedron() {
    return {
        {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, -1, 0}},
        {{0, 2, 3}, {0, 3, 4}, {0, 4, 5}, {0, 5, 2}, {1, 3, 2}, {1, 4, 3}, {1, 5, 4}, {1, 2, 5}}};
}

// Golden rectangles in the three coordinate planes.
inline Mesh icosahedron() {
    const double t = (1 + std::sqrt(5.0)) / 2;
    return {{{-1, t, 0},
             {1, t, 0},
             {-1, -t, 0},
             {1, -t, 0},
             {0, -1, t},
             {0, 1, t},
             {0, -1, -t},
             {0, 1, -t},
             {t, 0, -1},
             {t, 0, 1},
             {-t, 0, -1},
             {-t, 0, 1}},
            {{0, 11, 5},  {0, 5, 1},  {0, 1, 7},  {0, 7, 10}, {0, 10, 11}, {1, 5, 9}, {5, 11, 4},
             {11, 10, 2}, {10, 7, 6}, {7, 1, 8},  {3, 9, 4},  {3, 4, 2},   {3, 2, 6}, {3, 6, 8},
             {3, 8, 9},   {4, 9, 5},  {2, 4, 11}, {6, 2, 10}, {8, 6, 7},   {9, 8, 1}}};
}

// columns x rows squares of two triangles, each split along either diagonal by
// chance, with points moved at random: open, with a boundary all around.
inline Mesh roughGrid(int columns, int rows, RandomSource& random) {
    Mesh mesh;
    for (int row = 0; row <= rows; ++row) {
        for (int column = 0; column <= columns; ++column)
            mesh.addPoint(column + 0.5 * random.fraction(), row + 0.5 * random.fraction(),
                          random.fraction());
    }
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const int a = row * (columns + 1) + column;
            const int c = a + columns + 1;
            if (random.oneIn(2)) {
                mesh.triangles.push_back({a, a + 1, c});
                mesh.triangles.push_back({a + 1, c + 1, c});
            } else {
                mesh.triangles.push_back({a, a + 1, c + 1});
                mesh.triangles.push_back({a, c + 1, c});
            }
        }
    }
    return mesh;
}

// A closed ring of around x across squares, each at least 3, moved at random.
inline Mesh roughTorus(int around, int across, RandomSource& random) {
    constexpr double FULL_TURN = 6.283185307179586;
    Mesh mesh;
    for (int i = 0; i < around; ++i) {
        for (int j = 0; j < across; ++j) {
            const double phi = FULL_TURN * i / around;
            const double psi = FULL_TURN * j / across;
            const double radius = 3 + (1 + 0.2 * random.fraction()) * std::cos(psi);
            mesh.addPoint(radius * std::cos(phi), radius * std::sin(phi), std::sin(psi));
        }
    }
    for (int i = 0; i < around; ++i) {
        for (int j = 0; j < across; ++j) {
            const int nextI = (i + 1) % around;
            const int nextJ = (j + 1) % across;
            const int a = i * across + j;
            const int b = nextI * across + j;
            const int c = nextI * across + nextJ;
            const int d = i * across + nextJ;
            mesh.triangles.push_back({a, b, c});
            mesh.triangles.push_back({a, c, d});
        }
    }
    return mesh;
}

// The mesh with a point set into every chance-th triangle: points with three
// neighbours, and some with many.
inline Mesh withPointsSetIn(const Mesh& mesh, int chances, RandomSource& random) {
    Mesh result;
    result.points = mesh.points;
    for (const auto& [a, b, c] : mesh.triangles) {
        if (!random.oneIn(chances)) {
            result.triangles.push_back({a, b, c});
            continue;
        }
        const auto& first = mesh.points[static_cast<std::size_t>(a)];
        const auto& second = mesh.points[static_cast<std::size_t>(b)];
        const auto& third = mesh.points[static_cast<std::size_t>(c)];
        const int inner = result.addPoint((first[0] + second[0] + third[0]) / 3,
                                          (first[1] + second[1] + third[1]) / 3,
                                          (first[2] + second[2] + third[2]) / 3);
        result.triangles.push_back({a, b, inner});
        result.triangles.push_back({b, c, inner});
        result.triangles.push_back({c, a, inner});
    }
    return result;
}

// Triangles around point 0; a closed fan has it inside, an open one on the rim.
inline Mesh fan(int triangles, bool isClosed) {
    constexpr double FULL_TURN = 6.283185307179586;
    Mesh mesh;
    mesh.addPoint(0, 0, 1);
    const int rim = isClosed ? triangles : triangles + 1;
    for (int i = 0; i < rim; ++i) {
        const double phi = FULL_TURN * i / (triangles + 1);
        mesh.addPoint(std::cos(phi), std::sin(phi), 0);
    }
    for (int i = 0; i < triangles; ++i)
        mesh.triangles.push_back({0, 1 + i, 1 + (i + 1) % rim});
    return mesh;
}

// The order of a table of which no neighbours are together.
template <typename Record>
void shuffle(std::vector<Record>& records, RandomSource& random) {
    for (int i = static_cast<int>(records.size()) - 1; i > 0; --i)
        std::swap(records[static_cast<std::size_t>(i)],
                  records[static_cast<std::size_t>(random.below(i + 1))]);
}

// The same mesh with its points, faces and corners in another order.
inline Mesh shuffled(const Mesh& mesh, RandomSource& random) {
    std::vector<int> places(mesh.points.size());
    for (std::size_t i = 0; i < places.size(); ++i)
        places[i] = static_cast<int>(i);
    shuffle(places, random);
    Mesh result;
    result.points.resize(mesh.points.size());
    for (std::size_t i = 0; i < places.size(); ++i)
        result.points[static_cast<std::size_t>(places[i])] = mesh.points[i];
    for (const auto& [a, b, c] : mesh.triangles) {
        const std::array<int, 3> turned = {places[static_cast<std::size_t>(a)],
                                           places[static_cast<std::size_t>(b)],
                                           places[static_cast<std::size_t>(c)]};
        const auto first = static_cast<std::size_t>(random.below(3));
        result.triangles.push_back(
            {turned[first], turned[(first + 1) % 3], turned[(first + 2) % 3]});
    }
    shuffle(result.triangles, random);
    return result;
}

}  // namespace obj_adapter::test
