// A round of Loop subdivision: first all that needs memory, then one walk over the
// old faces that writes everything. Covered by tests/processing/subdivisionTest.cpp
// and, against other libraries, subdivisionPeersTest.cpp.
#include "processing/subdivisionRound.h"

#include "converter/progress.h"
#include "model/objModel.h"
#include "processing/faceSurvey.h"
#include "processing/loopScheme.h"
#include "processing/subdivisionLimits.h"

#include <obj_adapter/objConverter.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <utility>
#include <vector>

namespace obj_adapter {

namespace {

// The neighbours of an old vertex, as far as its new position depends on them.
struct VertexStar {
    // Of all neighbours; from the first boundary edge on, of the first two along
    // the boundary. In the order of the edges, on which the sum depends.
    Position sum;
    std::int32_t neighbourCount = 0;  // until the first boundary edge
    std::int32_t boundaryCount = 0;   // two is the most

    void add(const Position& neighbour) noexcept {
        if (boundaryCount > 0)
            return;
        sum = sum + neighbour;
        ++neighbourCount;
    }

    void addAlongBoundary(const Position& neighbour) noexcept {
        if (boundaryCount == 2)
            return;
        sum = boundaryCount == 0 ? neighbour : sum + neighbour;
        ++boundaryCount;
    }
};

// All that a round finds and asks for before it changes the model.
struct RoundPlan {
    EdgeAdjacency adjacency;
    platform::GrowingArray<VertexStar> stars;  // of each old vertex; empty until edges are met

    // Records of each table before the round.
    std::size_t faceCount = 0;
    std::size_t vertexCount = 0;
    std::size_t texturePointCount = 0;

    // And after it.
    std::size_t grownFaceCount = 0;
    std::size_t grownVertexCount = 0;
    std::size_t grownTexturePointCount = 0;
};

// Makes room for all that the round adds; the tables stay as they are. The
// largest go first: where a table that grows stands in memory twice, it should do
// so while there is least beside it.
void reserveTables(ObjModel& model, const RoundPlan& plan, const FaceSurvey& survey) {
    try {
        model.faces.reserve(plan.grownFaceCount);
        model.texturePoints.reserve(plan.grownTexturePointCount);
        model.vertices.reserve(plan.grownVertexCount);
        for (std::size_t group = 0; group < model.groups.size(); ++group)
            model.groups[group].faceIndices.reserve(CHILDREN_PER_FACE *
                                                    survey.getGroupFaceCounts()[group]);
    } catch (const std::exception&) {
        // The host goes on with the model as it is, when memory is scarce.
        model.faces.shrink_to_fit();
        model.vertices.shrink_to_fit();
        model.texturePoints.shrink_to_fit();
        throw;
    }
}

RoundPlan prepareRound(ObjModel& model, const ParentEdges& parents) {
    RoundPlan plan;
    plan.faceCount = model.faces.size();
    plan.vertexCount = model.vertices.size();
    plan.texturePointCount = model.texturePoints.size();
    plan.grownFaceCount = CHILDREN_PER_FACE * plan.faceCount;
    requireIndexable(plan.grownFaceCount);

    FaceSurvey survey(model);
    plan.adjacency = buildAdjacency(model, parents, survey);
    plan.grownVertexCount = plan.vertexCount + plan.adjacency.getNumberOfEdges();
    requireIndexable(plan.grownVertexCount);
    plan.grownTexturePointCount =
        plan.texturePointCount + EDGES_PER_FACE * survey.getNumberOfTexturedFaces();
    requireIndexable(plan.grownTexturePointCount);

    plan.stars.resize(plan.vertexCount);
    reserveTables(model, plan, survey);
    return plan;
}

// What the children of a face take from it, apart from the face, which may lie in
// one of their places.
struct Parent {
    explicit Parent(const Face& face) noexcept
        : a(face.elements[0]),
          b(face.elements[1]),
          c(face.elements[2]),
          materialIndex(face.materialIndex),
          groupIndex(face.groupIndex) {}

