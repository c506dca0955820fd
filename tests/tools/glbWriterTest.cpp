// GLB files taken apart: the container, its JSON and the data behind it.
#include "glbWriter.h"

#include "support/modelFiles.h"
#include "tools/importedText.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t HEADER_BYTES = 12;
constexpr std::size_t CHUNK_HEADER_BYTES = 8;

std::uint32_t wordAt(const std::string& bytes, std::size_t place) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data() + place, sizeof word);
    return word;
}

struct GlbFile {
    Json json;
    std::string binary;
    tool::GlbResult result;
};

// The container's own rules are checked here, for every file of these tests.
GlbFile takeApart(const std::string& bytes) {
    GlbFile file;
    EXPECT_EQ(bytes.substr(0, 4), "glTF");
    EXPECT_EQ(wordAt(bytes, 4), 2U);
    EXPECT_EQ(wordAt(bytes, 8), bytes.size());
    const std::size_t jsonLength = wordAt(bytes, HEADER_BYTES);
    EXPECT_EQ(bytes.substr(HEADER_BYTES + 4, 4), "JSON");
    EXPECT_EQ(jsonLength % 4, 0U);
    const std::size_t binaryPlace = HEADER_BYTES + CHUNK_HEADER_BYTES + jsonLength;
    file.json = Json::parse(bytes.substr(HEADER_BYTES + CHUNK_HEADER_BYTES, jsonLength));
    if (binaryPlace < bytes.size()) {
        EXPECT_EQ(bytes.substr(binaryPlace + 4, 4), std::string("BIN\0", 4));
        EXPECT_EQ(wordAt(bytes, binaryPlace) % 4, 0U);
        file.binary = bytes.substr(binaryPlace + CHUNK_HEADER_BYTES);
        EXPECT_EQ(file.binary.size(), wordAt(bytes, binaryPlace));
    }
    return file;
}

GlbFile write(const ImportedText& imported, tool::GlbOptions options = {}) {
    const std::string name = imported.getFolder() + "out.glb";
    options.folder = pathFromUtf8(imported.getFolder());
    tool::OutputFile output(pathFromUtf8(name));
    const tool::TextureFiles textures(imported.getSettings(), imported.getRun());
    tool::GlbResult result = tool::writeGlb(output, imported.getModel(), textures, options);
    output.commit();
    GlbFile file = takeApart(readFileBytes(name));
    file.result = std::move(result);
    return file;
}

// "(0 0 0) (1 0 0)" of a vector accessor, "0 1 2" of one of indices.
std::string describe(const GlbFile& file, const Json& index) {
    const Json& accessor = file.json["accessors"][index.get<std::size_t>()];
    const Json& view = file.json["bufferViews"][accessor["bufferView"].get<std::size_t>()];
    const std::string type = accessor["type"];
    const std::size_t components = type == "VEC3" ? 3 : type == "VEC2" ? 2 : 1;
    std::size_t place =
        view["byteOffset"].get<std::size_t>() + accessor["byteOffset"].get<std::size_t>();
    EXPECT_EQ(place % 4, 0U);
    std::string text;
    for (std::size_t element = 0; element < accessor["count"].get<std::size_t>(); ++element) {
        text += element == 0 ? "" : " ";
        text += components > 1 ? "(" : "";
        for (std::size_t component = 0; component < components; ++component, place += 4) {
            float number = 0;
            const std::uint32_t word = wordAt(file.binary, place);
            std::memcpy(&number, &word, sizeof number);
            char digits[32];
            if (components > 1)
                std::snprintf(digits, sizeof digits, "%.4g", static_cast<double>(number));
            else
                std::snprintf(digits, sizeof digits, "%u", word);
            text += (component == 0 ? "" : " ") + std::string(digits);
        }
        text += components > 1 ? ")" : "";
    }
    return text;
}

const char* const SQUARE = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

