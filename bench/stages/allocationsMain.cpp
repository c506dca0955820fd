// Counts what triangulation asks of the heap.
#include "measuring/contender.h"
#include "processing/triangulation.h"
#include "stages/polygons.h"
#include "support/countedMemory.h"

#include <vector>

namespace obj_adapter::bench {

namespace {

// KIND CORNERS: allocations of the first polygon, with a new Triangulator, and of
// one more. Room for the triangles is there.
void triangulate(const Arguments& arguments, Measured& measured) {
    const int corners = std::stoi(arguments.at(1));
    PolygonSet set;
    makePolygons(arguments.at(0), corners, set);
    std::vector<Face> triangles;
    triangles.reserve(static_cast<std::size_t>(corners));
    Triangulator triangulator;
    for (const char* which : {"first", "next"}) {
        triangles.clear();
        const std::size_t before = test::getNumberOfAllocations();
        triangulator.triangulate(set.model, set.polygons.front(), triangles, true);
        measured.setCount(which, static_cast<double>(test::getNumberOfAllocations() - before));
    }
}

constexpr Command COMMANDS[] = {{"triangulate", "KIND CORNERS", &triangulate}};

}  // namespace

}  // namespace obj_adapter::bench

int main(int argc, char** argv) {
    return obj_adapter::bench::runContender(argc, argv, obj_adapter::bench::COMMANDS);
}
