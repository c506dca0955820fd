// The flat C interface, called as a host of another language does.
#include "support/temporaryDirectory.h"

#include <obj_adapter/obj_adapter_c.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

const char* const SAMPLE_OBJ =
    "mtllib sample.mtl\n"
    "v 1 0 0\n"
    "v 0 0 0 0.5\n"
    "v 1 0 0\n"
    "v 0 1 0\n"
    "v 0 0 2\n"
    "vt 0.25 0.75\n"
    "vn 0 0 1\n"
    "g arm left\n"
    "usemtl red\n"
    "f 2/1/1 1/1/1 4/1/1\n"
    "g hand\n"
    "f 2 4 5\n"
    "f 2 3 5\n";

const char* const SAMPLE_MTL =
    "newmtl red\n"
    "Ka 0.1 0.2 0.3\n"
    "Kd xyz 0.5 0.25 0.75\n"
    "Ks spectral curve.rfl 0.5\n"
    "Ns 10\n"
    "d -halo 0.5\n"
    "illum 2\n"
    "sharpness 70\n"
    "Ni 1.5\n"
    "map_Kd -blendu off -clamp on -mm 0.5 2 -o 1 2 3 -s 4 5 6 -t 7 8 9 -texres 128 -imfchan z "
    "kd.png\n"
    "refl -type cube_left refl.png\n";

struct DestroySettings {
    void operator()(ObjAdapterSettings* settings) const { objAdapterDestroySettings(settings); }
};
using Settings = std::unique_ptr<ObjAdapterSettings, DestroySettings>;

// Messages as "level|text" lines; what reaches it tells the user data too.
struct Recorder {
    std::string messages;
};

void recordMessage(void* userData, std::int32_t level, const char* text) {
    static_cast<Recorder*>(userData)->messages += std::to_string(level) + "|" + text + "\n";
}

class CInterfaceTest : public testing::Test {
protected:
    CInterfaceTest() : settings(objAdapterCreateSettings()) {
        directory.write("sample.obj", SAMPLE_OBJ);
        directory.write("sample.mtl", SAMPLE_MTL);
        objAdapterSetMessageCallback(settings.get(), recordMessage, &recorder);
    }
    ~CInterfaceTest() override { objAdapterClear(); }

    std::int32_t import(const std::string& fileName) {
        return objAdapterImportFile(settings.get(), (directory.getPath() + fileName).c_str());
    }

    TemporaryDirectory directory;
    Settings settings;
    Recorder recorder;
};

std::string describeFaces() {
    std::int32_t count = 0;
    const ObjAdapterFace* faces = objAdapterGetFaces(&count);
    std::ostringstream text;
    for (std::int32_t face = 0; face < count; ++face) {
        for (const ObjAdapterCorner& corner : faces[face].corners)
            text << corner.vertex << '/' << corner.texturePoint << '/' << corner.normal << ' ';
        text << 'm' << faces[face].material << " g" << faces[face].group << '\n';
    }
    return text.str();
}

std::string describeTree() {
    std::int32_t count = 0;
    const ObjAdapterTreeNode* nodes = objAdapterGetTree(&count);
    std::ostringstream text;
    for (std::int32_t node = 0; node < count; ++node)
        text << nodes[node].name << " parent " << nodes[node].parent << " child "
             << nodes[node].firstChild << " next " << nodes[node].nextSibling << " group "
             << nodes[node].group << '\n';
    return text.str();
}

// As a host copies: asks for the length, then for the text.
template <typename Copy>
std::string copied(Copy copy, std::int32_t index) {
    std::vector<char> buffer(copy(index, nullptr, 0) + 1, 'x');
    copy(index, buffer.data(), buffer.size());
    return buffer.data();
}