TEST(GlbWriterTest, APrimitiveForEachMaterialInEachGroup) {
    const ImportedText imported(
        std::string("mtllib a.mtl\n") + SQUARE +
            "g left\nusemtl a\nf 1 2 3\nusemtl b\nf 1 3 4\ng right\nusemtl a\nf 1 2 4\n",
        {{"a.mtl", "newmtl a\nKd 1 0 0\nnewmtl b\nd 0.5\nNs 30\nnewmtl unused\n"}});
    const GlbFile file = write(imported);
    EXPECT_EQ(file.result.faces, 3);
    EXPECT_TRUE(file.result.losses.empty());
    // Compaction puts the second face first.
    EXPECT_EQ(file.json["nodes"].dump(), R"([{"name":"test","children":[1,2]},)"
                                         R"({"name":"left","mesh":0},{"name":"right","mesh":1}])");
    EXPECT_EQ(file.json["scenes"].dump(), R"([{"nodes":[0]}])");
    ASSERT_EQ(file.json["meshes"].size(), 2U);
    EXPECT_EQ(file.json["meshes"][0]["name"], "left");
    ASSERT_EQ(file.json["meshes"][0]["primitives"].size(), 2U);
    EXPECT_EQ(file.json["meshes"][0]["primitives"][0]["material"], 0);
    EXPECT_EQ(file.json["meshes"][0]["primitives"][1]["material"], 1);
    EXPECT_EQ(file.json["meshes"][1]["primitives"][0]["material"], 1);
    ASSERT_EQ(file.json["materials"].size(), 2U);
    EXPECT_EQ(file.json["materials"][1].dump(),
              R"({"name":"a","pbrMetallicRoughness":{"baseColorFactor":[1.0,0.0,0.0,1.0],)"
              R"("metallicFactor":0.0,"roughnessFactor":1.0},"doubleSided":true})");
    EXPECT_EQ(file.json["materials"][0].dump(),
              R"({"name":"b","pbrMetallicRoughness":{"baseColorFactor":[0.6,0.6,0.6,0.5],)"
              R"("metallicFactor":0.0,"roughnessFactor":0.5},"alphaMode":"BLEND",)"
              R"("doubleSided":true})");
}

TEST(GlbWriterTest, CornersAreSharedAndTextureRowsCountFromTheTop) {
    const ImportedText imported(std::string(SQUARE) +
                                "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 0.25\nvn 0 0 2\nvn 1 0 0\n"
                                "f 1/1/1 2/2/1 3/3/1\nf 1/1/1 3/3/1 4/4/2\n");
    const GlbFile file = write(imported);
    const Json& primitive = file.json["meshes"][0]["primitives"][0];
    EXPECT_EQ(describe(file, primitive["attributes"]["POSITION"]),
              "(0 0 0) (1 1 0) (0 1 0) (1 0 0)");
    EXPECT_EQ(describe(file, primitive["attributes"]["NORMAL"]), "(0 0 1) (0 0 1) (1 0 0) (0 0 1)");
    EXPECT_EQ(describe(file, primitive["attributes"]["TEXCOORD_0"]), "(0 1) (1 0) (0 0.75) (1 1)");
    EXPECT_EQ(describe(file, primitive["indices"]), "0 1 2 0 3 1");
    const Json& positions =
        file.json["accessors"][primitive["attributes"]["POSITION"].get<std::size_t>()];
    EXPECT_EQ(positions["min"].dump(), "[0.0,0.0,0.0]");
    EXPECT_EQ(positions["max"].dump(), "[1.0,1.0,0.0]");
    EXPECT_EQ(file.json["materials"][0]["name"], "no material");
}

struct NormalsCase {
    const char* title;
    const char* faces;
    std::optional<double> smallestCosine;
    const char* normals;
};

const NormalsCase NORMALS_CASES[] = {
    {"none in the file, none in the result", "f 1 2 3\n", std::nullopt, "none"},
    {"computed if asked for", "f 1 2 3\n", 0.5, "(0 0 1) (0 0 1) (0 0 1)"},
    {"those of the file", "vn 0 1 0\nf 1//1 2//1 3//1\n", std::nullopt, "(0 1 0) (0 1 0) (0 1 0)"},
    {"faces without beside faces with get their own", "vn 0 1 0\nf 1//1 2//1 3//1\nf 1 4 3\n",
     std::nullopt, "(0 0 -1) (0 0 -1) (0 0 -1) (0 1 0) (0 1 0) (0 1 0)"},
    {"one of no length is none", "vn 0 0 0\nf 1//1 2//1 3//1\n", std::nullopt, "none"},
    {"one that is not finite is none", "vn 0 nan 0\nf 1//1 2//1 3//1\n", std::nullopt, "none"},
};

TEST(GlbWriterTest, Normals) {
    for (const NormalsCase& row : NORMALS_CASES) {
        SCOPED_TRACE(row.title);
        const ImportedText imported(std::string(SQUARE) + row.faces);
        tool::GlbOptions options;
        options.smallestCosine = row.smallestCosine;
        const GlbFile file = write(imported, options);
        const Json& attributes = file.json["meshes"][0]["primitives"][0]["attributes"];
        EXPECT_EQ(attributes.contains("NORMAL") ? describe(file, attributes["NORMAL"]) : "none",
                  row.normals);
    }
}