    const FaceElement a;
    const FaceElement b;
    const FaceElement c;
    const std::int32_t materialIndex;
    const std::int32_t groupIndex;
};

void setChild(Face& child, const Parent& parent, const FaceElement& corner0,
              const FaceElement& corner1, const FaceElement& corner2) noexcept {
    child.elements[0] = corner0;
    child.elements[1] = corner1;
    child.elements[2] = corner2;
    for (std::int32_t& sortedIndex : child.sortedVertexIndices)
        sortedIndex = NO_INDEX;
    child.sortedKeyValid = false;
    child.materialIndex = parent.materialIndex;
    child.groupIndex = parent.groupIndex;
}

FaceElement makeEdgeCorner(std::int32_t vertexIndex, std::int32_t textureIndex) noexcept {
    FaceElement corner;
    corner.vertexIndex = vertexIndex;
    corner.textureIndex = textureIndex;
    return corner;
}

void setChildren(Face* children, const Parent& parent, const FaceElement& ab, const FaceElement& ac,
                 const FaceElement& bc) noexcept {
    setChild(children[0], parent, parent.a, ab, ac);
    setChild(children[1], parent, ab, parent.b, bc);
    setChild(children[2], parent, ac, bc, parent.c);
    setChild(children[3], parent, ab, bc, ac);
}

// Writes all that a round adds. Nothing here allocates, so the round is done whole
// or not at all.
class RoundWriter {
public:
    RoundWriter(ObjModel& ownModel, RoundPlan& ownPlan) noexcept
        : model(ownModel), plan(ownPlan), work(ownPlan.grownFaceCount) {}

    void write() noexcept {
        model.hierarchyValid = false;
        for (Group& group : model.groups)
            group.faceIndices.clear();
        model.faces.resizeUninitialized(plan.grownFaceCount);
        model.vertices.resizeUninitialized(plan.grownVertexCount);
        model.texturePoints.resizeUninitialized(plan.grownTexturePointCount);

        walkForwards();
        walkBackwards();
        // After the edge vertices, which lie between old positions.
        moveOldVertices();
    }

private:
    // A face's children stand four times as far down the table, so those of the
    // first quarter lie on old faces.
    std::size_t getFirstQuarter() const noexcept {
        return (plan.faceCount + CHILDREN_PER_FACE - 1) / CHILDREN_PER_FACE;
    }

    // Everything but the children of the first quarter.
    void walkForwards() noexcept {
        const std::size_t firstQuarter = getFirstQuarter();
        nextMidpoint = plan.texturePointCount;
        for (std::size_t face = 0; face < plan.faceCount; ++face) {
            const Face& parent = model.faces[face];
            addEdgeVertices(parent, plan.adjacency.edgesOfFaces[face]);
            const std::int32_t firstMidpoint = addMidpoints(parent);
            listChildren(parent, face);
            if (face >= firstQuarter)
                splitFace(face, firstMidpoint);
        }
    }

    // The children of the first quarter, from the back so that every face is read
    // before it is overwritten.
    void walkBackwards() noexcept {
        std::size_t midpoint = plan.texturePointCount;
        for (std::size_t face = 0; face < getFirstQuarter(); ++face) {
            if (isTextured(model.faces[face], plan.texturePointCount))
                midpoint += EDGES_PER_FACE;
        }
        for (std::size_t face = getFirstQuarter(); face-- > 0;) {
            std::int32_t firstMidpoint = NO_INDEX;
            if (isTextured(model.faces[face], plan.texturePointCount)) {
                midpoint -= EDGES_PER_FACE;
                firstMidpoint = static_cast<std::int32_t>(midpoint);
            }
            splitFace(face, firstMidpoint);
        }
    }

    void splitFace(std::size_t face, std::int32_t firstMidpoint) noexcept {
        work.count(CHILDREN_PER_FACE);
        const Parent parent(model.faces[face]);
        const auto firstEdgeVertex = static_cast<std::int32_t>(plan.vertexCount);
        const auto [ab, ac, bc] = plan.adjacency.edgesOfFaces[face];
        const std::int32_t step = firstMidpoint != NO_INDEX ? 1 : 0;
        setChildren(&model.faces[CHILDREN_PER_FACE * face], parent,
                    makeEdgeCorner(firstEdgeVertex + ab, firstMidpoint),
                    makeEdgeCorner(firstEdgeVertex + ac, firstMidpoint + step),
                    makeEdgeCorner(firstEdgeVertex + bc, firstMidpoint + 2 * step));
    }

    // One vertex for each edge, in the order of the edges' numbers, which is that
    // of their first meeting.
    void addEdgeVertices(const Face& face, const FaceEdges& edges) noexcept {
        const std::int32_t a = face.elements[0].vertexIndex;
        const std::int32_t b = face.elements[1].vertexIndex;
        const std::int32_t c = face.elements[2].vertexIndex;
        if (edges[0] == nextEdge)
            addEdgeVertex(a, b, c);
        if (edges[1] == nextEdge)
            addEdgeVertex(a, c, b);
        if (edges[2] == nextEdge)
            addEdgeVertex(b, c, a);
    }