TEST_F(CInterfaceTest, givesTheTablesAsArrays) {
    objAdapterSetDataCompaction(settings.get(), 0);
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);

    std::int32_t count = 0;
    const ObjAdapterVertex* vertices = objAdapterGetVertices(&count);
    ASSERT_EQ(count, 5);
    EXPECT_EQ(vertices[1].x, 0.0);
    EXPECT_EQ(vertices[1].w, 0.5);
    EXPECT_EQ(vertices[4].z, 2.0);
    EXPECT_EQ(vertices[4].index, 4);
    const ObjAdapterTexturePoint* texturePoints = objAdapterGetTexturePoints(&count);
    ASSERT_EQ(count, 1);
    EXPECT_EQ(texturePoints[0].u, 0.25);
    EXPECT_EQ(texturePoints[0].v, 0.75);
    EXPECT_EQ(texturePoints[0].w, 0.0);
    const ObjAdapterNormal* normals = objAdapterGetNormals(&count);
    ASSERT_EQ(count, 1);
    EXPECT_EQ(normals[0].z, 1.0);
    EXPECT_EQ(normals[0].index, 0);
    EXPECT_EQ(describeFaces(),
              "1/0/0 0/0/0 3/0/0 m0 g0\n"
              "1/-1/-1 3/-1/-1 4/-1/-1 m0 g1\n"
              "1/-1/-1 2/-1/-1 4/-1/-1 m0 g1\n");
}

TEST_F(CInterfaceTest, countsMayBeLeftOut) {
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    EXPECT_NE(objAdapterGetVertices(nullptr), nullptr);
    EXPECT_NE(objAdapterGetFaces(nullptr), nullptr);
    EXPECT_NE(objAdapterGetGroupFaces(0, nullptr), nullptr);
    EXPECT_NE(objAdapterGetTree(nullptr), nullptr);
}

TEST_F(CInterfaceTest, givesGroupsWithTheirNamesAndFaces) {
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    ASSERT_EQ(objAdapterGetNumberOfGroups(), 2);
    EXPECT_EQ(objAdapterGetNumberOfGroupNames(0), 2);
    EXPECT_STREQ(objAdapterGetGroupName(0, 0), "arm");
    EXPECT_STREQ(objAdapterGetGroupName(0, 1), "left");
    EXPECT_EQ(objAdapterGetNumberOfGroupNames(1), 1);
    EXPECT_STREQ(objAdapterGetGroupName(1, 0), "hand");
    EXPECT_EQ(copied(objAdapterCopyGroupFullName, 0), "arm_left");
    EXPECT_EQ(copied(objAdapterCopyGroupFullName, 1), "hand");

    std::int32_t count = 0;
    const std::int32_t* faces = objAdapterGetGroupFaces(1, &count);
    ASSERT_EQ(count, 2);
    std::int32_t faceCount = 0;
    const ObjAdapterFace* table = objAdapterGetFaces(&faceCount);
    for (std::int32_t face = 0; face < count; ++face)
        EXPECT_EQ(table[faces[face]].group, 1);
}

TEST_F(CInterfaceTest, givesMaterials) {
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    ASSERT_EQ(objAdapterGetNumberOfMaterials(), 1);
    ObjAdapterMaterial material;
    ASSERT_EQ(objAdapterGetMaterial(0, &material), 1);
    EXPECT_STREQ(material.name, "red");
    EXPECT_EQ(material.ambient.type, OBJ_ADAPTER_COLOR_RGB);
    EXPECT_EQ(material.ambient.values[2], 0.3F);
    EXPECT_STREQ(material.ambient.spectralFile, "");
    EXPECT_EQ(material.diffuse.type, OBJ_ADAPTER_COLOR_XYZ);
    EXPECT_EQ(material.diffuse.values[1], 0.25F);
    EXPECT_EQ(material.specular.type, OBJ_ADAPTER_COLOR_SPECTRAL);
    EXPECT_STREQ(material.specular.spectralFile, "curve.rfl");
    EXPECT_EQ(material.specular.values[0], 0.5F);
    EXPECT_EQ(material.filter.type, OBJ_ADAPTER_COLOR_NONE);
    EXPECT_EQ(material.specularExponent, 10.0);
    EXPECT_EQ(material.dissolve, 0.5);
    EXPECT_EQ(material.halo, 1);
    EXPECT_EQ(material.illumination, 2);
    EXPECT_EQ(material.sharpness, 70);
    EXPECT_EQ(material.opticalDensity, 1.5);
    EXPECT_EQ(copied(objAdapterCopyMaterialText, 0).substr(0, 11), "newmtl red\n");
}

