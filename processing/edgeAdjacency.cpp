// Numbers the edges of a mesh, in two ways with one result. Covered by
// tests/processing/subdivisionTest.cpp.
#include "processing/edgeAdjacency.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <stdexcept>

namespace obj_adapter {

namespace {

EdgeEnds endsOf(const Face& face, const EdgeCorners& corners) {
    const std::int32_t first = face.elements[corners.first].vertexIndex;
    const std::int32_t second = face.elements[corners.second].vertexIndex;
    return {std::min(first, second), std::max(first, second)};
}

// Compaction leaves no other corners, but the host runs at the messages between it
// and a round, and may write into a face.
bool cornersAreBelow(const FaceTable& faces, std::size_t vertexCount) {
    return std::all_of(faces.begin(), faces.end(), [&](const Face& face) {
        return std::all_of(std::begin(face.elements), std::end(face.elements),
                           [&](const FaceElement& corner) {
                               return corner.vertexIndex >= 0 &&
                                      static_cast<std::size_t>(corner.vertexIndex) < vertexCount;
                           });
    });
}

// Room for the edges of most meshes: half as many again as faces where all is
// closed, by Euler's formula about as many as faces and vertices where it is
// open, and never more than three for a face.
std::size_t expectedNumberOfEdges(std::size_t faceCount, std::size_t vertexCount) {
    return std::min(EDGES_PER_FACE * faceCount,
                    std::max(faceCount + vertexCount, faceCount + faceCount / 2));
}

EdgeAdjacency makeEmptyAdjacency(std::size_t faceCount, std::size_t vertexCount) {
    EdgeAdjacency adjacency;
    adjacency.edgesOfFaces.resize(faceCount);
    adjacency.ends.reserve(expectedNumberOfEdges(faceCount, vertexCount));
    adjacency.secondOpposites.reserve(expectedNumberOfEdges(faceCount, vertexCount));
    return adjacency;
}

std::int32_t addEdge(EdgeAdjacency& adjacency, const EdgeEnds& ends) {
    adjacency.ends.push_back(ends);
    adjacency.secondOpposites.push_back(NO_INDEX);
    return static_cast<std::int32_t>(adjacency.ends.size() - 1);
}

void meetAgain(EdgeAdjacency& adjacency, std::int32_t edge, std::int32_t opposite) {
    std::int32_t& secondOpposite = adjacency.secondOpposites[static_cast<std::size_t>(edge)];
    if (secondOpposite == NO_INDEX)
        secondOpposite = opposite;
}

// The fast way: each vertex heads a list of the edges to higher vertices, the
// newest first, and one walk over the faces does it all. Most lists have two or
// three edges.
//
// A vertex with very many neighbours would make that quadratic, so it gives up,
// with nothing, when the lists turn out long on the whole.
std::optional<EdgeAdjacency> numberEdgesByLists(const FaceTable& faces, std::size_t vertexCount) {
    constexpr std::size_t STEPS_PER_FACE = 12;

    EdgeAdjacency adjacency = makeEmptyAdjacency(faces.size(), vertexCount);
    std::vector<std::int32_t> newestEdges(vertexCount, NO_INDEX);  // of each vertex
    std::vector<std::int32_t> olderEdges;                          // of each edge
    olderEdges.reserve(adjacency.ends.capacity());

    std::size_t allowedSteps = faces.size() / 2;
    std::size_t steps = 0;
    for (std::size_t face = 0; face < faces.size(); ++face) {
        for (std::size_t side = 0; side < EDGES_PER_FACE; ++side) {
            const EdgeEnds ends = endsOf(faces[face], EDGE_CORNERS[side]);
            std::int32_t& newest = newestEdges[static_cast<std::size_t>(ends.low)];
            std::int32_t edge = newest;
            while (edge != NO_INDEX &&
                   adjacency.ends[static_cast<std::size_t>(edge)].high != ends.high) {
                edge = olderEdges[static_cast<std::size_t>(edge)];
                ++steps;
            }
            if (edge == NO_INDEX) {
                olderEdges.push_back(newest);
                edge = newest = addEdge(adjacency, ends);
            } else {
                meetAgain(adjacency, edge,
                          faces[face].elements[EDGE_CORNERS[side].opposite].vertexIndex);
            }
            adjacency.edgesOfFaces[face][side] = edge;
        }
        allowedSteps += STEPS_PER_FACE;
        if (steps > allowedSteps)
            return std::nullopt;
    }
    return adjacency;
}

// One side of one face, filed under the lower end of its edge. Sides are counted
// through all faces.
struct Side {
    std::int32_t high;
    std::int32_t number;
};

struct SideFile {
    std::vector<Side> sides;             // by lower end; under each in face order
    std::vector<std::int32_t> fileEnds;  // of each vertex, where its sides end
};

SideFile fileSides(const FaceTable& faces, std::size_t vertexCount) {
    SideFile file;
    file.sides.resize(EDGES_PER_FACE * faces.size());
    file.fileEnds.resize(vertexCount);

    for (const Face& face : faces) {
        for (const EdgeCorners& corners : EDGE_CORNERS)
            ++file.fileEnds[static_cast<std::size_t>(endsOf(face, corners).low)];
    }
    std::int32_t begin = 0;
    for (std::int32_t& place : file.fileEnds) {
        const std::int32_t count = place;
        place = begin;
        begin += count;
    }
    // Every place moves from where the vertex's sides begin to where they end.
    std::int32_t number = 0;
    for (const Face& face : faces) {
        for (const EdgeCorners& corners : EDGE_CORNERS) {
            const EdgeEnds ends = endsOf(face, corners);
            std::int32_t& place = file.fileEnds[static_cast<std::size_t>(ends.low)];
            file.sides[static_cast<std::size_t>(place++)] = {ends.high, number++};
        }
    }
    return file;
}

// Of each side, the first side on the same edge.
std::vector<std::int32_t> findFirstSides(const SideFile& file) {
    struct Mark {
        std::int32_t low = NO_INDEX;  // whose sides the mark was made for
        std::int32_t firstSide = NO_INDEX;
    };
    std::vector<Mark> marks(file.fileEnds.size());  // of each higher end
    std::vector<std::int32_t> firstSides(file.sides.size());
    std::size_t place = 0;
    for (std::size_t vertex = 0; vertex < file.fileEnds.size(); ++vertex) {
        const std::int32_t low = static_cast<std::int32_t>(vertex);
        for (; place < static_cast<std::size_t>(file.fileEnds[vertex]); ++place) {
            const Side side = file.sides[place];
            Mark& mark = marks[static_cast<std::size_t>(side.high)];
            if (mark.low != low)
                mark = {low, side.number};
            firstSides[static_cast<std::size_t>(side.number)] = mark.firstSide;
        }
    }
    return firstSides;
}

// The steady way: linear for every mesh, at about twice the cost. No search at
// all; sides are filed under their lower end, and under each the higher ends
// are marked as they come.
EdgeAdjacency numberEdgesByFiling(const FaceTable& faces, std::size_t vertexCount) {
    const std::vector<std::int32_t> firstSides = findFirstSides(fileSides(faces, vertexCount));
    EdgeAdjacency adjacency = makeEmptyAdjacency(faces.size(), vertexCount);
    std::size_t number = 0;
    for (std::size_t face = 0; face < faces.size(); ++face) {
        for (std::size_t side = 0; side < EDGES_PER_FACE; ++side, ++number) {
            const EdgeCorners& corners = EDGE_CORNERS[side];
            const std::size_t first = static_cast<std::size_t>(firstSides[number]);
            std::int32_t& edge = adjacency.edgesOfFaces[face][side];
            if (first == number) {
                edge = addEdge(adjacency, endsOf(faces[face], corners));
            } else {
                edge = adjacency.edgesOfFaces[first / EDGES_PER_FACE][first % EDGES_PER_FACE];
                meetAgain(adjacency, edge, faces[face].elements[corners.opposite].vertexIndex);
            }
        }
    }
    return adjacency;
}

}  // namespace

EdgeAdjacency buildAdjacency(const FaceTable& faces, std::size_t vertexCount) {
    if (!cornersAreBelow(faces, vertexCount))
        throw std::out_of_range("Face with a vertex that does not exist");

    if (std::optional<EdgeAdjacency> adjacency = numberEdgesByLists(faces, vertexCount))
        return *std::move(adjacency);
    return numberEdgesByFiling(faces, vertexCount);
}

}  // namespace obj_adapter
