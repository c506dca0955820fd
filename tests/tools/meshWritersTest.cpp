// PLY, STL and OBJ as bytes and texts.
#include "objWriter.h"
#include "plyWriter.h"
#include "stlWriter.h"
#include "textureFiles.h"

#include "support/modelFiles.h"
#include "support/modelView.h"
#include "support/printedModel.h"
#include "tools/importedText.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>

namespace obj_adapter::test {

namespace {

std::string written(const std::function<void(tool::OutputFile&)>& write) {
    const TemporaryDirectory directory;
    const std::string name = directory.getPath() + "out";
    tool::OutputFile file(pathFromUtf8(name));
    write(file);
    file.commit();
    return readFileBytes(name);
}

template <typename Value>
Value valueAt(const std::string& bytes, std::size_t place) {
    Value value;
    std::memcpy(&value, bytes.data() + place, sizeof value);
    return value;
}

// Two faces, one of them red, and one at no finite place.
const char* const TWO_FACES =
    "mtllib a.mtl\n"
    "v 0 0 0\nv 1 0 0\nv 0 1 0.5\nv 1 1 nan\n"
    "f 1 2 3\nf 1 3 4\nusemtl red\nf 3 2 1\n";

TEST(PlyWriterTest, VerticesFacesAndColors) {
    const ImportedText imported(TWO_FACES, {{"a.mtl", "newmtl red\nKd 1 0 0\n"}});
    const std::string bytes =
        written([&](tool::OutputFile& file) { tool::writePly(file, imported.getModel()); });
    const std::string header =
        "ply\nformat binary_little_endian 1.0\nelement vertex 4\nproperty double x\n"
        "property double y\nproperty double z\nelement face 2\n"
        "property list uchar int vertex_indices\nproperty uchar red\nproperty uchar green\n"
        "property uchar blue\nend_header\n";
    ASSERT_EQ(bytes.substr(0, header.size()), header);
    ASSERT_EQ(bytes.size(), header.size() + 4 * 24 + 2 * (1 + 12 + 3));
    // Compaction sorts vertices: (0 0 0), (0 1 0.5), (1 0 0), (1 1 nan).
    EXPECT_EQ(valueAt<double>(bytes, header.size() + 24 + 16), 0.5);
    EXPECT_EQ(valueAt<double>(bytes, header.size() + 3 * 24 + 16), 0.0);
    const std::size_t faces = header.size() + 4 * 24;
    EXPECT_EQ(bytes[faces], 3);
    EXPECT_EQ(valueAt<std::int32_t>(bytes, faces + 1), 0);
    EXPECT_EQ(valueAt<std::int32_t>(bytes, faces + 5), 2);
    EXPECT_EQ(valueAt<std::int32_t>(bytes, faces + 9), 1);
    // 0.6 in linear light, and red.
    EXPECT_EQ(static_cast<unsigned char>(bytes[faces + 13]), 203);
    EXPECT_EQ(bytes.substr(faces + 16 + 13), std::string("\xff\0\0", 3));
}

TEST(StlWriterTest, FacetsWithNormals) {
    const ImportedText imported(std::string(TWO_FACES) + "v 1e39 0 0\nf 1 2 5\n");
    const std::string bytes = written(
        [&](tool::OutputFile& file) { EXPECT_EQ(tool::writeStl(file, imported.getModel()), 2); });
    ASSERT_EQ(bytes.size(), 84U + 2 * 50U);
    EXPECT_NE(bytes.substr(0, 5), "solid");
    EXPECT_EQ(valueAt<std::uint32_t>(bytes, 80), 2U);
    // The normal of (0 0 0), (1 0 0), (0 1 0.5).
    EXPECT_EQ(valueAt<float>(bytes, 84), 0.0F);
    EXPECT_FLOAT_EQ(valueAt<float>(bytes, 88), -0.4472136F);
    EXPECT_FLOAT_EQ(valueAt<float>(bytes, 92), 0.8944272F);
    EXPECT_EQ(valueAt<float>(bytes, 96 + 12), 1.0F);
    EXPECT_EQ(valueAt<float>(bytes, 96 + 24 + 8), 0.5F);
}

struct ObjCase {
    const char* title;
    const char* objText;
    const char* mtlText;
    const char* writtenObj;  // without the line that names the program
    const char* writtenMtl;
};

const ObjCase OBJ_CASES[] = {
    {"numbers as short as they can be", "v 0.1 1e-300 -0\nv 1e300 3 0 2\nv 1 2 3\nf 1 2 3\n", "",
     "v 0.1 1e-300 -0\nv 1 2 3\nv 1e+300 3 0 2\ng test\nf 1 3 2\n", ""},
    {"what is not finite is 0, and its faces are left out",
     "v -inf 0 0\nv inf 0 0\nv 1 0 0\nv 0 1 0\nv 2 0 0\nvt nan 1\nvn 0 -inf 1\nf 3/1/1 4/1/1 "
     "5/1/1\n"
     "f 1 2 3\n",
     "",
     "v 0 0 0\nv 0 1 0\nv 1 0 0\nv 2 0 0\nv 0 0 0\nvt 0 1\nvn 0 0 1\ng test\n"
     "f 3/1/1 2/1/1 4/1/1\n",
     ""},
    {"corners",
     "v 0 0 0\nv 1 0 0\nv 2 1 0\nvt 0 1\nvt 0 1 5\nvn 0 0 1\nf 1 2/2 3//1\nf 1/1/1 3 2\n", "",
     "v 0 0 0\nv 1 0 0\nv 2 1 0\nvt 0 1\nvt 0 1 5\nvn 0 0 1\ng test\nf 1 2/2 3//1\nf 1/1/1 3 2\n",
     ""},
    {"groups", "v 0 0 0\nv 1 0 0\nv 2 1 0\ng a b\nf 1 2 3\ng \nf 1 2 3\ng a b\nf 3 2 1\n", "",
     "v 0 0 0\nv 1 0 0\nv 2 1 0\ng a b\nf 1 2 3\ng default\nf 1 2 3\ng a b\nf 3 2 1\n", ""},
    {"materials", "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 2 1 0\nusemtl red\nf 1 2 3\n",
     "newmtl red\nKd 1 0 0\n",
     "mtllib o.mtl\nv 0 0 0\nv 1 0 0\nv 2 1 0\ng test\nusemtl red\nf 1 2 3\n",
     "\nnewmtl red\nKd 1.000000 0.000000 0.000000\n"},
    {"values that six decimals lose are said again",
     "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 2 1 0\nusemtl red\nf 1 2 3\n",
     "newmtl red\nKd 0.1234567891 0 0\nKs xyz 1e-9\nNs 1e-7\nd 0.25\n",
     "mtllib o.mtl\nv 0 0 0\nv 1 0 0\nv 2 1 0\ng test\nusemtl red\nf 1 2 3\n",
     "\nnewmtl red\nKd 0.123457 0.000000 0.000000\nKs xyz 0.000000 0.000000 0.000000\n"
     "d 0.250000\nNs 0.000000\nKd 0.12345679104328156 0 0\n"
     "Ks xyz 9.999999717180685e-10 9.999999717180685e-10 9.999999717180685e-10\nNs 1e-07\n"},
    {"faces without a material before others",
     "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 2 1 0\nv 3 3 3\nf 1 2 3\nusemtl red\nf 1 2 4\n",
     "newmtl red\nnewmtl no_material\n",
     "mtllib o.mtl\nv 0 0 0\nv 1 0 0\nv 2 1 0\nv 3 3 3\ng test\nusemtl no_material_\nf 1 2 3\n"
     "usemtl red\nf 1 2 4\n",
     "\nnewmtl red\n\nnewmtl no_material\n\nnewmtl no_material_\n"},
    {"faces without a material behind others",
     "mtllib a.mtl\nv 0 0 0\nv 1 0 0\nv 2 1 0\nv 3 3 3\nusemtl red\nf 1 2 3\nusemtl none\n"
     "f 1 2 4\n",
     "newmtl red\n",
     "mtllib o.mtl\nv 0 0 0\nv 1 0 0\nv 2 1 0\nv 3 3 3\ng test\nusemtl red\nf 1 2 3\n"
     "usemtl no_material\nf 1 2 4\n",
     "\nnewmtl red\n\nnewmtl no_material\n"},
};

std::string withoutFirstLine(const std::string& text) {
    return text.substr(text.find('\n') + 1);
}

TEST(ObjWriterTest, Cases) {
    for (const ObjCase& row : OBJ_CASES) {
        SCOPED_TRACE(row.title);
        const ImportedText imported(row.objText, {{"a.mtl", row.mtlText}});
        const tool::ModelAccess& model = imported.getModel();
        const std::string library = tool::hasMaterials(model) ? "o.mtl" : "";
        EXPECT_EQ(withoutFirstLine(written(
                      [&](tool::OutputFile& file) { tool::writeObj(file, model, library); })),
                  row.writtenObj);
        EXPECT_EQ(
            withoutFirstLine(written([&](tool::OutputFile& file) { tool::writeMtl(file, model); })),
            row.writtenMtl);
    }
}

TEST(ObjWriterTest, ANameWithBlanksIsOneTokenAgain) {
    const TemporaryDirectory directory;
    tool::ImportSettings settings;
    settings.fileName = directory.write("my model.obj", "v 0 0 0\nv 1 0 0\nv 2 1 0\nf 1 2 3\n");
    importQuietly(settings);
    const tool::ModelAccess model(*ObjConverter::getInstance());
    EXPECT_EQ(
        withoutFirstLine(written([&](tool::OutputFile& file) { tool::writeObj(file, model, ""); })),
        "v 0 0 0\nv 1 0 0\nv 2 1 0\ng my_model\nf 1 2 3\n");
}

// Writes the model that is there and imports it again: nothing but the materials
// of faces without may differ.
void expectSameModelAgain(const std::string& fileName) {
    SCOPED_TRACE(fileName);
    tool::ImportSettings settings;
    settings.fileName = fileName;
    importQuietly(settings);
    const TemporaryDirectory directory;
    const tool::ModelAccess model(*ObjConverter::getInstance());
    const bool isMixed = model.countFacesOfMaterials().back() > 0;
    const std::string before = printModel(viewOf(*ObjConverter::getInstance()));
    const std::string name = directory.getPath() + tool::nameOf(pathFromUtf8(fileName).filename());
    tool::OutputFile mtl(pathFromUtf8(directory.getPath() + "o.mtl"));
    tool::writeMtl(mtl, model);
    mtl.commit();
    tool::OutputFile obj(pathFromUtf8(name));
    tool::writeObj(obj, model, tool::hasMaterials(model) ? "o.mtl" : "");
    obj.commit();
    settings.fileName = name;
    importQuietly(settings);
    if (!isMixed) {
        EXPECT_EQ(printModel(viewOf(*ObjConverter::getInstance())), before);
    }
}

TEST(ObjWriterTest, SamplesComeBackBitForBit) {
    for (const std::string& fileName : findObjFiles(OBJ_ADAPTER_SAMPLES))
        expectSameModelAgain(fileName);
}

TEST(ObjWriterTest, ModelsComeBackBitForBit) {
    if (getModelFolder().empty())
        GTEST_SKIP() << "OBJ_ADAPTER_MODELS is not set";
    for (const std::string& fileName : findObjFiles(getModelFolder()))
        expectSameModelAgain(fileName);
}

}  // namespace

}  // namespace obj_adapter::test
