// Finds the edges of faces in ascending order. Covered by
// tests/processing/edgeAdjacencyTest.cpp.
#include "processing/edgeWalk.h"
#include "processing/faceSurvey.h"

#include <algorithm>
#include <utility>

namespace obj_adapter {

namespace {

// What a search in the lists may cost on the whole. Meshes without a vertex that
// very many faces share stay far below.
constexpr std::size_t STEPS_PER_FACE = 12;

// Faces in ascending order come in groups with the same lowest corner. An edge of
// that corner is marked at its other end, where it is found at once. Any other
// edge of the group waits in a list under its lower end until the group of that
// vertex begins; most lists have one or two edges.
class GroupedSearch {
public:
    explicit GroupedSearch(const ObjModel& model)
        : vertices(model.vertices.size()), adjacency(makeEmptyAdjacency(model)) {
        waitingEdges.reserve(model.faces.size());
    }

    // Faces whose corners are in the table, in ascending order.
    void add(std::size_t face, const Face& record) {
        const std::int32_t a = record.elements[0].vertexIndex;
        const std::int32_t b = record.elements[1].vertexIndex;
        const std::int32_t c = record.elements[2].vertexIndex;
        const std::int32_t lowest = std::min(a, std::min(b, c));
        if (lowest != group)
            beginGroup(lowest);
        FaceEdges& edges = adjacency.edgesOfFaces[face];
        edges[0] = meet(a, b, c);
        edges[1] = meet(a, c, b);
        edges[2] = meet(b, c, a);
    }

    // Waiting edges that were looked at and passed over.
    std::size_t getSteps() const noexcept { return steps; }

    EdgeAdjacency takeAdjacency() noexcept {
        adjacency.edgesTellFacesApart = true;
        return std::move(adjacency);
    }

private:
    struct VertexEntry {
        std::int32_t newestWaiting = NO_INDEX;  // of the edges to higher vertices
        std::int32_t markGroup = NO_INDEX;      // for which the mark was made
        std::int32_t markedEdge = NO_INDEX;
    };
    struct WaitingEdge {
        std::int32_t high;
        std::int32_t edge;
        std::int32_t older;  // position of the one before in the list
    };

    VertexEntry& at(std::int32_t vertex) { return vertices[static_cast<std::size_t>(vertex)]; }
    const WaitingEdge& waitingAt(std::int32_t position) const {
        return waitingEdges[static_cast<std::size_t>(position)];
    }

    void beginGroup(std::int32_t lowestCorner) {
        group = lowestCorner;
        for (std::int32_t position = at(group).newestWaiting; position != NO_INDEX;) {
            const WaitingEdge& waiting = waitingAt(position);
            mark(at(waiting.high), waiting.edge);
            position = waiting.older;
        }
    }

    void mark(VertexEntry& highEnd, std::int32_t edge) {
        highEnd.markGroup = group;
        highEnd.markedEdge = edge;
    }

    // The number of edge pq.
    std::int32_t meet(std::int32_t p, std::int32_t q, std::int32_t opposite) {
        const std::int32_t low = std::min(p, q);
        const std::int32_t high = std::max(p, q);
        if (low != group)
            return meetWaiting(low, high, opposite);
        VertexEntry& highEnd = at(high);
        if (highEnd.markGroup == group)
            adjacency.meetAgain(highEnd.markedEdge, opposite);
        else
            mark(highEnd, adjacency.addEdge());
        return highEnd.markedEdge;
    }

    std::int32_t meetWaiting(std::int32_t low, std::int32_t high, std::int32_t opposite) {
        std::int32_t& newest = at(low).newestWaiting;
        for (std::int32_t position = newest; position != NO_INDEX; ++steps) {
            const WaitingEdge& waiting = waitingAt(position);
            if (waiting.high == high) {
                adjacency.meetAgain(waiting.edge, opposite);
                return waiting.edge;
            }
            position = waiting.older;
        }
        const std::int32_t edge = adjacency.addEdge();
        waitingEdges.push_back({high, edge, newest});
        newest = static_cast<std::int32_t>(waitingEdges.size() - 1);
        return edge;
    }

    platform::GrowingArray<VertexEntry> vertices;
    platform::GrowingArray<WaitingEdge> waitingEdges;
    std::int32_t group = NO_INDEX;
    std::size_t steps = 0;
    EdgeAdjacency adjacency;
};

}  // namespace

std::optional<EdgeAdjacency> findEdgesByGroups(const ObjModel& model, FaceSurvey& survey) {
    GroupedSearch search(model);
    AscendingOrder order;
    survey.restart();
    std::size_t allowedSteps = model.faces.size() / 2;
    for (std::size_t face = 0; face < model.faces.size(); ++face) {
        const Face& record = model.faces[face];
        survey.add(record);
        if (!order.admits(sortCorners(record)))
            return std::nullopt;
        search.add(face, record);
        allowedSteps += STEPS_PER_FACE;
        if (search.getSteps() > allowedSteps)
            return std::nullopt;
    }
    return search.takeAdjacency();
}

}  // namespace obj_adapter