TEST_F(CInterfaceTest, givesTextureMaps) {
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    ObjAdapterTextureMap map;
    ASSERT_EQ(objAdapterGetTextureMap(0, OBJ_ADAPTER_MAP_KD, &map), 1);
    EXPECT_STREQ(map.fileName, "kd.png");
    EXPECT_EQ(map.blendU, 0);
    EXPECT_EQ(map.blendV, 1);
    EXPECT_EQ(map.clamp, 1);
    EXPECT_EQ(map.colorCorrection, 0);
    EXPECT_EQ(map.mmBase, 0.5);
    EXPECT_EQ(map.mmGain, 2.0);
    EXPECT_EQ(map.offset[1], 2.0);
    EXPECT_EQ(map.scale[2], 6.0);
    EXPECT_EQ(map.turbulence[0], 7.0);
    EXPECT_EQ(map.resolution, 128);
    EXPECT_EQ(map.boost, -1.0);
    EXPECT_EQ(map.imfChannel, 6);
    EXPECT_EQ(map.reflectionType, 0);
    ASSERT_EQ(objAdapterGetTextureMap(0, OBJ_ADAPTER_MAP_REFL, &map), 1);
    EXPECT_STREQ(map.fileName, "refl.png");
    EXPECT_EQ(map.reflectionType, 6);
    EXPECT_EQ(objAdapterGetTextureMap(0, OBJ_ADAPTER_MAP_KA, &map), 0);
}

TEST_F(CInterfaceTest, givesTheTreeWithParentsFirst) {
    objAdapterSetUseGroupNameHierarchy(settings.get(), 1);
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    EXPECT_EQ(describeTree(),
              "sample parent -1 child 1 next -1 group -1\n"
              "hand parent 0 child -1 next 2 group 1\n"
              "arm parent 0 child 3 next -1 group -1\n"
              "left parent 2 child -1 next -1 group 0\n");
}

TEST_F(CInterfaceTest, settingsReachTheImport) {
    objAdapterSetUseGroupNameHierarchy(settings.get(), 1);
    objAdapterSetReverseGroupNames(settings.get(), 1);
    objAdapterSetShowLastNamesOnly(settings.get(), 0);
    objAdapterSetSubdivision(settings.get(), OBJ_ADAPTER_SUBDIVIDE_ITERATIONS, 2);
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    std::int32_t count = 0;
    objAdapterGetFaces(&count);
    EXPECT_EQ(count, 48);
    EXPECT_STREQ(objAdapterGetGroupName(0, 0), "left");
    EXPECT_NE(describeTree().find("left_arm parent 2"), std::string::npos) << describeTree();

    objAdapterSetSubdivision(settings.get(), OBJ_ADAPTER_SUBDIVIDE_FACE_COUNT, 13);
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    objAdapterGetFaces(&count);
    EXPECT_EQ(count, 12);
    objAdapterSetSubdivision(settings.get(), OBJ_ADAPTER_SUBDIVIDE_VERTEX_COUNT, 1);
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    objAdapterGetFaces(&count);
    EXPECT_EQ(count, 3);
}

TEST_F(CInterfaceTest, aPolygonWithoutEarIsSkippedWhereThatIsSet) {
    directory.write("spike.obj", "v 0 1 0\nv 3 0 0\nv 1 0 0\nv 2 0 0\nv 0 0 0\nf 1 2 3 4 5\n");
    objAdapterSetSkipPolygonsWithoutEar(settings.get(), 1);
    ASSERT_EQ(import("spike.obj"), OBJ_ADAPTER_OK);
    EXPECT_NE(recorder.messages.find("1|Could not split non-triangular face. Skipping face.\n"),
              std::string::npos)
        << recorder.messages;
}

TEST_F(CInterfaceTest, anImportReplacesTheModelBefore) {
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    std::int32_t count = 0;
    objAdapterGetFaces(&count);
    EXPECT_EQ(count, 3);
}

