// meshoptimizer merges equal vertices.
#include "meshes/benchPoints.h"
#include "peers/subdividers.h"

#include <meshoptimizer.h>

#include <cstddef>
#include <vector>

namespace obj_adapter::bench {

void mergeWithMeshoptimizer(const Arguments& arguments, Measured& measured) {
    const std::int64_t count = std::stoll(arguments.at(1));
    const BenchPoints input(arguments.at(0), count);
    std::vector<BenchPoint> points;
    points.reserve(static_cast<std::size_t>(count));
    for (std::int64_t number = 0; number < count; ++number)
        points.push_back(input.at(number));

    std::vector<unsigned> remap;
    std::vector<BenchPoint> different;
    measured.time("sort", [&] {
        remap.resize(points.size());
        const std::size_t kept = meshopt_generateVertexRemap(
            remap.data(), nullptr, points.size(), points.data(), points.size(), sizeof(BenchPoint));
        different.resize(kept);
        meshopt_remapVertexBuffer(different.data(), points.data(), points.size(),
                                  sizeof(BenchPoint), remap.data());
    });
    measured.setCount("vertices", static_cast<double>(different.size()));
}

}  // namespace obj_adapter::bench
