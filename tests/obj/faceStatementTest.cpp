// f statements, index resolution and the repair at the end of a file.
#include "obj/faceReader.h"

#include "model/objModel.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/messageRecorder.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace obj_adapter::test {
namespace {

struct FaceCase {
    const char* title;
    const char* objText;
    const char* faces;     // describeFaces() form
    const char* messages;  // "level|text" each, with a line feed; "" = silence
};

// Four vertices of a square, three texture points, two normals.
const std::string RECORDS =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
    "vt 0 0\nvt 1 0\nvt 1 1\n"
    "vn 0 0 1\nvn 0 0 -1\n";

const FaceCase FACE_CASES[] = {
    {"vertex indices are one-based", "f 1 2 3\n", "[0 1 2]", ""},
    {"negative indices count from the last record", "f -4 -3 -2\n", "[0 1 2]", ""},
    {"keyword ignores case", "F 1 2 3\n", "[0 1 2]", ""},
    {"vertex and texture", "f 1/1 2/2 3/3\n", "[0/0 1/1 2/2]", ""},
    {"vertex and normal", "f 1//2 2//2 3//2\n", "[0/-/1 1/-/1 2/-/1]", ""},
    {"all three", "f 1/3/2 2/2/1 3/1/2\n", "[0/2/1 1/1/0 2/0/1]", ""},
    {"negative texture and normal", "f 1/-1/-1 2/-2/-2 3/-3/-1\n", "[0/2/1 1/1/0 2/0/1]", ""},
    {"corners may differ in form", "f 1 2/2 3//1\n", "[0 1/1 2/-/0]", ""},
    {"text after a third slash is ignored", "f 1/2/1/9 2/2/2/x 3/2/1/\n", "[0/1/0 1/1/1 2/1/0]",
     ""},
    {"text after the digits is ignored", "f 1a/2b/1c 2/2/2 3.9 \n", "[0/1/0 1/1/1 2]", ""},
    {"a plus sign", "f +1 +2 +3\n", "[0 1 2]", ""},
    {"a carriage return parts tokens", "f 1 2 3\r\n", "[0 1 2]", ""},
    {"a continued line", "f 1 2 \\\n3\n", "[0 1 2]", ""},
    {"zero is too low", "f 0 1 2\n", "",
     "1|Could not process face. Index too low. Skipping face.\n"},
    {"before the first record", "f -5 1 2\n", "",
     "1|Could not process face. Index too low. Skipping face.\n"},
    {"a texture index that is too low", "f 1/0 2/1 3/1\n", "",
     "1|Could not process face. Index too low. Skipping face.\n"},
    {"a normal index that is too low", "f 1//-3 2//1 3//1\n", "",
     "1|Could not process face. Index too low. Skipping face.\n"},
    {"no vertex index", "f /1 2 3\n", "",
     "1|Could not process face. No integer found Skipping face.\n"},
    {"no texture index", "f 3/ 2 1\n", "",
     "1|Could not process face. No integer found Skipping face.\n"},
    {"no normal index", "f 3/2/ 2 1\n", "",
     "1|Could not process face. No integer found Skipping face.\n"},
    {"no normal index behind two slashes", "f 3// 2 1\n", "",
     "1|Could not process face. No integer found Skipping face.\n"},
    {"only slashes", "f // 2 1\n", "",
     "1|Could not process face. No integer found Skipping face.\n"},
    {"no number", "f a b c\n", "",
     "1|Could not process face. invalid stoi argument Skipping face.\n"},
    {"a number beyond 32 bits", "f 1 2 4294967296\n", "",
     "1|Could not process face. stoi argument out of range Skipping face.\n"},
    {"the first fault of a corner is reported", "f 0/x 2 3\n", "",
     "1|Could not process face. Index too low. Skipping face.\n"},
    {"the texture's fault comes before the normal's", "f 1/x/0 2 3\n", "",
     "1|Could not process face. invalid stoi argument Skipping face.\n"},
    {"the first faulty corner ends the statement", "f 1 2 3 x 0\n", "",
     "1|Could not process face. invalid stoi argument Skipping face.\n"},
    {"a faulty corner beats too few", "f 1 x\n", "",
     "1|Could not process face. invalid stoi argument Skipping face.\n"},
    {"two corners", "f 1 2\n", "", "1|Face does not have enough vertices. Skipping face.\n"},
    {"one corner", "f 1\n", "", "1|Face does not have enough vertices. Skipping face.\n"},
    {"no corner", "f \n", "", "1|Face does not have enough vertices. Skipping face.\n"},
    {"reading goes on after a bad face", "f 1 2\nf 1 2 3\n", "[0 1 2]",
     "1|Face does not have enough vertices. Skipping face.\n"},
    {"a triangle may repeat a vertex while reading", "f 1 1 2\n", "[0 0 1]", ""},
    {"a quad becomes two triangles", "f 1 2 3 4\n", "[0 1 2] [0 2 3]", ""},
    {"a quad keeps its corners' records", "f 1/1/1 2/2/1 3/3/1 4/1/2\n",
     "[0/0/0 1/1/0 2/2/0] [0/0/0 2/2/0 3/0/1]", ""},
    {"a triangle may name a later vertex", "f 1 2 5\nv 5 5 5\n", "[0 1 4]", ""},
    {"a quad may not", "f 1 2 3 5\nv 5 5 5\n", "",
     "1|Polygonal face has elements that cannot be processed. It will be skipped.\n"},
    {"a quad with two equal corners", "f 1 2 3 1\n", "",
     "1|Polygonal face has elements that cannot be processed. It will be skipped.\n"},
    {"an index past the end is clamped and counted", "f 1 2 99\n", "[0 1 3]",
     "2|Number of faces where vertex, texture, or normal indices had to be changed due to being "
     "out of range: 1\n"},
    {"a face counts once", "f 98 99/99 100//9\nf 1 2 3\n", "[3 3/2 3/-/1] [0 1 2]",
     "2|Number of faces where vertex, texture, or normal indices had to be changed due to being "
     "out of range: 1\n"},
    {"two faces count twice", "f 1 2 99\nf 1/4 2/3 3/3\n", "[0 1 3] [0/2 1/2 2/2]",
     "2|Number of faces where vertex, texture, or normal indices had to be changed due to being "
     "out of range: 2\n"},
};

TEST(FaceStatement, readsRepairsAndReports) {
    for (const FaceCase& row : FACE_CASES) {
        SCOPED_TRACE(std::string(row.title) + "\n" + row.objText);
        const ImportResult result = importText(RECORDS + row.objText);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(describeFaces(result.model), row.faces);
        EXPECT_EQ(result.readingMessages, row.messages);
    }
}

TEST(FaceStatement, fourCornersOnALineCannotBeSplit) {
    const ImportResult result =
        importText("v 0 0 0\nv 1 0 0\nv 2 0 0\nv 3 0 0\nf 1 2 3 4\nf 1 2 3\n");
    EXPECT_EQ(describeFaces(result.model), "[0 1 2]");
    EXPECT_EQ(result.readingMessages, "1|Could not split non-triangular face. Skipping face.\n");
}

// Reading takes another way from some number of corners on.
TEST(FaceStatement, aConvexPolygonIsAFanWhateverItsSize) {
    for (int count = 60; count <= 70; ++count) {
        SCOPED_TRACE(count);
        std::string vertices;
        std::string statement = "f";
        std::string expected;
        for (int corner = 0; corner < count; ++corner) {
            // On a parabola.
            vertices +=
                "v " + std::to_string(corner) + " " + std::to_string(corner * corner) + " 0\n";
            statement += " " + std::to_string(corner + 1);
            if (corner >= 2)
                expected += (corner > 2 ? " [0 " : "[0 ") + std::to_string(corner - 1) + " " +
                            std::to_string(corner) + "]";
        }
        const ImportResult result = importText(vertices + statement + "\n");
        EXPECT_EQ(describeFaces(result.model), expected);
        EXPECT_EQ(result.readingMessages, "");
    }
}

TEST(FaceStatement, positiveAndRelativeIndicesNameTheSameFace) {
    const ImportResult result = importText(RECORDS + "f 1 2 3\nf -4 -3 -2\n");
    EXPECT_EQ(describeFaces(result.model), "[0 1 2] [0 1 2]");
}

TEST(FaceStatement, normalsWithoutTextures) {
    const ImportResult result = importText(RECORDS + "f 1//2 2//2 3//2\n");
    ASSERT_EQ(result.model.faces.size(), 1U);
    EXPECT_FALSE(result.model.faces[0].hasTextures());
    EXPECT_TRUE(result.model.faces[0].hasNormals());
    for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
        EXPECT_EQ(result.model.faces[0].getElement(corner).getNormalIndex(), 1);
        EXPECT_EQ(result.model.faces[0].getElement(corner).getTextureIndex(), NO_INDEX);
    }
}

