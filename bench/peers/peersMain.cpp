// The other libraries, at the same tasks.
#include "measuring/contender.h"
#include "peers/readers.h"
#include "peers/subdividers.h"

namespace obj_adapter::bench {

namespace {

constexpr Command COMMANDS[] = {
    {"tinyobjloader", "FILE", &readWithTinyObjLoader},
    {"assimp", "FILE", &readWithAssimp},
    {"assimp-join", "FILE", &readAndJoinWithAssimp},
    {"openmesh", "FILE", &readWithOpenMesh},
    {"subdivide-opensubdiv", "grid|fan TRIANGLES ROUNDS", &subdivideWithOpenSubdiv},
    {"subdivide-openmesh", "grid|fan TRIANGLES ROUNDS", &subdivideWithOpenMesh},
    {"subdivide-cgal", "grid|fan TRIANGLES ROUNDS", &subdivideWithCgal},
    {"merge-meshoptimizer", "random|sixfold|file|equal-x COUNT", &mergeWithMeshoptimizer},
};

}  // namespace

}  // namespace obj_adapter::bench

int main(int argc, char** argv) {
    return obj_adapter::bench::runContender(argc, argv, obj_adapter::bench::COMMANDS);
}