struct PlaceCase {
    const char* title;
    const char* vertices;
    const char* translation;  // of the root; "" for none
    const char* positions;    // "" for no mesh
};

const PlaceCase PLACE_CASES[] = {
    {"near the origin", "v 100 0 0\nv 101 0 0\nv 100 1 0\n", "", "(100 0 0) (101 0 0) (100 1 0)"},
    {"far away", "v 5000000 0 0\nv 5000001 0 0\nv 5000000 1 0\n", "[5000000.5,0.5,0.0]",
     "(-0.5 -0.5 0) (0.5 -0.5 0) (-0.5 0.5 0)"},
    {"beyond single precision", "v 0 0 0\nv 1e39 0 0\nv 0 1 0\n", "", ""},
    {"not finite", "v 0 0 0\nv inf 0 0\nv 0 1 0\n", "", ""},
    {"not a number", "v 0 0 0\nv 1 nan 0\nv 0 1 0\n", "", ""},
};

TEST(GlbWriterTest, Places) {
    for (const PlaceCase& row : PLACE_CASES) {
        SCOPED_TRACE(row.title);
        tool::ImportSettings settings;
        settings.compaction = false;
        const ImportedText imported(std::string(row.vertices) + "f 1 2 3\n", {}, settings);
        const GlbFile file = write(imported);
        const Json& root = file.json["nodes"][0];
        EXPECT_EQ(root.contains("translation") ? root["translation"].dump() : "", row.translation);
        EXPECT_EQ(file.json.contains("meshes"), *row.positions != '\0');
        EXPECT_EQ(file.json.contains("buffers"), *row.positions != '\0');
        EXPECT_EQ(file.result.faces, *row.positions != '\0' ? 1 : 0);
        if (file.json.contains("meshes")) {
            EXPECT_EQ(
                describe(file, file.json["meshes"][0]["primitives"][0]["attributes"]["POSITION"]),
                row.positions);
        }
    }
}

TEST(GlbWriterTest, TextureCoordinatesThatDoNotFitAre0) {
    const ImportedText imported(std::string(SQUARE) + "vt nan 1\nvt 1e300 0\nf 1/1 2/2 3\n");
    const GlbFile file = write(imported);
    EXPECT_EQ(describe(file, file.json["meshes"][0]["primitives"][0]["attributes"]["TEXCOORD_0"]),
              "(0 0) (0 1) (0 0)");
}

TEST(GlbWriterTest, NamesAreValidUtf8) {
    const ImportedText imported(std::string(SQUARE) +
                                "g a\"b\x01 \xff\xfe\nf 1 2 3\ng gr\xc3\xb6\xc3\x9f"
                                "e\nf 1 2 4\n");
    const GlbFile file = write(imported);
    EXPECT_EQ(file.json["nodes"][1]["name"],
              "gr\xc3\xb6\xc3\x9f"
              "e");
    EXPECT_EQ(file.json["nodes"][2]["name"], "a\"b\x01");
    EXPECT_EQ(file.json["nodes"][3]["name"], "\xef\xbf\xbd\xef\xbf\xbd");
}

const char* const PNG = "\x89PNG\r\n\x1a\n and more";
const char* const JPEG = "\xff\xd8\xff and more";

struct TextureCase {
    const char* title;
    const char* mtlText;
    const char* json;    // of textures, images and extensions
    const char* losses;  // a line each
};

const TextureCase TEXTURE_CASES[] = {
    {"an image", "map_Kd a%b.png",
     R"([{"sampler":0,"source":0}] [{"uri":"a%25b.png"}] null {"index":0})", ""},
    {"one that is not there", "map_Kd none.png", "null null null null",
     "material m: map_Kd none.png was not found; left out\n"},
    {"one of another kind", "map_Kd a.gif", "null null null null",
     "material m: map_Kd a.gif is neither PNG nor JPEG; left out\n"},
    {"scale and offset", "map_Kd -s 2 3 1 -o 0.25 0.5 0 a.jpg",
     R"([{"sampler":0,"source":0}] [{"uri":"a.jpg"}] ["KHR_texture_transform"] )"
     R"({"index":0,"extensions":{"KHR_texture_transform":)"
     R"({"offset":[0.25,-2.5],"scale":[2.0,3.0]}}})",
     ""},
    {"transparency in the same image", "map_Kd a.jpg\nmap_d a.jpg",
     R"([{"sampler":0,"source":0}] [{"uri":"a.jpg"}] null {"index":0})", ""},
    {"transparency in another image", "map_Kd a.jpg\nmap_d a%b.png",
     R"([{"sampler":0,"source":0}] [{"uri":"a.jpg"}] null {"index":0})",
     "material m: map_d is not the image of map_Kd; left out\n"},
    {"a bump map", "bump a.jpg", "null null null null",
     "material m: bump is a map of heights (--bump-is-normal takes it for normals); left out\n"},
    {"others", "map_Ka a.jpg\nmap_Ks a.jpg\nmap_Ns a.jpg\ndecal a.jpg\nrefl -type sphere a.jpg",
     "null null null null",
     "material m: map_Ka has no place in the format; left out\n"
     "material m: map_Ks has no place in the format; left out\n"
     "material m: map_Ns has no place in the format; left out\n"
     "material m: decal has no place in the format; left out\n"
     "material m: refl has no place in the format; left out\n"},
};