    // The vertex of edge pq in the first face that has it, where r lies across.
    void addEdgeVertex(std::int32_t p, std::int32_t q, std::int32_t r) noexcept {
        const Position pPosition = positionAt(p);
        const Position qPosition = positionAt(q);
        VertexStar& pStar = plan.stars[static_cast<std::size_t>(p)];
        VertexStar& qStar = plan.stars[static_cast<std::size_t>(q)];
        const auto edge = static_cast<std::size_t>(nextEdge++);
        const std::int32_t s = plan.adjacency.secondOpposites[edge];
        Position position;
        if (s == NO_INDEX) {
            pStar.addAlongBoundary(qPosition);
            qStar.addAlongBoundary(pPosition);
            position = boundaryEdgePosition(pPosition, qPosition);
        } else {
            pStar.add(qPosition);
            qStar.add(pPosition);
            position = interiorEdgePosition(pPosition, qPosition, positionAt(r), positionAt(s));
        }
        Vertex vertex(position.x, position.y, position.z);
        vertex.index = static_cast<std::int32_t>(plan.vertexCount + edge);
        model.vertices[plan.vertexCount + edge] = vertex;
    }

    Position positionAt(std::int32_t vertex) const noexcept {
        return positionOf(model.vertices[static_cast<std::size_t>(vertex)]);
    }

    // The midpoints of a textured face's edges; returns the first. The two faces of
    // an edge do not share them: their corners may lie apart in the texture.
    std::int32_t addMidpoints(const Face& face) noexcept {
        if (!isTextured(face, plan.texturePointCount))
            return NO_INDEX;
        const auto firstMidpoint = static_cast<std::int32_t>(nextMidpoint);
        for (const EdgeCorners& corners : EDGE_CORNERS) {
            const TexturePoint& a = textureAt(face.elements[corners.first]);
            const TexturePoint& b = textureAt(face.elements[corners.second]);
            TexturePoint midpoint;
            midpoint.u = (a.u + b.u) * MIDPOINT_WEIGHT;
            midpoint.v = (a.v + b.v) * MIDPOINT_WEIGHT;
            midpoint.index = static_cast<std::int32_t>(nextMidpoint);
            model.texturePoints[nextMidpoint++] = midpoint;
        }
        return firstMidpoint;
    }

    const TexturePoint& textureAt(const FaceElement& corner) const noexcept {
        return model.texturePoints[static_cast<std::size_t>(corner.textureIndex)];
    }

    // The state of rebuildGroupFaceLists after the round, from the old faces, which
    // are a quarter as many. There is room in the lists.
    void listChildren(const Face& parent, std::size_t face) noexcept {
        if (!isBelow(parent.groupIndex, model.groups.size()))
            return;
        std::vector<int>& list =
            model.groups[static_cast<std::size_t>(parent.groupIndex)].faceIndices;
        const int firstChild = static_cast<int>(CHILDREN_PER_FACE * face);
        for (int child = 0; child < static_cast<int>(CHILDREN_PER_FACE); ++child)
            list.push_back(firstChild + child);
    }

    // w and index stay. A vertex that no face uses goes to the origin: deliberate,
    // not to be changed into keeping its position.
    void moveOldVertices() noexcept {
        const BetaTable betas;
        for (std::size_t vertex = 0; vertex < plan.vertexCount; ++vertex) {
            Vertex& record = model.vertices[vertex];
            const Position moved = findMovedPosition(positionOf(record), plan.stars[vertex], betas);
            record.x = moved.x;
            record.y = moved.y;
            record.z = moved.z;
        }
    }

    static Position findMovedPosition(const Position& own, const VertexStar& star,
                                      const BetaTable& betas) noexcept {
        if (star.boundaryCount == 2)
            return movedBoundaryPosition(own, star.sum);
        // With a single boundary edge, its other end counts twice.
        if (star.boundaryCount == 1)
            return movedBoundaryPosition(own, star.sum + star.sum);
        if (star.neighbourCount == 0)
            return {};
        return movedInteriorPosition(own, star.sum, star.neighbourCount,
                                     betas.get(star.neighbourCount));
    }

    ObjModel& model;
    RoundPlan& plan;
    std::int32_t nextEdge = 0;
    std::size_t nextMidpoint = 0;
    WorkOfChange work;
};

// What the next round can go by.
ParentEdges takeParentEdges(RoundPlan& plan) noexcept {
    ParentEdges parents;
    if (plan.adjacency.edgesTellFacesApart) {
        parents.edgeCount = plan.adjacency.getNumberOfEdges();
        parents.vertexCount = plan.vertexCount;
        parents.edgesOfFaces = std::move(plan.adjacency.edgesOfFaces);
    }
    return parents;
}

}  // namespace

void subdivideOnce(ObjModel& model, ParentEdges& parents) {
    beginStage(ObjConverter::STAGE_SUBDIVISION);
    RoundPlan plan = prepareRound(model, parents);
    RoundWriter(model, plan).write();
    parents = takeParentEdges(plan);
    stopIfCancelled();
}

}  // namespace obj_adapter
