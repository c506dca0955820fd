// Real files of other people's, from the folder that OBJ_ADAPTER_MODELS names.
#include "support/importText.h"
#include "support/modelFiles.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {
namespace {

class ModelFilesTest : public testing::Test {
protected:
    void SetUp() override {
        const std::string folder = getModelFolder();
        if (folder.empty())
            GTEST_SKIP() << "OBJ_ADAPTER_MODELS is not set: no real files to read";
        files = findObjFiles(folder);
        ASSERT_FALSE(files.empty()) << "no .obj file below " << folder;
    }

    std::vector<std::string> files;
};

// What a file says, counted by the simplest reading of it that there is.
struct StatementCounts {
    std::size_t vertices = 0;
    std::size_t texturePoints = 0;
    std::size_t normals = 0;
    std::size_t triangles = 0;        // a polygon of n corners gives n - 2
    std::size_t refusedPolygons = 0;  // two corners at one place: gives none
    std::size_t groupStatements = 0;
};

// The places of the vertices, as the file writes them.
using Places = std::vector<std::string>;

std::string placeOfCorner(const Places& places, const std::string& corner) {
    const int index = std::stoi(corner);
    const auto count = static_cast<int>(places.size());
    return places.at(static_cast<std::size_t>(index < 0 ? index + count : index - 1));
}

void countFace(std::istringstream& words, const Places& places, StatementCounts& counts) {
    std::size_t corners = 0;
    std::set<std::string> distinctPlaces;
    for (std::string corner; words >> corner; ++corners)
        distinctPlaces.insert(placeOfCorner(places, corner));
    if (corners > CORNERS_PER_FACE && distinctPlaces.size() < corners)
        ++counts.refusedPolygons;
    else
        counts.triangles += corners - 2;
}

StatementCounts countStatements(const std::string& fileName) {
    std::string text = readFileBytes(fileName);
    for (std::size_t at = text.find("\\\n"); at != std::string::npos; at = text.find("\\\n"))
        text.erase(at, 2);
    StatementCounts counts;
    Places places;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string keyword;
        words >> keyword;
        counts.texturePoints += keyword == "vt" ? 1 : 0;
        counts.normals += keyword == "vn" ? 1 : 0;
        counts.groupStatements += keyword == "g" || keyword == "o" ? 1 : 0;
        if (keyword == "v") {
            std::string x, y, z;
            words >> x >> y >> z;
            places.push_back(x + " " + y + " " + z);
        }
        if (keyword == "f")
            countFace(words, places, counts);
    }
    counts.vertices = places.size();
    return counts;
}

std::size_t countLines(const std::string& text, const std::string& wanted) {
    std::istringstream lines(text);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line);)
        count += line == wanted ? 1 : 0;
    return count;
}

TEST_F(ModelFilesTest, tablesHoldWhatTheFilesSay) {
    ImportOptions options;
    options.skipPolygonsWithoutEar = true;
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        const StatementCounts counts = countStatements(file);
        const ImportResult result = importFile(file, options);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(result.model.vertices.size(), counts.vertices);
        EXPECT_EQ(result.model.texturePoints.size(), counts.texturePoints);
        EXPECT_EQ(result.model.normalPoints.size(), counts.normals);
        EXPECT_EQ(result.model.faces.size(), counts.triangles);
        EXPECT_EQ(countLines(result.allMessages,
                             "1|Polygonal face has elements that cannot be processed. It will be "
                             "skipped."),
                  counts.refusedPolygons);
        EXPECT_LE(result.model.groups.size(), counts.groupStatements + 1);
    }
}

TEST_F(ModelFilesTest, compactAndSubdivideWithoutViolations) {
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        ImportOptions options;
        options.skipPolygonsWithoutEar = true;
        options.compaction = true;
        const std::size_t compacted = importFile(file, options).model.faces.size();
        options.limitType = "ITERATIONS";
        options.rounds = 1;
        const ImportResult result = importFile(file, options);
        EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
        const bool isRefused =
            result.allMessages.find("Subdivision cannot be used.") != std::string::npos;
        EXPECT_EQ(result.model.faces.size(), isRefused ? compacted : 4 * compacted);
    }
}

TEST_F(ModelFilesTest, twoRunsGiveTheSameBits) {
    ImportOptions options;
    options.skipPolygonsWithoutEar = true;
    options.compaction = true;
    options.limitType = "ITERATIONS";
    options.rounds = 1;
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        const ImportResult first = importFile(file, options);
        const std::string firstModel = printModel(first.model);
        const ImportResult second = importFile(file, options);
        EXPECT_EQ(printModel(second.model), firstModel);
        EXPECT_EQ(second.allMessages, first.allMessages);
    }
}

// The edges of the triangles, and how many triangles have each.
std::map<std::pair<int, int>, int> findEdges(const ModelView& model) {
    std::map<std::pair<int, int>, int> edges;
    for (const Face& face : model.faces) {
        for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
            const int a = face.elements[corner].vertexIndex;
            const int b = face.elements[(corner + 1) % CORNERS_PER_FACE].vertexIndex;
            ++edges[{std::min(a, b), std::max(a, b)}];
        }
    }
    return edges;
}

// Every edge belongs to exactly two faces.
bool isClosed(const std::map<std::pair<int, int>, int>& edges) {
    return std::all_of(edges.begin(), edges.end(),
                       [](const auto& edge) { return edge.second == 2; });
}

TEST_F(ModelFilesTest, closedTriangleMeshesSubdivideThreeRounds) {
    std::size_t meshes = 0;
    for (const std::string& file : files) {
        ImportOptions options;
        options.skipPolygonsWithoutEar = true;
        options.compaction = true;
        ImportResult before = importFile(file, options);
        std::size_t faces = before.model.faces.size();
        std::size_t vertices = before.model.vertices.size();
        const auto edgesBefore = findEdges(before.model);
        std::size_t edges = edgesBefore.size();
        if (faces == 0 || !isClosed(edgesBefore))
            continue;
        SCOPED_TRACE(file);
        options.limitType = "ITERATIONS";
        options.rounds = 3;
        const ImportResult after = importFile(file, options);
        if (after.allMessages.find("Subdivision cannot be used.") != std::string::npos)
            continue;
        ++meshes;
        // Each round sets a vertex on every edge, halves the edges and adds three
        // inside every face.
        for (int round = 0; round < options.rounds; ++round) {
            vertices += edges;
            edges = 2 * edges + 3 * faces;
            faces *= 4;
        }
        EXPECT_EQ(after.model.faces.size(), faces);
        EXPECT_EQ(after.model.vertices.size(), vertices);
    }
    EXPECT_GT(meshes, 0U) << "no closed mesh among the files";
}

}  // namespace
}  // namespace obj_adapter::test
