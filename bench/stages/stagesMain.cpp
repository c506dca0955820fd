// Single stages of the library, reached from inside, and the floors beside them.
#include "measuring/contender.h"
#include "stages/compactionStage.h"
#include "stages/readingFloors.h"
#include "stages/slowTwinChecks.h"
#include "stages/subdivisionStage.h"
#include "stages/triangulationStage.h"

namespace obj_adapter::bench {

namespace {

constexpr Command COMMANDS[] = {
    {"bytes", "FILE", &readBytes},
    {"lines", "FILE", &findLines},
    {"numbers", "FILE", &convertNumbers},
    {"records", "FILE", &writeRecords},
    {"check", "", &checkAgainstSlowTwins},
    {"compact-vertices", "random|sixfold|file|equal-x COUNT", &compactVertices},
    {"sort-vertices", "random|sixfold|file|equal-x COUNT", &sortVerticesPlainly},
    {"compact-faces", "shuffled|file|sixfold COUNT", &compactFaces},
    {"bucket-sort-faces", "shuffled|file|sixfold COUNT", &sortFacesAlone},
    {"sort-faces", "shuffled|file|sixfold COUNT", &sortFacesPlainly},
    {"subdivide", "grid|fan TRIANGLES ROUNDS [textured]", &subdivideMesh},
    {"tables", "FACES VERTICES TEXTURE_POINTS small|huge", &writeTables},
    {"triangulate", "KIND CORNERS POLYGONS", &triangulatePolygons},
    {"triangulate-slowly", "KIND CORNERS POLYGONS", &triangulatePolygonsSlowly},
    {"triangulate-file", "FILE", &triangulateFile},
};

}  // namespace

}  // namespace obj_adapter::bench

int main(int argc, char** argv) {
    return obj_adapter::bench::runContender(argc, argv, obj_adapter::bench::COMMANDS);
}
