// The life of the converter, its settings and its getters.
#include "converter/converterState.h"

#include <gtest/gtest.h>
#include <obj_adapter/obj_adapter.h>

#include <string>

namespace obj_adapter::test {
namespace {

// A fresh converter for every test.
class ConverterTest : public testing::Test {
protected:
    void SetUp() override {
        ObjConverter::clearInstance();
        converter = ObjConverter::getInstance();
    }
    void TearDown() override { ObjConverter::clearInstance(); }

    static const ConverterSettings& settings() { return currentConverterState()->settings; }

    ObjConverter* converter = nullptr;
};

void expectDefaults(const ConverterSettings& settings) {
    EXPECT_EQ(settings.subdivisionLimitType, "");
    EXPECT_EQ(settings.subdivisionRounds, 0);
    EXPECT_TRUE(settings.dataCompaction);
    EXPECT_FALSE(settings.useGroupNameHierarchy);
    EXPECT_FALSE(settings.reverseGroupNames);
    EXPECT_TRUE(settings.showLastNamesOnly);
    EXPECT_FALSE(settings.skipPolygonsWithoutEar);
    EXPECT_EQ(settings.inputPath, "");
    EXPECT_EQ(settings.inputFile, "");
    EXPECT_EQ(settings.outputPath, "");
    EXPECT_EQ(settings.outputFile, "");
}

void ignoreMessage(int /*level*/, const char* /*text*/) {}

TEST_F(ConverterTest, startsWithDefaults) {
    expectDefaults(settings());
    EXPECT_EQ(currentConverterState()->messageCallback, nullptr);
    EXPECT_EQ(converter->getNumberOfVertices(), 0);
    EXPECT_EQ(converter->getNumberOfVertexTextures(), 0);
    EXPECT_EQ(converter->getNumberOfVertexNormals(), 0);
    EXPECT_EQ(converter->getNumberOfFaces(), 0);
    EXPECT_EQ(converter->getNumberOfGroups(), 0);
    EXPECT_EQ(converter->getNumberOfMaterials(), 0);
}

TEST_F(ConverterTest, thereIsOne) {
    EXPECT_EQ(ObjConverter::getInstance(), converter);
}

TEST_F(ConverterTest, clearingGivesDefaultsAgain) {
    converter->setDataCompaction(false);
    converter->setSubdivisionRounds("ITERATIONS", 3);
    converter->setUseGroupNameHierarchy(true);
    converter->setHierarchyReverseGroupNames(true);
    converter->setHierarchyShowLastNamesOnly(false);
    converter->setSkipPolygonsWithoutEar(true);
    converter->setInput("a/b.obj");
    converter->setOutput("c/d.obj");
    converter->setMsgCallback(&ignoreMessage);
    EXPECT_FALSE(settings().dataCompaction);
    EXPECT_EQ(settings().subdivisionLimitType, "ITERATIONS");
    EXPECT_EQ(settings().subdivisionRounds, 3);
    EXPECT_TRUE(settings().useGroupNameHierarchy);
    EXPECT_TRUE(settings().reverseGroupNames);
    EXPECT_FALSE(settings().showLastNamesOnly);
    EXPECT_TRUE(settings().skipPolygonsWithoutEar);
    EXPECT_EQ(currentConverterState()->messageCallback, &ignoreMessage);

    ObjConverter::clearInstance();
    EXPECT_EQ(currentConverterState(), nullptr);
    ObjConverter::getInstance();
    expectDefaults(settings());
    EXPECT_EQ(currentConverterState()->messageCallback, nullptr);
}

TEST_F(ConverterTest, clearingTwiceDoesNothing) {
    ObjConverter::clearInstance();
    ObjConverter::clearInstance();
    EXPECT_NE(ObjConverter::getInstance(), nullptr);
}

TEST_F(ConverterTest, aHostThatDeletesItGetsAFreshOne) {
    converter->setDataCompaction(false);
    delete converter;
    EXPECT_EQ(currentConverterState(), nullptr);
    ObjConverter::getInstance();
    expectDefaults(settings());
}

struct PathCase {
    const char* given;
    const char* path;
    const char* file;
};

TEST_F(ConverterTest, inputIsPartedAtTheLastSeparator) {
    const PathCase CASES[] = {
        {"C:\\data\\a.obj", "C:\\data/", "a.obj"},
        {"a.obj", "a.obj/", ""},
        {"./a.obj", "./", "a.obj"},
        {"/a.obj", "/", "a.obj"},
        {"x/y\\z.obj", "x/y/", "z.obj"},
        {"x\\y/z.obj", "x\\y/", "z.obj"},
        {"x/", "x/", ""},
        {"", "/", ""},
        {"a.b/c", "a.b/", "c"},
    };
    for (const PathCase& row : CASES) {
        SCOPED_TRACE(row.given);
        converter->setInput(row.given);
        EXPECT_EQ(settings().inputPath, row.path);
        EXPECT_EQ(settings().inputFile, row.file);
    }
}

TEST_F(ConverterTest, outputIsPartedTooAndLosesItsExtension) {
    const PathCase CASES[] = {
        {"out/result.final.obj", "out/", "result.final"},
        {"out\\result", "out/", "result"},
        {"result.obj", "result.obj/", ""},
        {"out/.obj", "out/", ""},
    };
    for (const PathCase& row : CASES) {
        SCOPED_TRACE(row.given);
        converter->setOutput(row.given);
        EXPECT_EQ(settings().outputPath, row.path);
        EXPECT_EQ(settings().outputFile, row.file);
    }
}

TEST_F(ConverterTest, theOutputFileLosesItsExtension) {
    converter->setOutputFile("result.final.obj");
    EXPECT_EQ(settings().outputFile, "result.final");
    converter->setOutputFile("result");
    EXPECT_EQ(settings().outputFile, "result");
    converter->setOutputFile("");
    EXPECT_EQ(settings().outputFile, "");
}

TEST_F(ConverterTest, pathsAreStoredAsTheyAre) {
    converter->setInputPath("x\\y");
    converter->setInputFile("a/b.obj");
    converter->setOutputPath("z");
    EXPECT_EQ(settings().inputPath, "x\\y");
    EXPECT_EQ(settings().inputFile, "a/b.obj");
    EXPECT_EQ(settings().outputPath, "z");
}

TEST_F(ConverterTest, textsAreCopied) {
    std::string text = "models/";
    converter->setInputPath(text.c_str());
    text.assign("changed");
    EXPECT_EQ(settings().inputPath, "models/");
}

TEST_F(ConverterTest, aNullTextIsTheEmptyOne) {
    converter->setInput("a/b.obj");
    converter->setOutput("a/b.obj");
    converter->setSubdivisionRounds("ITERATIONS", 1);
    converter->setInput(nullptr);
    EXPECT_EQ(settings().inputPath, "/");
    EXPECT_EQ(settings().inputFile, "");
    converter->setInputPath(nullptr);
    converter->setInputFile(nullptr);
    converter->setOutput(nullptr);
    converter->setOutputFile(nullptr);
    converter->setOutputPath(nullptr);
    converter->setSubdivisionRounds(nullptr, -2);
    EXPECT_EQ(settings().inputPath, "");
    EXPECT_EQ(settings().inputFile, "");
    EXPECT_EQ(settings().outputFile, "");
    EXPECT_EQ(settings().outputPath, "");
    EXPECT_EQ(settings().subdivisionLimitType, "");
    EXPECT_EQ(settings().subdivisionRounds, -2);
}

TEST_F(ConverterTest, gettersLendTheRecordsOfTheModel) {
    ObjModel& model = currentConverterState()->model;
    Vertex vertex(1.0, 2.0, 3.0);
    model.addVertex(vertex);
    model.addVertex(vertex);
    TexturePoint texturePoint;
    texturePoint.u = 0.5;
    texturePoint.v = 0.25;
    model.addTexturePoint(texturePoint);
    NormalPoint normal;
    normal.x = normal.y = 0.0;
    normal.z = 1.0;
    model.addNormalPoint(normal);
    model.groups.emplace_back();
    Face face;
    face.setMaterialIndex(7);
    model.addFaceInCurrentGroup(face);
    model.materialTable.addMaterial("red");

    EXPECT_EQ(converter->getNumberOfVertices(), 2);
    EXPECT_EQ(converter->getVertex(1), &model.vertices[1]);
    EXPECT_EQ(converter->getNumberOfVertexTextures(), 1);
    EXPECT_EQ(converter->getVertexTexture(0)->v, 0.25);
    EXPECT_EQ(converter->getNumberOfVertexNormals(), 1);
    EXPECT_EQ(converter->getVertexNormal(0)->z, 1.0);
    EXPECT_EQ(converter->getNumberOfFaces(), 1);
    EXPECT_EQ(converter->getFace(0)->getMaterialIndex(), 7);
    EXPECT_EQ(converter->getNumberOfGroups(), 1);
    EXPECT_EQ(converter->getGroup(0)->getNumberOfFaces(), 1);
    EXPECT_EQ(converter->getNumberOfMaterials(), 1);
    EXPECT_EQ(converter->getMaterial(0)->name, "red");
}

}  // namespace
}  // namespace obj_adapter::test
