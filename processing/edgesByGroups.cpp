// Finds the edges of faces in ascending order. Covered by
// tests/processing/edgeAdjacencyTest.cpp.
#include "processing/edgeWalk.h"
#include "processing/faceSurvey.h"

namespace obj_adapter {

namespace {

// What a search in the lists may cost on the whole. Meshes without a vertex that
// very many faces share stay far below.
constexpr std::size_t STEPS_PER_FACE = 12;

// The known edges of faces in ascending order, which come in groups with the same
// lowest corner. An edge of that corner is marked at its other end, where it is
// found at once. Any other edge of the group waits in a list under its lower end
// until the group of that vertex begins; most lists have one or two edges.
class GroupedEdges {
public:
    explicit GroupedEdges(const ObjModel& model) : vertices(model.vertices.size()) {
        edges.reserve(expectedNumberOfEdges(model));
    }

    void beginGroup(std::int32_t lowestCorner) {
        group = lowestCorner;
        for (std::int32_t edge = at(group).newestWaiting; edge != NO_INDEX;) {
            const WaitingEdge& waiting = edges[static_cast<std::size_t>(edge)];
            mark(waiting.high, edge);
            edge = waiting.older;
        }
    }

    std::int32_t getGroup() const noexcept { return group; }

    // The edge, or a new one with the next number.
    std::int32_t findOrAdd(const EdgeEnds& ends) {
        return ends.low == group ? findOrMark(ends.high) : findOrWait(ends);
    }

    // Edges that were looked at and passed over.
    std::size_t getSteps() const noexcept { return steps; }

private:
    struct VertexEntry {
        std::int32_t newestWaiting = NO_INDEX;  // of the edges to higher vertices
        std::int32_t markGroup = NO_INDEX;      // for which the mark was made
        std::int32_t markedEdge = NO_INDEX;
    };
    struct WaitingEdge {
        std::int32_t high;
        std::int32_t older;
    };

    VertexEntry& at(std::int32_t vertex) { return vertices[static_cast<std::size_t>(vertex)]; }

    void mark(std::int32_t high, std::int32_t edge) {
        VertexEntry& entry = at(high);
        entry.markGroup = group;
        entry.markedEdge = edge;
    }

    std::int32_t findOrMark(std::int32_t high) {
        if (at(high).markGroup != group)
            mark(high, add({high, NO_INDEX}));
        return at(high).markedEdge;
    }

    std::int32_t findOrWait(const EdgeEnds& ends) {
        std::int32_t& newest = at(ends.low).newestWaiting;
        for (std::int32_t edge = newest; edge != NO_INDEX; ++steps) {
            const WaitingEdge& waiting = edges[static_cast<std::size_t>(edge)];
            if (waiting.high == ends.high)
                return edge;
            edge = waiting.older;
        }
        newest = add({ends.high, newest});
        return newest;
    }

    std::int32_t add(const WaitingEdge& edge) {
        edges.push_back(edge);
        return static_cast<std::int32_t>(edges.size() - 1);
    }

    platform::GrowingArray<VertexEntry> vertices;
    platform::GrowingArray<WaitingEdge> edges;
    std::int32_t group = NO_INDEX;
    std::size_t steps = 0;
};

}  // namespace

std::optional<EdgeAdjacency> findEdgesByGroups(const ObjModel& model, FaceSurvey& survey) {
    const FaceTable& faces = model.faces;
    EdgeAdjacency adjacency = makeEmptyAdjacency(model);
    GroupedEdges known(model);
    AscendingOrder order;
    survey.restart();
    std::size_t allowedSteps = faces.size() / 2;
    for (std::size_t face = 0; face < faces.size(); ++face) {
        const Face& record = faces[face];
        survey.add(record);
        const SortedCorners sorted = sortCorners(record);
        if (!order.admits(sorted))
            return std::nullopt;
        if (known.getGroup() != sorted.low)
            known.beginGroup(sorted.low);
        for (std::size_t side = 0; side < EDGES_PER_FACE; ++side) {
            const EdgeCorners& corners = EDGE_CORNERS[side];
            const std::int32_t edge = known.findOrAdd(endsOf(record, corners));
            if (static_cast<std::size_t>(edge) == adjacency.getNumberOfEdges())
                adjacency.addEdge();
            else
                adjacency.meetAgain(edge, record.elements[corners.opposite].vertexIndex);
            adjacency.edgesOfFaces[face][side] = edge;
        }
        allowedSteps += STEPS_PER_FACE;
        if (known.getSteps() > allowedSteps)
            return std::nullopt;
    }
    adjacency.edgesTellFacesApart = true;
    return adjacency;
}

}  // namespace obj_adapter