TEST(FaceStatement, relativeIndicesCountTheRecordsReadSoFar) {
    const ImportResult result = importText("v 0 0 0\nv 1 0 0\nv 1 1 0\nf -1 -2 -3\nv 9 9 9\n");
    EXPECT_EQ(describeFaces(result.model), "[2 1 0]");
}

TEST(FaceStatement, textureIndicesWithoutTexturePointsBecomeNone) {
    const ImportResult result = importText("v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1/1 2/1 3/1\n");
    EXPECT_EQ(describeFaces(result.model), "[0 1 2]");
    EXPECT_EQ(result.readingMessages,
              "2|Number of faces where vertex, texture, or normal indices had to be changed due "
              "to being out of range: 1\n");
}

TEST(FaceStatement, vertexIndicesWithoutVerticesBecomeNone) {
    const ImportResult result = importText("f 1 2 3\n");
    EXPECT_EQ(describeFaces(result.model), "[- - -]");
    EXPECT_EQ(result.readingMessages,
              "2|Number of faces where vertex, texture, or normal indices had to be changed due "
              "to being out of range: 1\n");
}

// The repair looks at the faces of earlier imports too: -1 is below the table and
// becomes 0, 0 is past its end and becomes -1.
TEST(FaceStatement, laterImportsRepairIndicesWithoutVerticesAgain) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a.obj", "f 1 2 3\n");
    ObjConverter::clearInstance();
    MessageRecorder recorder;
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setDataCompaction(false);
    const char* const FACES_AFTER_IMPORT[] = {"[- - -]", "[0 0 0] [- - -]",
                                              "[- - -] [0 0 0] [- - -]"};
    for (int import = 0; import < 3; ++import) {
        SCOPED_TRACE(import);
        recorder.clear();
        EXPECT_EQ(converter->importObjDataFromFile(file.c_str()), ObjConverter::CONVERTER_OK);
        EXPECT_EQ(describeFaces(viewOf(*converter)), FACES_AFTER_IMPORT[import]);
        // Index ranges apart: there is no vertex 0.
        EXPECT_EQ(findViolations(viewOf(*converter), ModelState::ENDED_EARLY), "");
        EXPECT_EQ(recorder.getText(),
                  "3|Obj Converter Import:\n"
                  "3|Reading input file...\n"
                  "2|Number of faces where vertex, texture, or normal indices had to be changed "
                  "due to being out of range: " +
                      std::to_string(import + 1) +
                      "\n"
                      "3|Done reading input.\n"
                      "3|Obj data import complete.\n");
    }
    converter->setDataCompaction(true);
    EXPECT_EQ(converter->importObjDataFromFile(file.c_str()), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter->getNumberOfFaces(), 0);
}

