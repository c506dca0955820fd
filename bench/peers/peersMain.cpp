// The other libraries, at the same tasks.
#include "measuring/contender.h"
#include "peers/readers.h"

namespace obj_adapter::bench {

namespace {

constexpr Command COMMANDS[] = {
    {"tinyobjloader", "FILE", &readWithTinyObjLoader},
    {"assimp", "FILE", &readWithAssimp},
    {"assimp-join", "FILE", &readAndJoinWithAssimp},
    {"openmesh", "FILE", &readWithOpenMesh},
};

}  // namespace

}  // namespace obj_adapter::bench

int main(int argc, char** argv) {
    return obj_adapter::bench::runContender(argc, argv, obj_adapter::bench::COMMANDS);
}
