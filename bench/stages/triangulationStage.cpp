// Triangulation alone, of generated polygons and of those of a file.
#include "stages/triangulationStage.h"

#include "measuring/answers.h"
#include "processing/triangulation.h"
#include "stages/numberFloor.h"
#include "stages/polygons.h"
#include "support/slowTriangulation.h"

#include <vector>

namespace obj_adapter::bench {

namespace {

constexpr char PART[] = "triangulate";

// Splits polygons one after the other, again from the first when all are done.
// The answer is that of all triangles of each once.
template <typename Split>
void timePolygons(const Arguments& arguments, Measured& measured, Split split) {
    PolygonSet set;
    makePolygons(arguments.at(0), std::stoi(arguments.at(1)), set);
    const std::size_t polygons = std::stoul(arguments.at(2));
    std::vector<Face> triangles;
    std::vector<Face> all;
    for (const std::vector<FaceElement>& corners : set.polygons) {
        triangles.clear();
        split(set.model, corners, triangles);
        all.insert(all.end(), triangles.begin(), triangles.end());
    }
    measured.time(PART, [&] {
        for (std::size_t polygon = 0; polygon < polygons; ++polygon) {
            triangles.clear();
            split(set.model, set.polygons[polygon % set.polygons.size()], triangles);
        }
    });
    measured.setCount("triangles", static_cast<double>(all.size()));
    test::ModelView view;
    view.faces = all;
    measured.setAnswer(hashGeometry(view));
}

// Keeps the vertices and the polygons of a file.
class PolygonSink {
public:
    void addVertex(double x, double y, double z, double /*w*/) {
        Vertex vertex(x, y, z);
        model.addVertex(vertex);
    }
    void addTexturePoint(double, double, double) {}
    void addNormal(double, double, double) {}
    void addCorner(const RawCorner& raw) {
        FaceElement corner;
        corner.vertexIndex =
            raw.indices[0] < 0 ? raw.indices[0] + model.getNumberOfVertices() : raw.indices[0] - 1;
        corners.push_back(corner);
    }
    void endFace() {
        if (corners.size() > CORNERS_PER_FACE)
            polygons.push_back(corners);
        corners.clear();
    }
    void changeGroup() {}
    void changeMaterial() {}

    ObjModel model;
    std::vector<std::vector<FaceElement>> polygons;

private:
    std::vector<FaceElement> corners;
};

}  // namespace

void triangulatePolygons(const Arguments& arguments, Measured& measured) {
    Triangulator triangulator;
    timePolygons(arguments, measured,
                 [&](const ObjModel& model, const std::vector<FaceElement>& corners,
                     std::vector<Face>& triangles) {
                     triangulator.triangulate(model, corners, triangles, true);
                 });
}

void triangulatePolygonsSlowly(const Arguments& arguments, Measured& measured) {
    timePolygons(arguments, measured,
                 [](const ObjModel& model, const std::vector<FaceElement>& corners,
                    std::vector<Face>& triangles) {
                     std::vector<FaceElement> rest = corners;
                     test::slow::triangulate(model, rest, triangles);
                 });
}

void triangulateFile(const Arguments& arguments, Measured& measured) {
    PolygonSink sink;
    PlainReader<PolygonSink>(sink).read(arguments.at(0));
    Triangulator triangulator;
    std::vector<Face> triangles;
    std::size_t count = 0;
    measured.time(PART, [&] {
        for (const std::vector<FaceElement>& corners : sink.polygons) {
            triangles.clear();
            triangulator.triangulate(sink.model, corners, triangles, true);
            count += triangles.size();
        }
    });
    measured.setCount("triangles", static_cast<double>(count));
}

}  // namespace obj_adapter::bench
