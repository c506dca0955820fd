// Comparison with the slow twins of tests/support/.
#include "stages/slowTwinChecks.h"

#include "measuring/answers.h"
#include "meshes/benchMeshes.h"
#include "model/objModel.h"
#include "processing/compaction.h"
#include "processing/subdivision.h"
#include "processing/triangulation.h"
#include "stages/polygons.h"
#include "support/slowCompaction.h"
#include "support/slowSubdivision.h"
#include "support/slowTriangulation.h"

#include <stdexcept>

namespace obj_adapter::bench {

namespace {

std::uint64_t hashOf(ObjModel& model) {
    return hashPrintedModel(test::viewOfModel(model));
}

void require(bool isSame, const std::string& what) {
    if (!isSame)
        throw std::runtime_error(what + " differs from the slow twin");
}

// Points on a small lattice, so that many coincide; faces over any of them.
void fillWithCoincidences(std::uint64_t seed, ObjModel& model) {
    constexpr int VERTICES = 400;
    constexpr int FACES = 900;
    test::RandomSource random(seed);
    model.groups.emplace_back().name = "first";
    for (int vertex = 0; vertex < VERTICES; ++vertex) {
        Vertex point(random.below(5), random.below(5), random.below(5));
        point.w = random.below(2);
        model.addVertex(point);
    }
    for (int face = 0; face < FACES; ++face) {
        if (face == FACES / 2)
            model.groups.emplace_back().name = "second";
        Face triangle;
        for (FaceElement& corner : triangle.elements)
            corner.vertexIndex = random.below(VERTICES);
        model.addFaceInCurrentGroup(triangle);
    }
}

void checkCompaction() {
    constexpr std::uint64_t SEEDS = 20;
    for (std::uint64_t seed = 0; seed < SEEDS; ++seed) {
        ObjModel ours;
        ObjModel slow;
        fillWithCoincidences(seed, ours);
        fillWithCoincidences(seed, slow);
        compactData(ours);
        test::compactDataSlowly(slow);
        require(hashOf(ours) == hashOf(slow), "compaction");
    }
}

void checkSubdivision(const test::Mesh& mesh, const std::string& name) {
    constexpr int ROUNDS = 3;
    ObjModel ours;
    ObjModel slow;
    test::fillModel(mesh, ours);
    test::fillModel(mesh, slow);
    for (int round = 0; round < ROUNDS; ++round) {
        subdivide(LIMIT_ITERATIONS, 1, ours);
        test::subdivideOnceSlowly(slow);
        require(hashOf(ours) == hashOf(slow), "subdivision of the " + name);
    }
}

void checkTriangulation(const std::string& kind, int corners) {
    PolygonSet set;
    makePolygons(kind, corners, set);
    Triangulator triangulator;
    std::vector<Face> ours;
    std::vector<Face> slow;
    for (const std::vector<FaceElement>& polygon : set.polygons) {
        ours.clear();
        slow.clear();
        triangulator.triangulate(set.model, polygon, ours, true);
        std::vector<FaceElement> rest = polygon;
        test::slow::triangulate(set.model, rest, slow);
        test::ModelView ourView;
        test::ModelView slowView;
        ourView.faces = ours;
        slowView.faces = slow;
        require(hashPrintedModel(ourView) == hashPrintedModel(slowView),
                "triangulation of a " + kind);
    }
}

}  // namespace

void checkAgainstSlowTwins(const Arguments& /*arguments*/, Measured& /*measured*/) {
    constexpr int GRID_TRIANGLES = 500;
    constexpr int FAN_TRIANGLES = 50;
    constexpr int MANY_CORNERS = 120;
    checkCompaction();
    checkSubdivision(makeBenchMesh("grid", GRID_TRIANGLES), "grid");
    checkSubdivision(makeBenchMesh("fan", FAN_TRIANGLES), "fan");
    for (const char* kind : {"convex", "comb", "saw", "spiral", "blocked"})
        checkTriangulation(kind, MANY_CORNERS);
    checkTriangulation("quad", 4);
    checkTriangulation("dart", 4);
    checkTriangulation("pentagon", 5);
}

}  // namespace obj_adapter::bench
