// Derives a round's edges from those of the round before. Covered by
// tests/processing/edgeAdjacencyTest.cpp.
//
//            c                 A round has split each parent abc into the faces
//           / \                (a, ab, ac), (ab, b, bc), (ac, bc, c) and
//         ac---bc              (ab, bc, ac), in this order. So each edge of a
//         / \ / \              parent has become two halves, and three inner
//        a---ab--b             edges have come to each parent.
#include "processing/edgeWalk.h"
#include "processing/faceSurvey.h"

#include <array>
#include <utility>

namespace obj_adapter {

namespace {

// An edge of the parents: its ends, and beside each the number of that half.
struct SplitEdge {
    std::array<std::int32_t, 2> ends = {NO_INDEX, NO_INDEX};
    std::array<std::int32_t, 2> halves = {NO_INDEX, NO_INDEX};  // once they are met
};

bool hasCorners(const Face& face, std::int32_t a, std::int32_t b, std::int32_t c) noexcept {
    return face.elements[0].vertexIndex == a && face.elements[1].vertexIndex == b &&
           face.elements[2].vertexIndex == c;
}

class EdgeDerivation {
public:
    EdgeDerivation(const ObjModel& model, const ParentEdges& ownParents)
        : faces(model.faces), parents(ownParents) {
        splitEdges.resizeUninitialized(parents.edgeCount);
        adjacency.edgesOfFaces.resizeUninitialized(faces.size());
        adjacency.secondOpposites.resizeUninitialized(2 * parents.edgeCount +
                                                      EDGES_PER_FACE * parents.edgesOfFaces.size());
        adjacency.edgesTellFacesApart = true;
    }

    // False when the faces are not the parents' children.
    bool run(FaceSurvey& survey) {
        for (std::size_t parent = 0; parent < parents.edgesOfFaces.size(); ++parent) {
            if (!addFamily(parent))
                return false;
            for (std::size_t child = 0; child < CHILDREN_PER_FACE; ++child)
                survey.add(faces[CHILDREN_PER_FACE * parent + child]);
        }
        return true;
    }

    EdgeAdjacency takeAdjacency() noexcept { return std::move(adjacency); }

private:
    // Numbers the edges of a parent's children. They are what the edges' numbers
    // say they are if every corner is where the round put it, if the two ends of
    // each parent's edge are old vertices, and if they are the same two in every
    // parent that has it.
    bool addFamily(std::size_t parent) {
        const Face* children = &faces[CHILDREN_PER_FACE * parent];
        const std::int32_t a = children[0].elements[0].vertexIndex;
        const std::int32_t b = children[1].elements[1].vertexIndex;
        const std::int32_t c = children[2].elements[2].vertexIndex;
        if (!isOld(a) || !isOld(b) || !isOld(c))
            return false;

        const auto [numberOfAb, numberOfAc, numberOfBc] = parents.edgesOfFaces[parent];
        SplitEdge* const edgeAb = visitEdge(numberOfAb, a, b);
        SplitEdge* const edgeAc = visitEdge(numberOfAc, a, c);
        SplitEdge* const edgeBc = visitEdge(numberOfBc, b, c);
        if (edgeAb == nullptr || edgeAc == nullptr || edgeBc == nullptr)
            return false;

        const std::int32_t ab = getVertexOf(numberOfAb);
        const std::int32_t ac = getVertexOf(numberOfAc);
        const std::int32_t bc = getVertexOf(numberOfBc);
        if (!hasCorners(children[0], a, ab, ac) || !hasCorners(children[1], ab, b, bc) ||
            !hasCorners(children[2], ac, bc, c) || !hasCorners(children[3], ab, bc, ac))
            return false;

        // In the order in which a walk over the children meets the edges.
        FaceEdges* const edges = &adjacency.edgesOfFaces[CHILDREN_PER_FACE * parent];
        const std::int32_t aToAb = meetHalf(*edgeAb, a, ac);
        const std::int32_t aToAc = meetHalf(*edgeAc, a, ab);
        const std::int32_t abToAc = addEdge(bc);
        const std::int32_t abToB = meetHalf(*edgeAb, b, bc);
        const std::int32_t abToBc = addEdge(ac);
        const std::int32_t bToBc = meetHalf(*edgeBc, b, ab);
        const std::int32_t acToBc = addEdge(ab);
        const std::int32_t acToC = meetHalf(*edgeAc, c, bc);
        const std::int32_t bcToC = meetHalf(*edgeBc, c, ac);
        edges[0] = {aToAb, aToAc, abToAc};
        edges[1] = {abToB, abToBc, bToBc};
        edges[2] = {acToBc, acToC, bcToC};
        edges[3] = {abToBc, abToAc, acToBc};
        return true;
    }

    bool isOld(std::int32_t vertex) const noexcept { return isBelow(vertex, parents.vertexCount); }

    std::int32_t getVertexOf(std::int32_t edge) const noexcept {
        return static_cast<std::int32_t>(parents.vertexCount) + edge;
    }

    // Null when the edge has had other ends until now, or only one.
    SplitEdge* visitEdge(std::int32_t number, std::int32_t p, std::int32_t q) noexcept {
        SplitEdge* const edge = &splitEdges[static_cast<std::size_t>(number)];
        if (number == visitedEdgeCount) {
            ++visitedEdgeCount;
            *edge = {{p, q}, {NO_INDEX, NO_INDEX}};
            return p != q ? edge : nullptr;
        }
        const auto [end0, end1] = edge->ends;
        const bool hasSameEnds = (end0 == p && end1 == q) || (end0 == q && end1 == p);
        return hasSameEnds ? edge : nullptr;
    }

    std::int32_t meetHalf(SplitEdge& edge, std::int32_t end, std::int32_t opposite) noexcept {
        std::int32_t& half = edge.halves[edge.ends[0] == end ? 0 : 1];
        if (half == NO_INDEX)
            return half = addEdge(NO_INDEX);
        std::int32_t& secondOpposite = adjacency.secondOpposites[static_cast<std::size_t>(half)];
        if (secondOpposite == NO_INDEX)
            secondOpposite = opposite;
        return half;
    }

    std::int32_t addEdge(std::int32_t secondOpposite) noexcept {
        adjacency.secondOpposites[static_cast<std::size_t>(edgeCount)] = secondOpposite;
        return edgeCount++;
    }

    const FaceTable& faces;
    const ParentEdges& parents;
    platform::GrowingArray<SplitEdge> splitEdges;
    std::int32_t visitedEdgeCount = 0;
    std::int32_t edgeCount = 0;
    EdgeAdjacency adjacency;
};

}  // namespace

std::optional<EdgeAdjacency> deriveEdges(const ObjModel& model, const ParentEdges& parents,
                                         FaceSurvey& survey) {
    if (parents.edgesOfFaces.empty() ||
        model.faces.size() != CHILDREN_PER_FACE * parents.edgesOfFaces.size() ||
        model.vertices.size() != parents.vertexCount + parents.edgeCount)
        return std::nullopt;
    EdgeDerivation derivation(model, parents);
    survey.restart();
    if (!derivation.run(survey))
        return std::nullopt;
    return derivation.takeAdjacency();
}

}  // namespace obj_adapter
