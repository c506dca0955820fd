// OpenSubdiv subdivides.
#include "meshes/benchMeshes.h"
#include "peers/subdividers.h"

#include <opensubdiv/far/primvarRefiner.h>
#include <opensubdiv/far/topologyDescriptor.h>

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

namespace obj_adapter::bench {

namespace {

namespace osd = OpenSubdiv::OPENSUBDIV_VERSION;

// The form in which the refiner wants its points.
struct RefinedPoint {
    std::array<double, 3> position = {0, 0, 0};

    void Clear() { position = {0, 0, 0}; }
    void AddWithWeight(const RefinedPoint& other, double weight) {
        for (std::size_t axis = 0; axis < position.size(); ++axis)
            position[axis] += weight * other.position[axis];
    }
};

using Refiner = std::unique_ptr<osd::Far::TopologyRefiner>;

Refiner makeRefiner(const osd::Far::TopologyDescriptor& descriptor) {
    using Factory = osd::Far::TopologyRefinerFactory<osd::Far::TopologyDescriptor>;
    osd::Sdc::Options options;
    options.SetVtxBoundaryInterpolation(osd::Sdc::Options::VTX_BOUNDARY_EDGE_ONLY);
    return Refiner(Factory::Create(descriptor, Factory::Options(osd::Sdc::SCHEME_LOOP, options)));
}

void refine(osd::Far::TopologyRefiner& refiner, int rounds, std::vector<RefinedPoint>& points) {
    refiner.RefineUniform(osd::Far::TopologyRefiner::UniformOptions(rounds));
    const osd::Far::PrimvarRefinerReal<double> positions(refiner);
    for (int level = 1; level <= rounds; ++level) {
        std::vector<RefinedPoint> finer(
            static_cast<std::size_t>(refiner.GetLevel(level).GetNumVertices()));
        positions.Interpolate(level, points, finer);
        points = std::move(finer);
    }
}

}  // namespace

void subdivideWithOpenSubdiv(const Arguments& arguments, Measured& measured) {
    const test::Mesh mesh = makeBenchMesh(arguments.at(0), std::stoi(arguments.at(1)));
    const int rounds = std::stoi(arguments.at(2));
    const std::vector<int> cornerCounts(mesh.triangles.size(), 3);
    std::vector<int> corners;
    for (const auto& triangle : mesh.triangles)
        corners.insert(corners.end(), triangle.begin(), triangle.end());
    osd::Far::TopologyDescriptor descriptor;
    descriptor.numVertices = static_cast<int>(mesh.points.size());
    descriptor.numFaces = static_cast<int>(mesh.triangles.size());
    descriptor.numVertsPerFace = cornerCounts.data();
    descriptor.vertIndicesPerFace = corners.data();
    std::vector<RefinedPoint> points(mesh.points.size());
    for (std::size_t point = 0; point < points.size(); ++point)
        points[point].position = mesh.points[point];

    Refiner refiner;
    measured.time("rounds", [&] {
        refiner = makeRefiner(descriptor);
        refine(*refiner, rounds, points);
    });

    double sum = 0;
    for (const RefinedPoint& point : points)
        sum += weighPosition(point.position[0], point.position[1], point.position[2]);
    measured.setCount("sum", sum);
    measured.setCount("faces", refiner->GetLevel(rounds).GetNumFaces());
    measured.setCount("vertices", refiner->GetLevel(rounds).GetNumVertices());
}

}  // namespace obj_adapter::bench
