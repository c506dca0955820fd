// Rounds of Loop subdivision. Covered by tests/processing/subdivisionTest.cpp
// and, against other libraries, subdivisionPeersTest.cpp.
#include "processing/subdivision.h"

#include "converter/messages.h"
#include "groups/groupTable.h"
#include "model/objModel.h"
#include "processing/edgeAdjacency.h"
#include "processing/loopScheme.h"
#include "processing/subdivisionLimits.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <iterator>
#include <string>
#include <vector>

namespace obj_adapter {

namespace {

constexpr std::size_t CHILDREN_PER_FACE = 4;

// Unbroken, so that a search for what a user saw finds it.
// clang-format off
const char CONFLICTING_FACES_MESSAGE[] =
    "The data contains at least one pair of faces that have the same vertex coordinates. Subdivision cannot be used.";
// clang-format on

// All that a round computes before it changes the model.
struct RoundPlan {
    EdgeAdjacency adjacency;

    // Of each face, the index of the first of its texture midpoints; NO_INDEX
    // for a face that is not textured.
    std::vector<std::int32_t> firstMidpoints;

    // Of each old vertex.
    std::vector<Position> movedPositions;

    // Records of each table after the round.
    std::size_t grownFaceCount = 0;
    std::size_t grownVertexCount = 0;
    std::size_t grownTexturePointCount = 0;
};

// The edges around an old vertex, as far as its new position depends on them.
struct VertexStar {
    std::int32_t neighbourCount = 0;
    std::array<std::int32_t, 2> boundaryNeighbours = {NO_INDEX, NO_INDEX};  // the first two

    void addBoundaryNeighbour(std::int32_t neighbour) {
        if (boundaryNeighbours[0] == NO_INDEX)
            boundaryNeighbours[0] = neighbour;
        else if (boundaryNeighbours[1] == NO_INDEX)
            boundaryNeighbours[1] = neighbour;
    }
};

// Fills the stars and adds to every vertex's sum its neighbours' positions.
// Walking the edges by number meets those of each vertex in the order in which
// the faces do, and the sums depend on that order.
void gatherStars(const VertexTable& vertices, const EdgeAdjacency& adjacency,
                 std::vector<VertexStar>& stars, std::vector<Position>& sums) {
    for (std::size_t edge = 0; edge < adjacency.ends.size(); ++edge) {
        const EdgeEnds ends = adjacency.ends[edge];
        const auto low = static_cast<std::size_t>(ends.low);
        const auto high = static_cast<std::size_t>(ends.high);
        sums[low] = sums[low] + positionOf(vertices[high]);
        sums[high] = sums[high] + positionOf(vertices[low]);
        ++stars[low].neighbourCount;
        ++stars[high].neighbourCount;
        if (adjacency.secondOpposites[edge] == NO_INDEX) {
            stars[low].addBoundaryNeighbour(ends.high);
            stars[high].addBoundaryNeighbour(ends.low);
        }
    }
}

// loopBeta, with the weights of common neighbour counts at hand.
class BetaTable {
public:
    BetaTable() {
        for (std::size_t n = 0; n < betas.size(); ++n)
            betas[n] = loopBeta(static_cast<int>(n));
    }