TEST(GlbWriterTest, Textures) {
    for (const TextureCase& row : TEXTURE_CASES) {
        SCOPED_TRACE(row.title);
        const ImportedText imported(std::string("mtllib a.mtl\n") + SQUARE + "usemtl m\nf 1 2 3\n",
                                    {{"a.mtl", std::string("newmtl m\n") + row.mtlText + "\n"},
                                     {"a%b.png", PNG},
                                     {"a.jpg", JPEG},
                                     {"a.gif", "GIF89a"}});
        const GlbFile file = write(imported);
        const auto part = [](const Json& json, const char* key) {
            return json.contains(key) ? json[key].dump() : std::string("null");
        };
        EXPECT_EQ(part(file.json, "textures") + " " + part(file.json, "images") + " " +
                      part(file.json, "extensionsUsed") + " " +
                      part(file.json["materials"][0]["pbrMetallicRoughness"], "baseColorTexture"),
                  row.json);
        std::string losses;
        for (const std::string& loss : file.result.losses)
            losses += loss + "\n";
        EXPECT_EQ(losses, row.losses);
    }
}

TEST(GlbWriterTest, BumpMapsAsNormalsAndClampedOnes) {
    const ImportedText imported(
        std::string("mtllib a.mtl\n") + SQUARE + "usemtl m\nf 1 2 3\n",
        {{"a.mtl", "newmtl m\nmap_Kd -clamp on a.jpg\nbump a.jpg\nNi 1.25\n"}, {"a.jpg", JPEG}});
    tool::GlbOptions options;
    options.bumpIsNormal = true;
    const GlbFile file = write(imported, options);
    EXPECT_EQ(file.json["images"].size(), 1U);
    EXPECT_EQ(file.json["textures"].dump(),
              R"([{"sampler":0,"source":0},{"sampler":1,"source":0}])");
    EXPECT_EQ(file.json["samplers"][0]["wrapS"], 33071);
    EXPECT_EQ(file.json["samplers"][1]["wrapT"], 10497);
    EXPECT_EQ(file.json["materials"][0]["normalTexture"].dump(), R"({"index":1})");
    EXPECT_EQ(file.json["materials"][0]["extensions"].dump(),
              R"({"KHR_materials_ior":{"ior":1.25}})");
    EXPECT_EQ(file.json["extensionsUsed"].dump(), R"(["KHR_materials_ior"])");
}

// Each face is in one primitive, whatever the groups are called.
TEST(GlbWriterTest, AllFacesOfAllModels) {
    if (getModelFolder().empty())
        GTEST_SKIP() << "OBJ_ADAPTER_MODELS is not set";
    for (const std::string& fileName : findObjFiles(getModelFolder())) {
        SCOPED_TRACE(fileName);
        tool::ImportSettings settings;
        settings.fileName = fileName;
        const tool::ImportRun run = importQuietly(settings);
        const tool::ModelAccess model(*ObjConverter::getInstance());
        const TemporaryDirectory directory;
        tool::OutputFile output(pathFromUtf8(directory.getPath() + "out.glb"));
        const tool::GlbResult result =
            tool::writeGlb(output, model, tool::TextureFiles(settings, run), {});
        output.commit();
        EXPECT_EQ(result.faces, model.getNumberOfFaces());
        const GlbFile file = takeApart(readFileBytes(directory.getPath() + "out.glb"));
        std::size_t indices = 0;
        for (const Json& mesh : file.json["meshes"]) {
            for (const Json& primitive : mesh["primitives"])
                indices += file.json["accessors"][primitive["indices"].get<std::size_t>()]["count"]
                               .get<std::size_t>();
        }
        EXPECT_EQ(indices, static_cast<std::size_t>(model.getNumberOfFaces()) * 3);
    }
}

}  // namespace

}  // namespace obj_adapter::test
