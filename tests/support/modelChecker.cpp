#include "support/modelChecker.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace obj_adapter::test {

namespace {

class Checker {
public:
    Checker(const ModelView& ownModel, ModelState ownState) : model(ownModel), state(ownState) {}

    std::string run() {
        checkPositions(model.vertices, "vertex");
        checkPositions(model.texturePoints, "texture point");
        checkPositions(model.normalPoints, "normal");
        checkMembership();
        if (state != ModelState::ENDED_EARLY)
            checkFaceIndices();
        if (state == ModelState::COMPACTED)
            checkOrder();
        if (state == ModelState::COMPACTED || state == ModelState::SUBDIVIDED)
            checkCompactFaces();
        return violations;
    }

private:
    void require(bool holds, const std::string& violation) {
        constexpr int MAX_VIOLATIONS = 20;
        if (!holds && ++numberOfViolations <= MAX_VIOLATIONS)
            violations += violation + "\n";
    }

    template <typename Records>
    void checkPositions(const Records& records, const std::string& what) {
        for (std::size_t position = 0; position < records.size(); ++position)
            require(records[position].index == static_cast<int>(position),
                    what + " " + std::to_string(position) + " has the index " +
                        std::to_string(records[position].index));
    }

    // Each face in exactly the group that lists it, exactly once; materials in
    // range.
    void checkMembership() {
        std::vector<int> listings(model.faces.size());
        for (std::size_t group = 0; group < model.groups.size(); ++group) {
            for (const int face : model.groups[group].faceIndices) {
                const bool isFace = face >= 0 && face < static_cast<int>(model.faces.size());
                require(isFace, "group " + std::to_string(group) + " lists the face " +
                                    std::to_string(face));
                if (!isFace)
                    continue;
                ++listings[static_cast<std::size_t>(face)];
                require(model.faces[static_cast<std::size_t>(face)].groupIndex ==
                            static_cast<int>(group),
                        "group " + std::to_string(group) + " lists the face " +
                            std::to_string(face) + " of another group");
            }
        }
        for (std::size_t face = 0; face < model.faces.size(); ++face) {
            require(listings[face] == 1, "face " + std::to_string(face) + " is listed " +
                                             std::to_string(listings[face]) + " times");
            const int material = model.faces[face].materialIndex;
            require(
                material >= NO_INDEX && material < static_cast<int>(model.materials.size()),
                "face " + std::to_string(face) + " has the material " + std::to_string(material));
        }
    }

    void checkFaceIndices() {
        const auto inTable = [](int index, std::size_t size) {
            return index >= 0 && index < static_cast<int>(size);
        };
        for (std::size_t face = 0; face < model.faces.size(); ++face) {
            for (const FaceElement& corner : model.faces[face].elements) {
                const std::string where = "face " + std::to_string(face);
                // Without vertices the repair of one import leaves NO_INDEX, and that
                // of the next 0.
                require(inTable(corner.vertexIndex, model.vertices.size()) ||
                            (model.vertices.empty() &&
                             (corner.vertexIndex == NO_INDEX || corner.vertexIndex == 0)),
                        where + " has the vertex " + std::to_string(corner.vertexIndex));
                require(corner.textureIndex == NO_INDEX ||
                            inTable(corner.textureIndex, model.texturePoints.size()),
                        where + " has the texture point " + std::to_string(corner.textureIndex));
                require(corner.normalIndex == NO_INDEX ||
                            inTable(corner.normalIndex, model.normalPoints.size()),
                        where + " has the normal " + std::to_string(corner.normalIndex));
            }
        }
    }

    static bool hasNan(const Vertex& vertex) {
        return std::isnan(vertex.x) || std::isnan(vertex.y) || std::isnan(vertex.z);
    }

    // Vertices ascend strictly (NaN aside), faces ascend.
    void checkOrder() {
        for (std::size_t position = 1; position < model.vertices.size(); ++position) {
            const Vertex& earlier = model.vertices[position - 1];
            const Vertex& later = model.vertices[position];
            require(hasNan(earlier) || hasNan(later) || (earlier < later && !(earlier == later)),
                    "vertex " + std::to_string(position) + " does not ascend");
        }
        for (std::size_t position = 1; position < model.faces.size(); ++position)
            require(!(model.faces[position] < model.faces[position - 1]),
                    "face " + std::to_string(position) + " does not ascend");
    }

    // Three different vertices each; group lists ascend.
    void checkCompactFaces() {
        for (std::size_t position = 0; position < model.faces.size(); ++position) {
            const FaceElement* corners = model.faces[position].elements;
            require(corners[0].vertexIndex != corners[1].vertexIndex &&
                        corners[0].vertexIndex != corners[2].vertexIndex &&
                        corners[1].vertexIndex != corners[2].vertexIndex,
                    "face " + std::to_string(position) + " repeats a vertex");
        }
        for (std::size_t group = 0; group < model.groups.size(); ++group) {
            const std::vector<int>& list = model.groups[group].faceIndices;
            for (std::size_t place = 1; place < list.size(); ++place)
                require(list[place - 1] < list[place],
                        "the list of group " + std::to_string(group) + " does not ascend");
        }
    }

    const ModelView& model;
    ModelState state;
    std::string violations;
    int numberOfViolations = 0;
};

}  // namespace

std::string findViolations(const ModelView& model, ModelState state) {
    return Checker(model, state).run();
}

}  // namespace obj_adapter::test
