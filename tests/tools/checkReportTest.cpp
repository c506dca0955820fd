// How messages and faults are grouped and counted.
#include "checkReport.h"

#include "support/temporaryDirectory.h"

#include <obj_adapter/objConverter.h>

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace obj_adapter::test {

namespace {

const char* nameOf(tool::Category category) {
    switch (category) {
        case tool::Category::FAILED:
            return "failed";
        case tool::Category::NOT_FOUND:
            return "not found";
        case tool::Category::REFUSED:
            return "refused";
        case tool::Category::REPAIRED:
            return "repaired";
        case tool::Category::IGNORED:
            return "ignored";
        case tool::Category::MESH:
            return "mesh";
        default:
            return "other";
    }
}

// A line for each: "2 repaired 3: Error processing vertex: ..." with the level in
// front and the count behind the category.
std::string describe(const tool::CheckReport& report) {
    std::string text;
    for (const tool::Issue& issue : report.issues)
        text += std::to_string(issue.level) + " " + nameOf(issue.category) + " " +
                std::to_string(issue.count) + ": " + issue.text + "\n";
    return text;
}

// "test.obj:5 a.mtl:2 | " with a bar behind each issue.
std::string describePlaces(const tool::CheckReport& report) {
    std::string text;
    for (const tool::Issue& issue : report.issues) {
        for (const tool::Place& place : issue.places) {
            const std::size_t slash = place.fileName.rfind('/');
            text += place.fileName.substr(slash + 1) + ":" + std::to_string(place.line) + " ";
        }
        text += "| ";
    }
    return text;
}

tool::CheckReport check(const TemporaryDirectory& directory, const std::string& objText,
                        const std::map<std::string, std::string>& otherFiles = {}) {
    for (const auto& [name, content] : otherFiles)
        directory.write(name, content);
    tool::ImportSettings settings;
    settings.fileName = directory.write("test.obj", objText);
    ObjConverter::clearInstance();
    return tool::checkFile(settings);
}

struct CheckCase {
    const char* title;
    const char* objText;
    const char* mtlText;  // of a.mtl
    const char* issues;
};

const char* const TRIANGLE = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

const CheckCase CASES[] = {
    {"nothing", "", "", ""},
    {"equal messages are one issue", "v 1 x\nv 1 x\nv 1 2\n", "",
     "1 repaired 2: Error processing vertex: invalid stod argument\n"
     "Vertex will be replaced by (0,0,0).\n"
     "1 repaired 1: Error processing vertex: No float value found\n"
     "Vertex will be replaced by (0,0,0).\n"},
    {"counts of the importer are taken over", "s 1\ns 2\ns 3\nusemtl a1\nusemtl a1\n", "",
     "2 ignored 3: Unrecognized statement: \"s\" was seen 3 times.\n"
     "1 not found 2: Could not find material \"a1\" But saw 2 references.\n"},
    {"a count of faces", "f 1 2 99\nf 1 2 98\n", "",
     "2 repaired 2: Number of faces where vertex, texture, or normal indices had to be changed due "
     "to being out of range: 2\n"
     "2 repaired 2: Faces removed: the same as another of the group\n"},
    {"faces that cannot be read", "f 1 2\nf 0 1 2\nf 1 2 x\n", "",
     "1 refused 1: Face does not have enough vertices. Skipping face.\n"
     "1 refused 1: Could not process face. Index too low. Skipping face.\n"
     "1 refused 1: Could not process face. invalid stoi argument Skipping face.\n"},
    {"a polygon without area", "v 2 0 0\nv 3 0 0\nf 1 2 4 5\n", "",
     "1 refused 1: Could not split non-triangular face. Skipping face.\n"},
    {"collapsed and duplicate faces", "v 0 0 0\nf 1 4 2\nf 2 3 1\n", "",
     "2 repaired 1: Faces removed: two corners at one place\n"
     "2 repaired 1: Faces removed: the same as another of the group\n"},
    {"library", "mtllib b.mtl\nmtllib\n", "",
     "1 not found 1: Could not find material library b.mtl\n"
     "1 refused 1: No name given for material library. Materials will not be loaded.\n"},
    {"material values", "mtllib a.mtl\n", "newmtl a\nKd red\nd x\n",
     "1 refused 1: Error processing Diffuse color: Invalid color format\n"
     "1 refused 1: Error processing Dissolve: invalid stod argument\n"},
    {"a library that ends early", "mtllib a.mtl\n", "newmtl a\nnewmtl\n",
     "1 refused 1: Error processing New Material: No name given.\n"
     "1 refused 1: Error processing New Material: Material name missing\n"
     "1 failed 1: Problem with material library: Could not proccess new material\n"},
    {"images are looked for beside the library", "mtllib a.mtl\n",
     "newmtl a\nmap_Kd here.png\nmap_Ks not_here.png\nnewmtl b\nbump not_here.png\n",
     "2 not found 2: Could not find the image \"not_here.png\" of material \"a\" (map_Ks)\n"},
    {"faults of the mesh", "v 2 0 0\nv inf 0 0\nf 1 2 4\nf 1 2 5\nf 1 3 2\n", "",
     "2 mesh 1: Vertices with coordinates that are no finite numbers\n"
     "2 mesh 1: Faces with a corner at no finite place\n"
     "2 mesh 1: Faces without area\n"
     "2 mesh 1: Faces over the same three vertices as another\n"
     "2 mesh 1: Edges of more than two faces\n"},
};

TEST(CheckReportTest, Cases) {
    for (const CheckCase& row : CASES) {
        SCOPED_TRACE(row.title);
        const TemporaryDirectory directory;
        const tool::CheckReport report = check(directory, std::string(TRIANGLE) + row.objText,
                                               {{"a.mtl", row.mtlText}, {"here.png", "x"}});
        EXPECT_TRUE(report.succeeded);
        EXPECT_EQ(describe(report), row.issues);
    }
}

TEST(CheckReportTest, Places) {
    const TemporaryDirectory directory;
    const tool::CheckReport report =
        check(directory,
              std::string(TRIANGLE) +
                  "v 1\n\nmtllib a.mtl\nv 2 \\\n x\nv 3\nmtllib b.mtl\ns 1\n"
                  "v 4\nv 5\nv 6\nv 7\n",
              {{"a.mtl", "newmtl a\nd x\n"}, {"b.mtl", "\nnewmtl b\nd x\n"}});
    EXPECT_EQ(describePlaces(report),
              "test.obj:5 test.obj:10 test.obj:13 test.obj:14 test.obj:15 | "
              "a.mtl:2 b.mtl:3 | test.obj:8 | | ");
}

TEST(CheckReportTest, MissingFile) {
    tool::ImportSettings settings;
    settings.fileName = "no/such/file.obj";
    ObjConverter::clearInstance();
    const tool::CheckReport report = tool::checkFile(settings);
    EXPECT_FALSE(report.succeeded);
    EXPECT_EQ(describe(report), "1 failed 1: Stopping conversion... Unable to open file\n");
    EXPECT_FALSE(report.compaction.has_value());
}

TEST(CheckReportTest, EffectOfCompaction) {
    const TemporaryDirectory directory;
    const tool::CheckReport report =
        check(directory, std::string(TRIANGLE) + "v 0 0 0\nv 1 0 0\nf 4 5 3\nf 1 4 5\n");
    ASSERT_TRUE(report.compaction.has_value());
    EXPECT_EQ(report.compaction->verticesBefore, 5);
    EXPECT_EQ(report.compaction->verticesAfter, 3);
    EXPECT_EQ(report.compaction->facesBefore, 3);
    EXPECT_EQ(report.compaction->facesAfter, 1);
    EXPECT_EQ(report.compaction->collapsedFaces, 1);
}

}  // namespace

}  // namespace obj_adapter::test
