// Triangulation against its slow twin: the same triangles in the same order, or the
// same refusal.
#include "fuzzing.h"
#include "model/objModel.h"
#include "processing/triangulation.h"
#include "support/slowTriangulation.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace obj_adapter;

std::string describe(const std::vector<Face>& triangles) {
    std::string text;
    for (const Face& triangle : triangles) {
        for (const FaceElement& corner : triangle.elements)
            text += std::to_string(corner.vertexIndex) + "/" + std::to_string(corner.textureIndex) +
                    "/" + std::to_string(corner.normalIndex) + " ";
    }
    return text;
}

// A failure's kind is what counts: the library has its own text for polygons without
// an ear, on which the twin gives up.
std::string resultOf(const ObjModel& model, const std::vector<FaceElement>& corners) {
    static Triangulator triangulator;
    std::vector<Face> triangles;
    try {
        triangulator.triangulate(model, corners, triangles, true);
    } catch (const std::runtime_error& failure) {
        return std::string(failure.what()) == "Polygon without an ear" ? "no ear" : "a line";
    }
    return describe(triangles);
}

std::string expectedResult(const ObjModel& model, std::vector<FaceElement> corners) {
    std::vector<Face> triangles;
    try {
        test::slow::triangulate(model, corners, triangles);
    } catch (const std::logic_error&) {
        return "no ear";
    } catch (const std::runtime_error&) {
        return "a line";
    }
    return describe(triangles);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Bytes bytes(data, size);
    constexpr std::size_t MOST_CORNERS = 48;
    ObjModel model;
    std::vector<FaceElement> corners;
    const bool isFlat = bytes.below(2) == 0;
    while (!bytes.empty() && corners.size() < MOST_CORNERS) {
        const double x = fuzz::nextCoordinate(bytes);
        const double y = fuzz::nextCoordinate(bytes);
        const double z = isFlat ? 0.0 : fuzz::nextCoordinate(bytes);
        Vertex vertex(x, y, z);
        const int number = model.addVertex(vertex);
        corners.push_back({number, number + 100, -number});
    }
    if (corners.size() < 4)
        return 0;
    fuzz::requireEqual(resultOf(model, corners), expectedResult(model, corners), "triangles");
    return 0;
}
