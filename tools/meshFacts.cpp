// Edges, pieces and faults of a mesh. Covered by tests/tools/meshFactsTest.cpp.
#include "meshFacts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <utility>

namespace obj_adapter::tool {

namespace {

// Below this sine of the angle between two sides, the corners are taken to be on
// one line: some thousand times what rounding makes of three corners that are.
constexpr double SINE_OF_A_LINE = 1e-12;

// One side of a face: the edge under its ends in ascending order, and whether the
// face walks it upwards.
struct Side {
    std::uint64_t edge;
    bool upwards;
};

std::uint64_t edgeKey(std::uint32_t low, std::uint32_t high) {
    constexpr int BITS_OF_AN_END = 32;
    return (std::uint64_t{low} << BITS_OF_AN_END) | high;
}

Side makeSide(int from, int to) {
    const auto first = static_cast<std::uint32_t>(from);
    const auto second = static_cast<std::uint32_t>(to);
    return {edgeKey(std::min(first, second), std::max(first, second)), from < to};
}

// Vertices that hang together.
class Pieces {
public:
    explicit Pieces(int vertexCount) : parents(static_cast<std::size_t>(vertexCount)) {
        std::iota(parents.begin(), parents.end(), 0);
    }

    // The larger root goes under the smaller one. Paths are halved on the way.
    void join(int a, int b) {
        const int rootA = find(a);
        const int rootB = find(b);
        parents[static_cast<std::size_t>(std::max(rootA, rootB))] = std::min(rootA, rootB);
    }

    bool isRoot(int vertex) const { return parents[static_cast<std::size_t>(vertex)] == vertex; }

private:
    int find(int vertex) {
        while (!isRoot(vertex)) {
            int& parent = parents[static_cast<std::size_t>(vertex)];
            parent = parents[static_cast<std::size_t>(parent)];
            vertex = parent;
        }
        return vertex;
    }

    std::vector<int> parents;
};

bool hasNoArea(const Vector3& a, const Vector3& b, const Vector3& c) {
    const Vector3 normal = crossProduct(unitVector(b - a), unitVector(c - a));
    return largestCoordinate(normal) <= SINE_OF_A_LINE;
}

class FactsCollector {
public:
    explicit FactsCollector(const ModelAccess& importedModel)
        : model(importedModel),
          used(static_cast<std::size_t>(model.getNumberOfVertices())),
          pieces(model.getNumberOfVertices()) {}

    MeshFacts collect() {
        for (int index = 0; index < model.getNumberOfFaces(); ++index)
            addFace(model.getFace(index));
        countEdges();
        countDuplicates();
        countVertices();
        return facts;
    }

private:
    void addFace(const Face& face) {
        facts.facesWithNormals += hasNormals(face) ? 1 : 0;
        facts.facesWithTextures += hasTexturePoints(face) ? 1 : 0;
        if (!model.hasVertices(face)) {
            ++facts.facesWithoutVertex;
            return;
        }
        const std::array<int, CORNERS_PER_FACE> corners{face.elements[0].vertexIndex,
                                                        face.elements[1].vertexIndex,
                                                        face.elements[2].vertexIndex};
        for (const int corner : corners) {
            used[static_cast<std::size_t>(corner)] = true;
            pieces.join(corners[0], corner);
        }
        classifyArea(face, corners);
        if (corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0])
            addSides(corners);
    }

    bool hasNormals(const Face& face) const {
        return std::all_of(
            std::begin(face.elements), std::end(face.elements),
            [this](const FaceElement& corner) { return model.normalOf(corner) != NO_INDEX; });
    }

    bool hasTexturePoints(const Face& face) const {
        return std::all_of(
            std::begin(face.elements), std::end(face.elements),
            [this](const FaceElement& corner) { return model.texturePointOf(corner) != NO_INDEX; });
    }

    void classifyArea(const Face& face, const std::array<int, CORNERS_PER_FACE>& corners) {
        if (!model.isDrawable(face))
            ++facts.facesNotFinite;
        else if (hasNoArea(model.getPosition(corners[0]), model.getPosition(corners[1]),
                           model.getPosition(corners[2])))
            ++facts.facesWithoutArea;
    }

    void addSides(std::array<int, CORNERS_PER_FACE> corners) {
        sides.push_back(makeSide(corners[0], corners[1]));
        sides.push_back(makeSide(corners[1], corners[2]));
        sides.push_back(makeSide(corners[2], corners[0]));
        std::sort(corners.begin(), corners.end());
        triples.push_back(corners);
    }

    void countEdges() {
        std::sort(sides.begin(), sides.end(),
                  [](const Side& a, const Side& b) { return a.edge < b.edge; });
        for (std::size_t begin = 0; begin < sides.size();) {
            std::size_t end = begin + 1;
            while (end < sides.size() && sides[end].edge == sides[begin].edge)
                ++end;
            countEdge(begin, end);
            begin = end;
        }
    }

    void countEdge(std::size_t begin, std::size_t end) {
        ++facts.edges;
        const std::size_t faces = end - begin;
        if (faces == 1)
            ++facts.boundaryEdges;
        else if (faces > 2)
            ++facts.nonManifoldEdges;
        else if (sides[begin].upwards == sides[begin + 1].upwards)
            ++facts.windingConflicts;
    }

    void countDuplicates() {
        std::sort(triples.begin(), triples.end());
        for (std::size_t index = 1; index < triples.size(); ++index)
            facts.duplicateFaces += triples[index] == triples[index - 1] ? 1 : 0;
    }

    void countVertices() {
        for (int vertex = 0; vertex < model.getNumberOfVertices(); ++vertex) {
            if (!used[static_cast<std::size_t>(vertex)])
                ++facts.unusedVertices;
            else if (pieces.isRoot(vertex))
                ++facts.pieces;
            if (!isFinite(model.getPosition(vertex)))
                ++facts.verticesNotFinite;
        }
    }

    const ModelAccess& model;
    MeshFacts facts;
    std::vector<bool> used;
    Pieces pieces;
    std::vector<Side> sides;
    std::vector<std::array<int, CORNERS_PER_FACE>> triples;
};

}  // namespace

MeshFacts computeMeshFacts(const ModelAccess& model) {
    return FactsCollector(model).collect();
}

int countCollapsedFaces(const ModelAccess& model) {
    int collapsed = 0;
    for (int index = 0; index < model.getNumberOfFaces(); ++index) {
        const Face& face = model.getFace(index);
        if (!model.hasVertices(face)) {
            ++collapsed;
            continue;
        }
        const Vector3 a = model.getPosition(face.elements[0].vertexIndex);
        const Vector3 b = model.getPosition(face.elements[1].vertexIndex);
        const Vector3 c = model.getPosition(face.elements[2].vertexIndex);
        collapsed += a == b || b == c || c == a ? 1 : 0;
    }
    return collapsed;
}

}  // namespace obj_adapter::tool