TEST_F(CInterfaceTest, messagesComeWithTheUserData) {
    ASSERT_EQ(import("missing.obj"), OBJ_ADAPTER_ERROR);
    EXPECT_EQ(recorder.messages,
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "1|Stopping conversion... Unable to open file\n");
    recorder.messages.clear();
    objAdapterSetMessageCallback(settings.get(), nullptr, nullptr);
    ASSERT_EQ(import("missing.obj"), OBJ_ADAPTER_ERROR);
    EXPECT_EQ(recorder.messages, "");
}

TEST_F(CInterfaceTest, nullSettingsAreDefaults) {
    EXPECT_EQ(objAdapterImportFile(nullptr, (directory.getPath() + "sample.obj").c_str()),
              OBJ_ADAPTER_OK);
    std::int32_t count = 0;
    objAdapterGetVertices(&count);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(recorder.messages, "");
    EXPECT_EQ(objAdapterImportFile(nullptr, nullptr), OBJ_ADAPTER_ERROR);
}

// A host with its one library in memory, that counts what it is asked.
struct MemoryHost {
    std::string library = "newmtl red\nKd 1 0 0\nKa 1\n";
    std::string asked;
    std::string places;
    std::int32_t goesOn = 1;
};

std::int32_t openLibrary(void* userData, const char* libraryName, const char** text,
                         std::size_t* size) {
    MemoryHost& host = *static_cast<MemoryHost*>(userData);
    host.asked += libraryName;
    if (std::string(libraryName) != "sample.mtl")
        return 0;
    *text = host.library.data();
    *size = host.library.size();
    return 1;
}

void recordPlace(void* userData, std::int32_t level, const char*) {
    const char* fileName = objAdapterGetCurrentFileName();
    if (level == OBJ_ADAPTER_MESSAGE_ERROR)
        static_cast<MemoryHost*>(userData)->places +=
            (fileName == nullptr ? "-" : fileName) +
            (":" + std::to_string(objAdapterGetCurrentLineNumber()) + " ");
}

std::int32_t askHost(void* userData, std::int32_t stage, double fraction) {
    MemoryHost& host = *static_cast<MemoryHost*>(userData);
    EXPECT_EQ(fraction, 0.0);
    host.asked += std::to_string(stage);
    return host.goesOn;
}

TEST_F(CInterfaceTest, importsFromMemory) {
    MemoryHost host;
    objAdapterSetMessageCallback(settings.get(), recordPlace, &host);
    const std::string text = std::string(SAMPLE_OBJ) + "mtllib other.mtl\n";
    ASSERT_EQ(objAdapterImportMemory(settings.get(), "sample.obj", text.data(), text.size(),
                                     openLibrary, &host),
              OBJ_ADAPTER_OK);
    EXPECT_EQ(host.asked, "sample.mtlother.mtl");
    EXPECT_EQ(host.places, "sample.mtl:3 sample.obj:15 ");
    EXPECT_EQ(objAdapterGetNumberOfMaterials(), 1);
    std::int32_t count = 0;
    objAdapterGetFaces(&count);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(objAdapterGetCurrentFileName(), nullptr);
    EXPECT_EQ(objAdapterGetCurrentLineNumber(), 0);

    EXPECT_EQ(objAdapterImportMemory(settings.get(), "sample.obj", text.data(), text.size(),
                                     nullptr, nullptr),
              OBJ_ADAPTER_OK);
    EXPECT_EQ(objAdapterGetNumberOfMaterials(), 0);
    EXPECT_EQ(objAdapterImportMemory(nullptr, nullptr, text.data(), text.size(), nullptr, nullptr),
              OBJ_ADAPTER_ERROR);
}

TEST_F(CInterfaceTest, tellsOfStagesAndCanBeCancelled) {
    MemoryHost host;
    objAdapterSetProgressCallback(settings.get(), askHost, &host);
    EXPECT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    EXPECT_EQ(host.asked, "12");
    host.goesOn = 0;
    EXPECT_EQ(import("sample.obj"), OBJ_ADAPTER_ERROR);
    EXPECT_EQ(host.asked, "121");
    EXPECT_NE(recorder.messages.find("1|Stopping conversion... Cancelled by host\n"),
              std::string::npos);
}

