#include "support/importScenarios.h"

#include "support/generatedFile.h"

#include <utility>

namespace obj_adapter::test {

namespace {

// Names that no string keeps inside itself, so that each wants memory.
const char LIBRARY_NAME[] = "a_library_with_a_name_that_is_long.mtl";

const char SQUARE[] =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
    "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvn 0 0 1\n";

const char TWO_TEXTURED_TRIANGLES[] = "f 1/1/1 2/2/1 3/3/1\nf 1/1/1 3/3/1 4/4/1\n";

const char TETRAHEDRON[] =
    "v 1 1 1\nv -1 -1 1\nv -1 1 -1\nv 1 -1 -1\n"
    "f 1 3 2\nf 1 4 3\nf 1 2 4\nf 2 3 4\n";

// A comb of four teeth: ears are blocked and most corners reflex or convex in
// turn.
const char COMB[] =
    "v 0 0 5\nv 7 0 5\nv 7 3 5\nv 6 3 5\nv 6 1 5\nv 5 1 5\nv 5 3 5\nv 4 3 5\n"
    "v 4 1 5\nv 3 1 5\nv 3 3 5\nv 2 3 5\nv 2 1 5\nv 1 1 5\nv 1 3 5\nv 0 3 5\n"
    "f 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n";

// Runs back along its own side: no corner can ever be cut off.
const char POLYGON_WITHOUT_EAR[] =
    "v 0 1 0\nv 3 0 0\nv 1 0 0\nv 2 0 0\nv 0 0 0\nf -5 -4 -3 -2 -1\n";

const char MATERIALS[] =
    "newmtl a_material_with_a_long_name\nKa 0.1 0.2 0.3\nKd xyz 0.3 0.4 0.5\n"
    "Ks spectral a_spectral_curve_with_a_long_name.rfl 0.5\nTf 1 1 1\nNs 10\nd -halo 0.5\n"
    "illum 2\nsharpness 30\nNi 1.5\n"
    "map_Kd -clamp on -o 1 2 3 -mm 0.1 2 a_texture_with_a_long_name_of_its_own.png\n"
    "refl -type sphere another_texture_with_a_long_name_of_its_own.png\n"
    "newmtl another_material_with_a_long_name\nTr 0.25\n"
    "bump -texres 64 -imfchan l -blendu off -blendv off -cc on bumps_with_a_long_name_too.png\n";

const char BAD_MATERIALS[] =
    "Ka 1 0 0\nmap_Kd early.png\nnewmtl red\nKa\nKd 0.5\nKs red\nTf xyz 1 2\nNs shiny\n"
    "d -halo x\nTr\nillum none\nsharpness 99999999999\nNi 1e999\n"
    "map_Ka -s 2 wood.png\nmap_Kd -blendu maybe -blendv maybe -cc maybe -clamp maybe w.png\n"
    "map_Ks -imfchan R -texres x -mm 1 x -type cone w.png\nmap_Ns -o 1\nmap_d\n"
    "disp height.png\ndecal -t x w.png\nbump -blendu\nrefl env.png\nrefl -type up env.png\n"
    "unknown statement\nnewmtl red\nnewmtl\nnewmtl never\n";

// Sixty triangles of a strip, alternating between groups of repeated names.
std::string stripInGroups() {
    std::string text = "v 0 0 0\nv 0 1 0.5\n";
    for (int step = 1; step <= 30; ++step) {
        const std::string x = std::to_string(step);
        const std::string last = std::to_string(2 * step);
        text += "v " + x + " 0 0.25\nv " + x + " 1 0\n";
        if (step % 5 == 1)
            text += step % 2 == 0 ? "g arm left_hand\n" : "g arm right_hand finger\n";
        text += "f " + std::to_string(2 * step - 1) + " " + std::to_string(2 * step + 1) + " " +
                last + "\nf " + last + " " + std::to_string(2 * step + 1) + " " +
                std::to_string(2 * step + 2) + "\n";
    }
    return text;
}

ImportOptions compacting() {
    ImportOptions options;
    options.compaction = true;
    options.skipPolygonsWithoutEar = true;
    return options;
}

ImportOptions subdividing(const char* limitType, int rounds) {
    ImportOptions options = compacting();
    options.limitType = limitType;
    options.rounds = rounds;
    return options;
}

ImportOptions inTree(bool lastNamesOnly, bool reverse) {
    ImportOptions options = compacting();
    options.hierarchy = true;
    options.reverse = reverse;
    options.showLastNamesOnly = lastNamesOnly;
    return options;
}

ImportOptions withLibrary(const std::string& text, ImportOptions options = compacting()) {
    options.otherFiles[LIBRARY_NAME] = text;
    return options;
}

ImportScenario everythingAtOnce() {
    ImportOptions options = withLibrary(MATERIALS, subdividing("ITERATIONS", 2));
    options.hierarchy = true;
    options.reverse = true;
    return {"everythingAtOnce",
            std::string("mtllib ") + LIBRARY_NAME + "\n" + SQUARE +
                "usemtl a_material_with_a_long_name\ng body arm left\nf 1/1/1 2/2/1 3/3/1 4/4/1\n"
                "v 5 0 0\nv 9 2 0\nv 5 4 0\nv 6 2 0\ng body arm right\n"
                "usemtl another_material_with_a_long_name\nf -4 -3 -2 -1\n"
                "usemtl a_missing_material_with_a_long_name\nan_unknown_keyword_that_is_long 1\n"
                "g body leg\nf 1/1/1 4/4/1 5\nf 1 2 99\n",
            options};
}

ImportScenario generated(const char* title, unsigned seed, ImportOptions options) {
    const GeneratedFile file = generateFile(seed);
    options.otherFiles["generated.mtl"] = file.mtlText;
    return {title, file.objText, std::move(options)};
}

// Names come in runs of components, as exporters write them.
std::string manyGroups() {
    std::string text = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\n";
    for (int group = 0; group < 40; ++group) {
        const std::string number = std::to_string(group / 4);
        text += (group % 3 == 0 ? "o the_whole_robot part_number_" : "g the_whole_robot arms arm") +
                number + "\nf 1 2 " + (group % 2 == 0 ? "3" : "4") + "\n";
    }
    return text;
}

std::vector<ImportScenario> makeScenarios() {
    const std::string library = std::string("mtllib ") + LIBRARY_NAME + "\n";
    const std::string twoTriangles = std::string(SQUARE) + TWO_TEXTURED_TRIANGLES;
    ImportOptions readingOnly;
    ImportOptions overridden = subdividing("ITERATIONS", 1);
    overridden.compaction = false;

    std::vector<ImportScenario> scenarios;
    scenarios.push_back({"readingOnly", twoTriangles, readingOnly});
    scenarios.push_back({"emptyFile", "", compacting()});
    scenarios.push_back({"compaction", twoTriangles + twoTriangles, compacting()});
    scenarios.push_back({"oneRoundOnABorder", twoTriangles, subdividing("ITERATIONS", 1)});
    scenarios.push_back({"twoRoundsOnAClosedMesh", TETRAHEDRON, subdividing("ITERATIONS", 2)});
    scenarios.push_back({"faceCount", twoTriangles, subdividing("FACE_COUNT", 50)});
    scenarios.push_back({"vertexCount", TETRAHEDRON, subdividing("VERTEX_COUNT", 50)});
    scenarios.push_back({"unknownLimitType", twoTriangles, subdividing("iterations", 2)});
    scenarios.push_back({"compactionOverridden", twoTriangles, overridden});
    scenarios.push_back(
        {"conflictingFaces", twoTriangles + "f 1 3 2\n", subdividing("ITERATIONS", 2)});
    scenarios.push_back({"strip", stripInGroups(), subdividing("ITERATIONS", 2)});
    scenarios.push_back({"flatTree", manyGroups(), compacting()});
    scenarios.push_back({"treeOfLastNames", manyGroups(), inTree(true, false)});
    scenarios.push_back({"treeOfFullNames", manyGroups(), inTree(false, false)});
    scenarios.push_back({"reversedTree", stripInGroups(), inTree(true, true)});
    scenarios.push_back(
        {"polygons", std::string(COMB) + "g teeth\n" + SQUARE + "f -4 -3 -2 -1\n", compacting()});
    scenarios.push_back({"badPolygons",
                         std::string(SQUARE) +
                             "f 1 2 3 2\nf 1 2 3 9\nv 2 0 0\nv 3 0 0\nf 1 2 5 6\n" +
                             POLYGON_WITHOUT_EAR + "v 9 9 9\nv 8 8 9\nv 9 9 9\n" +
                             "v 7 7 7\nv 5 5 5\nf -4 -3 -2 -1\n",
                         compacting()});
    scenarios.push_back(
        {"materials",
         library + SQUARE + "usemtl a_material_with_a_long_name\n" + TWO_TEXTURED_TRIANGLES,
         withLibrary(MATERIALS)});
    scenarios.push_back(
        {"badMaterials", library + "usemtl red\n" + twoTriangles, withLibrary(BAD_MATERIALS)});
    scenarios.push_back({"libraryReadTwice",
                         library + library + "usemtl a_material_with_a_long_name\n" + twoTriangles,
                         withLibrary(MATERIALS)});
    scenarios.push_back(
        {"badStatements",
         "mtllib a_library_that_is_nowhere_to_be_found.mtl\nmtllib\nusemtl\n"
         "usemtl a_missing_material_with_a_long_name\nusemtl another_missing_material_like_it\n"
         "v 1 x 3\nv 1 2\nvt x\nvn 1 2\nv 0 0 0\nv 1e999 0 0\nf 0 1 2\nf 1 2\nf 1// 2 3\n"
         "f 1/9 2//9 99/1/1\nan_unknown_keyword_that_is_long\nanother_unknown_keyword_like_it\ns "
         "1\n"
         "usemtl a_missing_material_with_a_long_name\nf 1 2 \\\n3\n",
         compacting()});
    scenarios.push_back(generated("generatedFile", 4, subdividing("ITERATIONS", 1)));
    scenarios.push_back(generated("anotherGeneratedFile", 9, inTree(false, true)));
    scenarios.push_back(everythingAtOnce());
    return scenarios;
}

// A grid of squares with texture points, in stripes that are groups.
std::string grid(int rows, int columns) {
    std::string text;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const std::string x = std::to_string(column);
            const std::string y = std::to_string(row);
            text += "v " + x + " " + y + " " + std::to_string(row * column % 7) + "\nvt " + x +
                    " " + y + "\nvn 0 0 1\n";
        }
    }
    const auto corner = [&](int row, int column) {
        const std::string index = std::to_string(row * columns + column + 1);
        return " " + index + "/" + index + "/" + index;
    };
    for (int row = 1; row < rows; ++row) {
        text += "g stripe number_" + std::to_string(row) + "\n";
        for (int column = 1; column < columns; ++column)
            text += "f" + corner(row - 1, column - 1) + corner(row - 1, column) +
                    corner(row, column) + corner(row, column - 1) + "\n";
    }
    return text;
}

}  // namespace

const std::vector<ImportScenario>& largeImportScenarios() {
    constexpr int ROWS = 4;
    constexpr int COLUMNS = 1500;
    static const std::vector<ImportScenario> SCENARIOS = {
        {"largeGrid", grid(ROWS, COLUMNS), subdividing("ITERATIONS", 1)}};
    return SCENARIOS;
}

const std::vector<ImportScenario>& importScenarios() {
    static const std::vector<ImportScenario> SCENARIOS = makeScenarios();
    return SCENARIOS;
}

}  // namespace obj_adapter::test
