// Shares no code with the library's subdivision, weights included.
#include "support/slowSubdivision.h"

#include "groups/groupTable.h"
#include "model/objModel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <utility>
#include <vector>

namespace obj_adapter::test {

namespace {

// The lower end first, so that equal pairs are equal edges.
using Edge = std::pair<int, int>;

Edge makeEdge(int p, int q) {
    return {std::min(p, q), std::max(p, q)};
}

double slowBeta(int n) {
    if (n < 4)
        return 0.1875;
    const double inner = 0.375 + 0.25 * std::cos(6.283185307179586 / n);
    return (1.0 / n) * (0.625 - inner * inner);
}

class SlowRound {
public:
    explicit SlowRound(ObjModel& ownModel) : model(ownModel) {}

    void run() {
        const int oldFaceCount = model.getNumberOfFaces();
        const int oldVertexCount = model.getNumberOfVertices();
        buildAdjacency();
        for (int face = 0; face < oldFaceCount; ++face)
            splitFace(face);
        repositionVertices(oldVertexCount);
        model.faces.erase(model.faces.begin(), model.faces.begin() + oldFaceCount);
        rebuildGroupFaceLists(model);
    }

private:
    const Vertex& vertexAt(int index) const {
        return model.vertices[static_cast<std::size_t>(index)];
    }
    const Face& faceAt(int index) const { return model.faces[static_cast<std::size_t>(index)]; }

    void buildAdjacency() {
        for (int face = 0; face < model.getNumberOfFaces(); ++face) {
            const FaceElement* corners = faceAt(face).elements;
            const int a = corners[0].vertexIndex;
            const int b = corners[1].vertexIndex;
            const int c = corners[2].vertexIndex;
            for (const auto& [p, q] : {Edge(a, b), Edge(a, c), Edge(b, c)}) {
                const Edge edge = makeEdge(p, q);
                if (edgeToFaces.count(edge) == 0) {
                    vertexToEdges.insert({p, edge});
                    vertexToEdges.insert({q, edge});
                }
                edgeToFaces.insert({edge, face});
            }
        }
    }

    // The first corner of the face that is no end of the edge. A face that
    // repeats a vertex may have none; the repeated one stands in.
    int findOpposite(int face, const Edge& edge) const {
        const FaceElement* corners = faceAt(face).elements;
        for (int corner = 0; corner < 3; ++corner) {
            const int vertex = corners[corner].vertexIndex;
            if (vertex != edge.first && vertex != edge.second)
                return vertex;
        }
        const int a = corners[0].vertexIndex;
        const int b = corners[1].vertexIndex;
        return a == b || a == corners[2].vertexIndex ? a : b;
    }

    int getEdgeVertex(int p, int q, int r, int face) {
        const Edge edge = makeEdge(p, q);
        const auto known = edgeToNewVertex.find(edge);
        if (known != edgeToNewVertex.end())
            return known->second;

        auto [entry, end] = edgeToFaces.equal_range(edge);
        if (entry != end && entry->second == face)
            ++entry;
        const Vertex& pv = vertexAt(p);
        const Vertex& qv = vertexAt(q);
        Vertex made;
        if (entry != end) {
            const Vertex& rv = vertexAt(r);
            const Vertex& sv = vertexAt(findOpposite(entry->second, edge));
            made.x = (rv.x + sv.x) * 0.125 + (pv.x + qv.x) * 0.375;
            made.y = (rv.y + sv.y) * 0.125 + (pv.y + qv.y) * 0.375;
            made.z = (rv.z + sv.z) * 0.125 + (pv.z + qv.z) * 0.375;
        } else {
            made.x = (pv.x + qv.x) * 0.5;
            made.y = (pv.y + qv.y) * 0.5;
            made.z = (pv.z + qv.z) * 0.5;
        }
        const int index = model.addVertex(made);
        edgeToNewVertex[edge] = index;
        return index;
    }

    int addMidpoint(const FaceElement& from, const FaceElement& to) {
        const TexturePoint a = model.texturePoints[static_cast<std::size_t>(from.textureIndex)];
        const TexturePoint b = model.texturePoints[static_cast<std::size_t>(to.textureIndex)];
        TexturePoint midpoint;
        midpoint.u = (a.u + b.u) * 0.5;
        midpoint.v = (a.v + b.v) * 0.5;
        return model.addTexturePoint(midpoint);
    }

