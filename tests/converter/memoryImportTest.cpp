// Importing texts in memory: the same import as that of a file.
#include "support/messageRecorder.h"
#include "support/modelChecker.h"
#include "support/modelFiles.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <obj_adapter/objConverter.h>

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace obj_adapter::test {

namespace {

// A host that has its libraries in memory.
struct Libraries {
    std::map<std::string, std::string> texts;
    std::string asked;
    bool throws = false;

    static bool open(void* userData, const char* libraryName, const char** text,
                     std::size_t* size) {
        Libraries& libraries = *static_cast<Libraries*>(userData);
        libraries.asked += std::string(libraryName) + ";";
        if (libraries.throws)
            throw std::runtime_error("the host's own");
        const auto found = libraries.texts.find(libraryName);
        if (found == libraries.texts.end())
            return false;
        *text = found->second.data();
        *size = found->second.size();
        return true;
    }
};

const char* const SMALL_OBJ =
    "mtllib a.mtl\n"
    "v 0 0 0\nv 1 0 0\nv 0 1 0\n"
    "usemtl red\n"
    "f 1 2 3\n";

class MemoryImportTest : public testing::Test {
protected:
    MemoryImportTest() {
        ObjConverter::clearInstance();
        recorder.install();
    }
    ~MemoryImportTest() override { ObjConverter::clearInstance(); }

    static ObjConverter& converter() { return *ObjConverter::getInstance(); }

    int import(const std::string& text, const char* name = "cube.obj") {
        return converter().importObjDataFromMemory(name, text.data(), text.size(), &Libraries::open,
                                                   &libraries);
    }

    MessageRecorder recorder;
    Libraries libraries;
};

TEST_F(MemoryImportTest, readsTheTextAndItsLibrary) {
    libraries.texts["a.mtl"] = "newmtl red\nKd 1 0 0\n";
    EXPECT_EQ(import(SMALL_OBJ), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(recorder.getText(),
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "3|Using Mtllib file: a.mtl\n"
              "3|Done reading input.\n"
              "3|Compacting...\n"
              "3|Done compacting.\n"
              "3|Obj data import complete.\n");
    EXPECT_EQ(libraries.asked, "a.mtl;");
    ASSERT_EQ(converter().getNumberOfFaces(), 1);
    EXPECT_EQ(converter().getFace(0)->getMaterialIndex(), 0);
    EXPECT_EQ(converter().getGroup(0)->name, "cube");
}

TEST_F(MemoryImportTest, aLibraryThatIsNotThereIsReported) {
    for (const bool throws : {false, true}) {
        libraries.throws = throws;
        recorder.clear();
        EXPECT_EQ(import(SMALL_OBJ), ObjConverter::CONVERTER_OK);
        EXPECT_NE(recorder.getText().find("1|Could not find material library a.mtl\n"
                                          "1|Could not find material \"red\" But saw 1 "
                                          "references.\n"),
                  std::string::npos)
            << recorder.getText();
    }
}

TEST_F(MemoryImportTest, withoutTheFunctionThereIsNoLibrary) {
    const std::string text = SMALL_OBJ;
    EXPECT_EQ(
        converter().importObjDataFromMemory("cube.obj", text.data(), text.size(), nullptr, nullptr),
        ObjConverter::CONVERTER_OK);
    EXPECT_NE(recorder.getText().find("1|Could not find material library a.mtl\n"),
              std::string::npos);
}

TEST_F(MemoryImportTest, aTextNeedsAName) {
    for (const char* name : {static_cast<const char*>(nullptr), ""}) {
        recorder.clear();
        EXPECT_EQ(import(SMALL_OBJ, name), ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(recorder.getText(), "1|No input file specified.\n");
    }
}

TEST_F(MemoryImportTest, anEmptyTextIsAnEmptyModel) {
    EXPECT_EQ(import(""), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfGroups(), 1);
    EXPECT_EQ(converter().importObjDataFromMemory("cube.obj", nullptr, 7, nullptr, nullptr),
              ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfVertices(), 0);
}

TEST_F(MemoryImportTest, aLibraryMayBeEmpty) {
    libraries.texts["a.mtl"] = "";
    EXPECT_EQ(import("mtllib a.mtl\n"), ObjConverter::CONVERTER_OK);
    EXPECT_NE(recorder.getText().find("3|Using Mtllib file: a.mtl\n"), std::string::npos);
}

TEST_F(MemoryImportTest, leavesTheInputForFilesAlone) {
    const TemporaryDirectory directory;
    converter().setInput(directory.write("file.obj", "v 1 2 3\nv 4 5 6\n").c_str());
    EXPECT_EQ(import("v 1 2 3\n"), ObjConverter::CONVERTER_OK);
    ObjConverter::getInstance()->setDataCompaction(false);
    EXPECT_EQ(converter().importObjDataFromFile(nullptr), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfVertices(), 3);
}

TEST_F(MemoryImportTest, bytesAreReadAsTheyAre) {
    converter().setDataCompaction(false);
    EXPECT_EQ(import(std::string("v 1 2 \\\r\n3\r\nv 1 2 3\x1A\nv 4 5 6\n")),
              ObjConverter::CONVERTER_OK);
    // A carriage return stands between the backslash and the line feed.
    EXPECT_NE(recorder.getText().find("1|Error processing vertex: No float value found\n"),
              std::string::npos);
    EXPECT_EQ(converter().getNumberOfVertices(), 3);
}

bool importAgain(void*, int, double) {
    EXPECT_EQ(ObjConverter::getInstance()->importObjDataFromMemory("cube.obj", "v 1 2 3\n", 8,
                                                                   nullptr, nullptr),
              ObjConverter::CONVERTER_ERROR);
    return true;
}

TEST_F(MemoryImportTest, isRefusedInsideACallback) {
    converter().setProgressCallback(&importAgain, nullptr);
    EXPECT_EQ(import("v 1 2 3\n"), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter().getNumberOfVertices(), 1);
}

// Every sample, with its library, from files and from memory.
TEST_F(MemoryImportTest, givesTheModelOfTheFile) {
    const std::string samples = std::string(OBJ_ADAPTER_SAMPLES) + "/";
    for (const char* name : {"groups", "polygons", "repairs", "tetrahedron"}) {
        SCOPED_TRACE(name);
        const std::string fileName = samples + name + ".obj";
        const auto importIt = [&](bool fromMemory) {
            ObjConverter::clearInstance();
            recorder.install();
            recorder.clear();
            converter().setSkipPolygonsWithoutEar(true);
            converter().setSubdivisionRounds("ITERATIONS", 1);
            int code = 0;
            if (fromMemory) {
                libraries.texts["repairs.mtl"] = readFileBytes(samples + "repairs.mtl");
                code = import(readFileBytes(fileName), (std::string(name) + ".obj").c_str());
            } else {
                code = converter().importObjDataFromFile(fileName.c_str());
            }
            std::string messages = recorder.getText();
            const std::string place = "file: " + samples;
            for (std::size_t at; (at = messages.find(place)) != std::string::npos;)
                messages.erase(at + 6, samples.size());
            return std::to_string(code) + messages + printModel(viewOf(converter()));
        };
        EXPECT_EQ(importIt(true), importIt(false));
    }
}

}  // namespace

}  // namespace obj_adapter::test