// Tries what a callback must not do.
void meddle(void* userData, std::int32_t, const char*) {
    const std::string& fileName = *static_cast<std::string*>(userData);
    EXPECT_EQ(objAdapterImportFile(nullptr, fileName.c_str()), OBJ_ADAPTER_ERROR);
    objAdapterClear();
}

TEST_F(CInterfaceTest, callsInsideTheCallbackChangeNothing) {
    std::string fileName = (directory.getPath() + "sample.obj");
    objAdapterSetMessageCallback(settings.get(), meddle, &fileName);
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    std::int32_t count = 0;
    objAdapterGetFaces(&count);
    EXPECT_EQ(count, 3);
}

TEST_F(CInterfaceTest, withoutAModelThereIsNothing) {
    for (const bool isCleared : {false, true}) {
        if (isCleared) {
            ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
            objAdapterClear();
        }
        std::int32_t count = 9;
        EXPECT_EQ(objAdapterGetVertices(&count), nullptr);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(objAdapterGetTexturePoints(nullptr), nullptr);
        EXPECT_EQ(objAdapterGetNormals(nullptr), nullptr);
        EXPECT_EQ(objAdapterGetFaces(nullptr), nullptr);
        EXPECT_EQ(objAdapterGetNumberOfGroups(), 0);
        EXPECT_EQ(objAdapterGetNumberOfMaterials(), 0);
        count = 9;
        EXPECT_EQ(objAdapterGetTree(&count), nullptr);
        EXPECT_EQ(count, 0);
    }
}

TEST_F(CInterfaceTest, indicesOutOfRangeGiveNothing) {
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    for (const std::int32_t group : {-1, 2, INT32_MAX, INT32_MIN}) {
        std::int32_t count = 9;
        EXPECT_EQ(objAdapterGetGroupFaces(group, &count), nullptr);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(objAdapterGetNumberOfGroupNames(group), 0);
        EXPECT_EQ(objAdapterGetGroupName(group, 0), nullptr);
        EXPECT_EQ(objAdapterCopyGroupFullName(group, nullptr, 0), 0U);
    }
    EXPECT_EQ(objAdapterGetGroupName(0, 2), nullptr);
    EXPECT_EQ(objAdapterGetGroupName(0, -1), nullptr);
    EXPECT_EQ(objAdapterGetGroupName(1, 1), nullptr);
    for (const std::int32_t material : {-1, 1}) {
        ObjAdapterMaterial record;
        ObjAdapterTextureMap map;
        EXPECT_EQ(objAdapterGetMaterial(material, &record), 0);
        EXPECT_EQ(objAdapterGetTextureMap(material, OBJ_ADAPTER_MAP_KD, &map), 0);
        EXPECT_EQ(objAdapterCopyMaterialText(material, nullptr, 0), 0U);
    }
    ObjAdapterTextureMap map;
    for (const std::int32_t slot : {-1, 5, 9})
        EXPECT_EQ(objAdapterGetTextureMap(0, slot, &map), 0);
}

TEST_F(CInterfaceTest, copiesAreCutToTheBuffer) {
    ASSERT_EQ(import("sample.obj"), OBJ_ADAPTER_OK);
    std::array<char, 5> buffer{'x', 'x', 'x', 'x', 'x'};
    EXPECT_EQ(objAdapterCopyGroupFullName(0, buffer.data(), 4), 8U);
    EXPECT_STREQ(buffer.data(), "arm");
    EXPECT_EQ(buffer[4], 'x');
    EXPECT_EQ(objAdapterCopyGroupFullName(7, buffer.data(), 4), 0U);
    EXPECT_STREQ(buffer.data(), "");
}

TEST_F(CInterfaceTest, knowsItsVersion) {
    EXPECT_STREQ(objAdapterGetVersion(), OBJ_ADAPTER_TEST_VERSION);
}

}  // namespace

}  // namespace obj_adapter::test
