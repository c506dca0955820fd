// assimp reads.
#include "peers/readers.h"

#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <assimp/Importer.hpp>

#include <stdexcept>

namespace obj_adapter::bench {

namespace {

void read(const Arguments& arguments, unsigned steps, Measured& measured) {
    Assimp::Importer importer;
    const aiScene* scene = nullptr;
    measured.time("import", [&] { scene = importer.ReadFile(arguments.at(0), steps); });
    if (scene == nullptr)
        throw std::runtime_error(std::string("assimp: ") + importer.GetErrorString());
    double faces = 0;
    double vertices = 0;
    for (unsigned mesh = 0; mesh < scene->mNumMeshes; ++mesh) {
        faces += scene->mMeshes[mesh]->mNumFaces;
        vertices += scene->mMeshes[mesh]->mNumVertices;
    }
    measured.setCount("faces", faces);
    measured.setCount("vertices", vertices);
    measured.setCount("materials", scene->mNumMaterials);
}

}  // namespace

void readWithAssimp(const Arguments& arguments, Measured& measured) {
    read(arguments, aiProcess_Triangulate, measured);
}

void readAndJoinWithAssimp(const Arguments& arguments, Measured& measured) {
    read(arguments, aiProcess_Triangulate | aiProcess_JoinIdenticalVertices, measured);
}

}  // namespace obj_adapter::bench