    void splitFace(int face) {
        const Face parent = faceAt(face);
        const FaceElement a = parent.elements[0];
        const FaceElement b = parent.elements[1];
        const FaceElement c = parent.elements[2];
        FaceElement ab;
        FaceElement ac;
        FaceElement bc;
        ab.vertexIndex = getEdgeVertex(a.vertexIndex, b.vertexIndex, c.vertexIndex, face);
        ac.vertexIndex = getEdgeVertex(a.vertexIndex, c.vertexIndex, b.vertexIndex, face);
        bc.vertexIndex = getEdgeVertex(b.vertexIndex, c.vertexIndex, a.vertexIndex, face);
        if (parent.hasTextures()) {
            ab.textureIndex = addMidpoint(a, b);
            ac.textureIndex = addMidpoint(a, c);
            bc.textureIndex = addMidpoint(b, c);
        }
        addChild(parent, {a, ab, ac});
        addChild(parent, {ab, b, bc});
        addChild(parent, {ac, bc, c});
        addChild(parent, {ab, bc, ac});
    }

    void addChild(const Face& parent, const std::vector<FaceElement>& corners) {
        Face child;
        for (const FaceElement& corner : corners)
            child.addElement(corner);
        child.materialIndex = parent.materialIndex;
        child.groupIndex = parent.groupIndex;
        model.addFace(child);
    }

    void repositionVertices(int oldVertexCount) {
        std::vector<Vertex> moved(static_cast<std::size_t>(oldVertexCount));
        for (int vertex = 0; vertex < oldVertexCount; ++vertex)
            moved[static_cast<std::size_t>(vertex)] = findMoved(vertex);
        for (std::size_t vertex = 0; vertex < moved.size(); ++vertex) {
            model.vertices[vertex].x = moved[vertex].x;
            model.vertices[vertex].y = moved[vertex].y;
            model.vertices[vertex].z = moved[vertex].z;
        }
    }

    Vertex findMoved(int vertex) const {
        std::vector<int> neighbours;
        std::vector<int> boundary;
        const auto [begin, end] = vertexToEdges.equal_range(vertex);
        for (auto entry = begin; entry != end; ++entry) {
            const Edge& edge = entry->second;
            const int neighbour = edge.first == vertex ? edge.second : edge.first;
            neighbours.push_back(neighbour);
            if (edgeToFaces.count(edge) == 1)
                boundary.push_back(neighbour);
        }
        if (neighbours.empty())
            return Vertex();
        const Vertex& own = vertexAt(vertex);
        Vertex moved;
        if (!boundary.empty()) {
            const Vertex& b0 = vertexAt(boundary[0]);
            const Vertex& b1 = vertexAt(boundary.size() > 1 ? boundary[1] : boundary[0]);
            moved.x = 0.75 * own.x + 0.125 * (b0.x + b1.x);
            moved.y = 0.75 * own.y + 0.125 * (b0.y + b1.y);
            moved.z = 0.75 * own.z + 0.125 * (b0.z + b1.z);
            return moved;
        }
        // The sum starts at zero.
        Vertex sum;
        for (const int neighbour : neighbours) {
            sum.x += vertexAt(neighbour).x;
            sum.y += vertexAt(neighbour).y;
            sum.z += vertexAt(neighbour).z;
        }
        const int n = static_cast<int>(neighbours.size());
        const double beta = slowBeta(n);
        moved.x = (1 - n * beta) * own.x + beta * sum.x;
        moved.y = (1 - n * beta) * own.y + beta * sum.y;
        moved.z = (1 - n * beta) * own.z + beta * sum.z;
        return moved;
    }

    ObjModel& model;

    // Entries under one key stand in the order in which they were made.
    std::multimap<int, Edge> vertexToEdges;
    std::multimap<Edge, int> edgeToFaces;
    std::map<Edge, int> edgeToNewVertex;
};

}  // namespace

void subdivideOnceSlowly(ObjModel& model) {
    SlowRound(model).run();
}

}  // namespace obj_adapter::test
