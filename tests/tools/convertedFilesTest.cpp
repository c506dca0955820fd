// What the program writes is read by a library of others, which must find as many
// faces in it.
#include "glbWriter.h"
#include "objWriter.h"
#include "plyWriter.h"
#include "stlWriter.h"

#include "support/modelFiles.h"
#include "tools/importedText.h"

#include <assimp/scene.h>
#include <gtest/gtest.h>
#include <assimp/Importer.hpp>

#include <string>

namespace obj_adapter::test {

namespace {

struct ReadCounts {
    bool isRead = false;
    std::size_t vertices = 0;
    std::size_t faces = 0;
    std::size_t meshes = 0;
};

ReadCounts readWithOthers(const std::string& fileName) {
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(fileName, 0);
    ReadCounts counts;
    counts.isRead = scene != nullptr;
    if (scene == nullptr)
        return counts;
    counts.meshes = scene->mNumMeshes;
    for (unsigned mesh = 0; mesh < scene->mNumMeshes; ++mesh) {
        counts.vertices += scene->mMeshes[mesh]->mNumVertices;
        counts.faces += scene->mMeshes[mesh]->mNumFaces;
    }
    return counts;
}

class ConvertedFile {
public:
    explicit ConvertedFile(const std::string& fileName) {
        settings.fileName = fileName;
        run = importQuietly(settings);
    }

    tool::ModelAccess getModel() const { return tool::ModelAccess(*ObjConverter::getInstance()); }

    template <typename Writer>
    ReadCounts convert(const std::string& name, Writer writer) const {
        tool::OutputFile file(pathFromUtf8(directory.getPath() + name));
        writer(file);
        file.commit();
        return readWithOthers(directory.getPath() + name);
    }

    tool::ImportSettings settings;
    tool::ImportRun run;

private:
    TemporaryDirectory directory;
};

void expectSameCounts(const std::string& fileName) {
    SCOPED_TRACE(fileName);
    const ConvertedFile file(fileName);
    const tool::ModelAccess model = file.getModel();
    const auto faces = static_cast<std::size_t>(model.getNumberOfFaces());
    ASSERT_GT(faces, 0U);

    const ReadCounts stl =
        file.convert("a.stl", [&](tool::OutputFile& output) { tool::writeStl(output, model); });
    EXPECT_EQ(stl.faces, faces);
    EXPECT_EQ(stl.vertices, faces * CORNERS_PER_FACE);

    const ReadCounts ply =
        file.convert("a.ply", [&](tool::OutputFile& output) { tool::writePly(output, model); });
    EXPECT_EQ(ply.faces, faces);
    EXPECT_EQ(ply.vertices, static_cast<std::size_t>(model.getNumberOfVertices()));

    // Without materials: of those the reader has an idea of its own.
    const ReadCounts obj =
        file.convert("a.obj", [&](tool::OutputFile& output) { tool::writeObj(output, model, ""); });
    EXPECT_EQ(obj.faces, faces);

    const ReadCounts glb = file.convert("a.glb", [&](tool::OutputFile& output) {
        tool::writeGlb(output, model, tool::TextureFiles(file.settings, file.run), {});
    });
    EXPECT_EQ(glb.faces, faces);
}

TEST(ConvertedFilesTest, Samples) {
    for (const std::string& fileName : findObjFiles(OBJ_ADAPTER_SAMPLES))
        expectSameCounts(fileName);
    expectSameCounts(OBJ_ADAPTER_SCENE);
}

TEST(ConvertedFilesTest, Models) {
    if (getModelFolder().empty())
        GTEST_SKIP() << "OBJ_ADAPTER_MODELS is not set";
    for (const std::string& fileName : findObjFiles(getModelFolder()))
        expectSameCounts(fileName);
}

// The reader takes the MTL file that is written as well.
TEST(ConvertedFilesTest, MaterialsOfAnObjFile) {
    const ImportedText imported(
        "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nusemtl red\nf 1 2 3\nusemtl green\n"
        "f 1 2 4\n",
        {{"a.mtl", "newmtl red\nKd 1 0 0\nNs 1e-7\nnewmtl green\nKd 0 0.123456789 0\n"}});
    const std::string folder = imported.getFolder();
    tool::OutputFile mtl(pathFromUtf8(folder + "out.mtl"));
    tool::writeMtl(mtl, imported.getModel());
    mtl.commit();
    tool::OutputFile obj(pathFromUtf8(folder + "out.obj"));
    tool::writeObj(obj, imported.getModel(), "out.mtl");
    obj.commit();

    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(folder + "out.obj", 0);
    ASSERT_NE(scene, nullptr) << importer.GetErrorString();
    bool foundGreen = false;
    for (unsigned index = 0; index < scene->mNumMaterials; ++index) {
        aiString name;
        aiColor3D color;
        scene->mMaterials[index]->Get(AI_MATKEY_NAME, name);
        scene->mMaterials[index]->Get(AI_MATKEY_COLOR_DIFFUSE, color);
        if (std::string(name.C_Str()) != "green")
            continue;
        foundGreen = true;
        EXPECT_FLOAT_EQ(color.g, 0.123456789F);
    }
    EXPECT_TRUE(foundGreen);
}

}  // namespace

}  // namespace obj_adapter::test