TEST(FaceStatement, everyTriangleOfAQuadHasTheMaterialAndTheGroup) {
    ImportOptions options;
    options.otherFiles["a.mtl"] = "newmtl red\nnewmtl blue\n";
    const ImportResult result =
        importText("mtllib a.mtl\nusemtl blue\ng plate\n" + RECORDS + "f 1 2 3 4\n", options);
    EXPECT_EQ(describeFaces(result.model), "[0 1 2 m1] [0 2 3 m1]");
    EXPECT_EQ(describeGroups(result.model), "plate: 0 1");
}

TEST(FaceStatement, aPolygonWithoutAnEarIsSkippedWhereTheHostAsksForIt) {
    ImportOptions options;
    options.skipPolygonsWithoutEar = true;
    // Four corners on one side of a triangle: none can be cut off.
    const ImportResult result =
        importText("v 0 1 0\nv 3 0 0\nv 1 0 0\nv 2 0 0\nv 0 0 0\nf 1 2 3 4 5\nf 1 2 3\n", options);
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(describeFaces(result.model), "[0 1 2]");
    EXPECT_EQ(result.readingMessages, "1|Could not split non-triangular face. Skipping face.\n");
}

TEST(ResolveIndex, onePastTheLastIsLeftOpen) {
    EXPECT_EQ(resolveIndex(1, 4), 0);
    EXPECT_EQ(resolveIndex(4, 4), 3);
    EXPECT_EQ(resolveIndex(5, 4), 4);
    EXPECT_EQ(resolveIndex(2147483647, 0), 2147483646);
    EXPECT_EQ(resolveIndex(-1, 4), 3);
    EXPECT_EQ(resolveIndex(-4, 4), 0);
}

TEST(ResolveIndex, belowTheFirstThrows) {
    for (const int value : {0, -5, -2147483647 - 1}) {
        SCOPED_TRACE(value);
        try {
            resolveIndex(value, 4);
            FAIL() << "nothing thrown";
        } catch (const std::runtime_error& failure) {
            EXPECT_STREQ(failure.what(), "Index too low.");
        }
    }
}

// Records that a host has spoilt through the lent pointers are brought back
// into range by the next import.
TEST(RepairFaceIndices, bringsEveryIndexIntoRange) {
    ObjModel model;
    Vertex vertex;
    model.addVertex(vertex);
    model.addVertex(vertex);
    TexturePoint texturePoint;
    texturePoint.u = texturePoint.v = 0.0;
    model.addTexturePoint(texturePoint);
    Face face;
    face.elements[0] = {-7, -2, -9};
    face.elements[1] = {2, 1, 0};
    face.elements[2] = {1, 0, -1};
    face.sortedKeyValid = true;
    model.addFace(face);
    repairFaceIndices(model);
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[0/0/0 1/0 1/0]");
    EXPECT_FALSE(model.faces[0].sortedKeyValid);
}

TEST(RepairFaceIndices, ofEmptyTablesTakesNegativeIndicesToZeroAndOthersToNone) {
    ObjModel model;
    Face face;
    face.elements[0] = {-7, -2, -9};
    face.elements[1] = {0, 0, 5};
    face.elements[2] = {NO_INDEX, NO_INDEX, NO_INDEX};
    model.addFace(face);
    repairFaceIndices(model);
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[0/0/0 - 0]");
}

}  // namespace
}  // namespace obj_adapter::test