    double get(int neighbourCount) const {
        const auto n = static_cast<std::size_t>(neighbourCount);
        return n < betas.size() ? betas[n] : loopBeta(neighbourCount);
    }

private:
    std::array<double, 16> betas;
};

// The new positions of the old vertices, from old positions only. A vertex that
// no face uses goes to the origin: deliberate, not to be changed into keeping
// its position.
std::vector<Position> findMovedPositions(const VertexTable& vertices,
                                         const EdgeAdjacency& adjacency) {
    const BetaTable betas;
    std::vector<VertexStar> stars(vertices.size());
    std::vector<Position> positions(vertices.size());
    gatherStars(vertices, adjacency, stars, positions);

    const auto positionAt = [&](std::int32_t vertex) {
        return positionOf(vertices[static_cast<std::size_t>(vertex)]);
    };
    for (std::size_t vertex = 0; vertex < vertices.size(); ++vertex) {
        const VertexStar& star = stars[vertex];
        const auto [neighbour0, neighbour1] = star.boundaryNeighbours;
        const Position own = positionOf(vertices[vertex]);
        Position& position = positions[vertex];  // the sum until now
        if (neighbour0 != NO_INDEX) {
            // With a single boundary edge, its other end counts twice.
            position =
                movedBoundaryPosition(own, positionAt(neighbour0),
                                      positionAt(neighbour1 != NO_INDEX ? neighbour1 : neighbour0));
        } else if (star.neighbourCount > 0) {
            position = movedInteriorPosition(own, position, star.neighbourCount,
                                             betas.get(star.neighbourCount));
        }
    }
    return positions;
}

// All three corners have a texture point, which is there: a host may have written
// any number into a face.
bool isTextured(const ObjModel& model, const Face& face) {
    const auto isThere = [&](const FaceElement& corner) {
        return corner.textureIndex >= 0 && corner.textureIndex < model.getNumberOfTexturePoints();
    };
    return std::all_of(std::begin(face.elements), std::end(face.elements), isThere);
}

// Numbers the texture midpoints after the texture points that there are.
void planMidpoints(const ObjModel& model, RoundPlan& plan) {
    std::size_t texturePointCount = model.texturePoints.size();
    plan.firstMidpoints.reserve(model.faces.size());
    for (const Face& face : model.faces) {
        if (isTextured(model, face)) {
            plan.firstMidpoints.push_back(static_cast<std::int32_t>(texturePointCount));
            texturePointCount += EDGES_PER_FACE;
        } else {
            plan.firstMidpoints.push_back(NO_INDEX);
        }
    }
    plan.grownTexturePointCount = texturePointCount;
    requireIndexable(texturePointCount);
}

RoundPlan planRound(const ObjModel& model) {
    RoundPlan plan;
    plan.grownFaceCount = CHILDREN_PER_FACE * model.faces.size();
    requireIndexable(plan.grownFaceCount);
    plan.adjacency = buildAdjacency(model.faces, model.vertices.size());
    plan.grownVertexCount = model.vertices.size() + plan.adjacency.getNumberOfEdges();
    requireIndexable(plan.grownVertexCount);
    planMidpoints(model, plan);
    plan.movedPositions = findMovedPositions(model.vertices, plan.adjacency);

    // Of no use any more, and the tables are about to grow.
    plan.adjacency.ends = std::vector<EdgeEnds>();
    return plan;
}

// Makes room for all that the round adds; the tables stay as they are. Faces go
// first: while a table moves it stands in memory twice, so the largest moves
// while there is least beside it.
void reserveTables(ObjModel& model, const RoundPlan& plan) {
    try {
        model.faces.reserve(plan.grownFaceCount);
        model.vertices.reserve(plan.grownVertexCount);
        model.texturePoints.reserve(plan.grownTexturePointCount);
        reserveGroupFaceLists(model, CHILDREN_PER_FACE);
    } catch (const std::exception&) {
        // The host goes on with the model as it is, when memory is scarce.
        model.faces.shrink_to_fit();
        model.vertices.shrink_to_fit();
        model.texturePoints.shrink_to_fit();
        throw;
    }
}

// The state of rebuildGroupFaceLists after the round, from the old faces, which
// are a quarter as many, and without its allocations.
void listChildrenInGroups(ObjModel& model) {
    model.hierarchyValid = false;
    for (Group& group : model.groups)
        group.faceIndices.clear();
    for (std::size_t face = 0; face < model.faces.size(); ++face) {
        const std::int32_t groupIndex = model.faces[face].groupIndex;
        if (!namesGroup(model, groupIndex))
            continue;
        std::vector<int>& list = model.groups[static_cast<std::size_t>(groupIndex)].faceIndices;
        const int firstChild = static_cast<int>(CHILDREN_PER_FACE * face);
        for (int child = 0; child < static_cast<int>(CHILDREN_PER_FACE); ++child)
            list.push_back(firstChild + child);
    }
}

Position findEdgePosition(const VertexTable& vertices, const Face& face, const EdgeCorners& corners,
                          std::int32_t secondOpposite) {
    const auto positionAt = [&](std::int32_t vertex) {
        return positionOf(vertices[static_cast<std::size_t>(vertex)]);
    };
    const Position first = positionAt(face.elements[corners.first].vertexIndex);
    const Position second = positionAt(face.elements[corners.second].vertexIndex);
    if (secondOpposite == NO_INDEX)
        return boundaryEdgePosition(first, second);
    return interiorEdgePosition(first, second,
                                positionAt(face.elements[corners.opposite].vertexIndex),
                                positionAt(secondOpposite));
}

// Appends one vertex for each edge, in the order of the edges' numbers, which is
// that of their first meeting.
void appendEdgeVertices(ObjModel& model, const EdgeAdjacency& adjacency) {
    VertexTable& vertices = model.vertices;
    auto index = static_cast<std::int32_t>(vertices.size());
    std::int32_t nextEdge = 0;
    for (std::size_t face = 0; face < model.faces.size(); ++face) {
        for (std::size_t side = 0; side < EDGES_PER_FACE; ++side) {
            if (adjacency.edgesOfFaces[face][side] != nextEdge)
                continue;
            const Position position =
                findEdgePosition(vertices, model.faces[face], EDGE_CORNERS[side],
                                 adjacency.secondOpposites[static_cast<std::size_t>(nextEdge)]);
            ++nextEdge;
            Vertex& vertex = vertices.emplace_back(position.x, position.y, position.z);
            vertex.index = index++;
        }
    }
}

// Appends the midpoints of each textured face's edges. The two faces of an edge
// do not share them: their corners may lie apart in the texture.
void appendTextureMidpoints(ObjModel& model, const RoundPlan& plan) {
    TexturePointTable& points = model.texturePoints;
    for (std::size_t position = 0; position < model.faces.size(); ++position) {
        if (plan.firstMidpoints[position] == NO_INDEX)
            continue;
        const Face& face = model.faces[position];
        for (const EdgeCorners& corners : EDGE_CORNERS) {
            const std::int32_t first = face.elements[corners.first].textureIndex;
            const std::int32_t second = face.elements[corners.second].textureIndex;
            const TexturePoint& a = points[static_cast<std::size_t>(first)];
            const TexturePoint& b = points[static_cast<std::size_t>(second)];
            TexturePoint midpoint;
            midpoint.u = (a.u + b.u) * MIDPOINT_WEIGHT;
            midpoint.v = (a.v + b.v) * MIDPOINT_WEIGHT;
            midpoint.index = static_cast<std::int32_t>(points.size());
            points.push_back(midpoint);
        }
    }
}

FaceElement makeEdgeCorner(std::int32_t vertexIndex, std::int32_t textureIndex) {
    FaceElement corner;
    corner.vertexIndex = vertexIndex;
    corner.textureIndex = textureIndex;
    return corner;
}

// child is a fresh face.
void setChild(Face& child, const Face& parent, const FaceElement& corner0,
              const FaceElement& corner1, const FaceElement& corner2) {
    child.elements[0] = corner0;
    child.elements[1] = corner1;
    child.elements[2] = corner2;
    child.materialIndex = parent.materialIndex;
    child.groupIndex = parent.groupIndex;
}

// Sets the children of one face, which stand fresh in their places, four times
// as far down the table.
void splitFace(FaceTable& faces, const Face& parent, std::size_t face, const RoundPlan& plan) {
    const auto [a, b, c] = parent.elements;
    const auto [edgeAb, edgeAc, edgeBc] = plan.adjacency.edgesOfFaces[face];
    const auto firstEdgeVertex = static_cast<std::int32_t>(plan.movedPositions.size());
    const std::int32_t midpoint = plan.firstMidpoints[face];
    const bool isTextured = midpoint != NO_INDEX;

    const FaceElement ab =
        makeEdgeCorner(firstEdgeVertex + edgeAb, isTextured ? midpoint : NO_INDEX);
    const FaceElement ac =
        makeEdgeCorner(firstEdgeVertex + edgeAc, isTextured ? midpoint + 1 : NO_INDEX);
    const FaceElement bc =
        makeEdgeCorner(firstEdgeVertex + edgeBc, isTextured ? midpoint + 2 : NO_INDEX);

    Face* children = &faces[CHILDREN_PER_FACE * face];
    setChild(children[0], parent, a, ab, ac);
    setChild(children[1], parent, ab, b, bc);
    setChild(children[2], parent, ac, bc, c);
    setChild(children[3], parent, ab, bc, ac);
}

// Appends the children of all faces but the first quarter, which start where the
// old faces end or up to three places behind; those stay free until
// removeOldFaces. Appending spares a pass over the large new table.
void splitFaces(FaceTable& faces, const RoundPlan& plan) {
    const std::size_t oldFaceCount = plan.firstMidpoints.size();
    const std::size_t quarter = (oldFaceCount + CHILDREN_PER_FACE - 1) / CHILDREN_PER_FACE;
    while (faces.size() < CHILDREN_PER_FACE * quarter)
        faces.emplace_back();
    for (std::size_t face = quarter; face < oldFaceCount; ++face) {
        for (std::size_t child = 0; child < CHILDREN_PER_FACE; ++child)
            faces.emplace_back();
        splitFace(faces, faces[face], face, plan);
    }
}

// Puts the children of the first quarter in the old faces' places, from the back
// so that every face is read before it is overwritten.
void removeOldFaces(FaceTable& faces, const RoundPlan& plan) {
    const std::size_t oldFaceCount = plan.firstMidpoints.size();
    const std::size_t quarter = (oldFaceCount + CHILDREN_PER_FACE - 1) / CHILDREN_PER_FACE;
    for (std::size_t face = quarter; face-- > 0;) {
        // A copy: the first face lies where its children go.
        const Face parent = faces[face];
        std::fill_n(&faces[CHILDREN_PER_FACE * face], CHILDREN_PER_FACE, Face());
        splitFace(faces, parent, face, plan);
    }
}

// Moves the old vertices; w and index stay.
void repositionVertices(VertexTable& vertices, const std::vector<Position>& movedPositions) {
    for (std::size_t vertex = 0; vertex < movedPositions.size(); ++vertex) {
        vertices[vertex].x = movedPositions[vertex].x;
        vertices[vertex].y = movedPositions[vertex].y;
        vertices[vertex].z = movedPositions[vertex].z;
    }
}

// One round: every triangle becomes four.
//
// before  compactData() has run; neighbours are found by shared vertex index
// after   four times the faces, in the order of their parents; old vertices keep
//         their index and move; new edge vertices follow them; no face has
//         normals
// cost    O(V + F)
void subdivideOnce(ObjModel& model) {
    const RoundPlan plan = planRound(model);
    reserveTables(model, plan);

    // Nothing below allocates, so the round is done whole or not at all.
    appendEdgeVertices(model, plan.adjacency);
    appendTextureMidpoints(model, plan);
    listChildrenInGroups(model);
    splitFaces(model.faces, plan);
    removeOldFaces(model.faces, plan);

    // After the new vertices, which lie between old positions.
    repositionVertices(model.vertices, plan.movedPositions);
}

void runIterations(int limit, ObjModel& model) {
    // Counted in 64 bits: the limit may be the largest int.
    for (std::int64_t round = 1; round <= limit; ++round) {
        reportInformation("Subdivision " + std::to_string(round) + "...");
        subdivideOnce(model);
    }
}

// Without faces no round would ever bring the count nearer to the limit.
void runToFaceCount(int limit, ObjModel& model) {
    while (!model.faces.empty() && nextFaceCount(model.getNumberOfFaces()) < limit) {
        reportInformation("Subdividing to " +
                          std::to_string(nextFaceCount(model.getNumberOfFaces())) + " faces...");
        subdivideOnce(model);
    }
}

// The same.
void runToVertexCount(int limit, ObjModel& model) {
    while (!model.faces.empty() && nextVertexEstimate(model.getNumberOfVertices()) < limit) {
        reportInformation("Subdividing to up to " +
                          std::to_string(nextVertexEstimate(model.getNumberOfVertices())) +
                          " vertices...");
        subdivideOnce(model);
    }
}

}  // namespace

void subdivide(int limitType, int limit, ObjModel& model) {
    if (model.hasConflictingFaces) {
        reportError(CONFLICTING_FACES_MESSAGE);
        return;
    }
    switch (limitType) {
        case LIMIT_ITERATIONS:
            runIterations(limit, model);
            break;
        case LIMIT_FACE_COUNT:
            runToFaceCount(limit, model);
            break;
        case LIMIT_VERTEX_COUNT:
            runToVertexCount(limit, model);
            break;
        default:
            break;
    }
}

}  // namespace obj_adapter
