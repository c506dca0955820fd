// Finds the edges of any mesh without a search, in linear time whatever its shape:
// sides are filed under their lower end, and under each the higher ends are marked
// as they come. Covered by tests/processing/edgeAdjacencyTest.cpp.
#include "processing/edgeWalk.h"
#include "processing/faceSurvey.h"

namespace obj_adapter {

namespace {

// One side of one face, filed under the lower end of its edge. Sides are counted
// through all faces.
struct Side {
    std::int32_t high;
    std::int32_t number;
};

struct SideFile {
    platform::GrowingArray<Side> sides;             // by lower end; under each in face order
    platform::GrowingArray<std::int32_t> fileEnds;  // of each vertex, where its sides end
};

SideFile fileSides(const ObjModel& model, FaceSurvey& survey) {
    const FaceTable& faces = model.faces;
    SideFile file;
    file.sides.resizeUninitialized(EDGES_PER_FACE * faces.size());
    file.fileEnds.resize(model.vertices.size(), 0);

    survey.restart();
    for (const Face& face : faces) {
        survey.add(face);
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
platform::GrowingArray<std::int32_t> findFirstSides(const SideFile& file) {
    struct Mark {
        std::int32_t low = NO_INDEX;  // whose sides the mark was made for
        std::int32_t firstSide = NO_INDEX;
    };
    platform::GrowingArray<Mark> marks(file.fileEnds.size());  // of each higher end
    platform::GrowingArray<std::int32_t> firstSides;
    firstSides.resizeUninitialized(file.sides.size());
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

}  // namespace

EdgeAdjacency findEdgesByFiling(const ObjModel& model, FaceSurvey& survey) {
    const FaceTable& faces = model.faces;
    const platform::GrowingArray<std::int32_t> firstSides =
        findFirstSides(fileSides(model, survey));
    EdgeAdjacency adjacency = makeEmptyAdjacency(model);
    AscendingOrder order;
    adjacency.edgesTellFacesApart = true;
    std::size_t number = 0;
    for (std::size_t face = 0; face < faces.size(); ++face) {
        adjacency.edgesTellFacesApart = order.admits(sortCorners(faces[face]));
        for (std::size_t side = 0; side < EDGES_PER_FACE; ++side, ++number) {
            const EdgeCorners& corners = EDGE_CORNERS[side];
            const std::size_t first = static_cast<std::size_t>(firstSides[number]);
            std::int32_t& edge = adjacency.edgesOfFaces[face][side];
            if (first == number) {
                edge = adjacency.addEdge();
            } else {
                edge = adjacency.edgesOfFaces[first / EDGES_PER_FACE][first % EDGES_PER_FACE];
                adjacency.meetAgain(edge, faces[face].elements[corners.opposite].vertexIndex);
            }
        }
    }
    return adjacency;
}

}  // namespace obj_adapter
