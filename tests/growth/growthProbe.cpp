// Imports generated files of one kind in three sizes, each twice that before, under
// callgrind, which counts the instructions of each. tests/growth/growth.cmake runs
// it and compares.
//
//   growth_probe KIND
#include "support/temporaryDirectory.h"

#include <obj_adapter/obj_adapter.h>

#include <valgrind/callgrind.h>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace obj_adapter::test {
namespace {

// A file with what it needs, and how it is imported.
struct Input {
    std::string objText;
    std::string mtlText;  // the library that objText names "probe.mtl"
    bool compacts = false;
    bool buildsTree = false;
    bool hasHierarchy = false;
    int rounds = 0;
};

struct Kind {
    const char* name;
    int smallestSize;
    Input (*make)(int size);
};

std::string number(int value) {
    return std::to_string(value);
}

const char TRIANGLE[] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

// --- Lines and statements ----------------------------------------------------------

Input longLine(int size) {
    const auto length = static_cast<std::size_t>(size);
    return {"v 1 2 3 4" + std::string(length, ' ') + "\n#" + std::string(length, 'x') + "\n", ""};
}

Input longNames(int size) {
    const std::string name(static_cast<std::size_t>(size), 'n');
    return {"mtllib probe.mtl\n" + name + "\nusemtl " + name + "\ng " + name + " " + name + "\n" +
                TRIANGLE + "usemtl x" + name + "\n",
            "newmtl " + name + "\nmap_Kd " + name + "\n"};
}

Input longNumbers(int size) {
    const std::string digits(static_cast<std::size_t>(size), '7');
    return {"v 0." + digits + " " + digits + " 0x" + digits + "p-10\nv " + digits + "e-" +
                number(size) + " 1 2\nf 1" + digits + " 2 3\nf 0001 1 1\n",
            ""};
}

Input continuedLines(int size) {
    Input input;
    for (int line = 0; line < size; ++line)
        input.objText += "v 1 2 \\\n3\n#\\\n\\\n";
    return input;
}

Input unknownKeywords(int size) {
    Input input;
    for (int line = 0; line < size; ++line)
        input.objText += "keyword" + number(line) + "\n";
    return input;
}

Input badStatements(int size) {
    Input input;
    for (int line = 0; line < size; ++line)
        input.objText += "v 1 x 3\nvt\nvn 1 2\nf 0 1 2\nf 1\nmtllib\nusemtl\n";
    return input;
}

Input missingMaterials(int size) {
    Input input;
    for (int line = 0; line < size; ++line)
        input.objText += "usemtl missing_" + number(line) + "\n";
    return input;
}

// --- Materials ----------------------------------------------------------------------

Input materialsAndTheirUses(int size) {
    Input input;
    input.objText = std::string("mtllib probe.mtl\n") + TRIANGLE;
    for (int material = 0; material < size; ++material) {
        input.mtlText += "newmtl material_" + number(material) + "\nKd 1 0 0\n";
        input.objText += "usemtl material_" + number(size - 1 - material) + "\nf 1 2 3\n";
    }
    return input;
}

Input materialsOfOneName(int size) {
    Input input;
    input.objText = std::string("mtllib probe.mtl\n") + TRIANGLE;
    for (int material = 0; material < size; ++material) {
        input.mtlText += "newmtl same\n";
        input.objText += "usemtl same\n";
    }
    return input;
}

Input libraryReadAgain(int size) {
    constexpr int MATERIALS = 20;
    Input input;
    for (int material = 0; material < MATERIALS; ++material)
        input.mtlText += "newmtl material_" + number(material) + "\n";
    for (int line = 0; line < size; ++line)
        input.objText += "mtllib probe.mtl\nusemtl material_7\n";
    return input;
}

Input manyMapOptions(int size) {
    Input input;
    input.objText = "mtllib probe.mtl\n";
    input.mtlText = "newmtl m\nmap_Kd";
    for (int option = 0; option < size; ++option)
        input.mtlText += " -clamp on -blendu x -unknown wood.png";
    return input;
}

// --- Groups and their tree ----------------------------------------------------------

Input groupsOfOneName(int size) {
    Input input = {TRIANGLE, ""};
    for (int group = 0; group < size; ++group)
        input.objText += "g same\nf 1 2 3\n";
    input.buildsTree = true;
    return input;
}

// The numbers that the later groups would get are taken.
Input groupsOfTakenNames(int size) {
    Input input = {TRIANGLE, ""};
    for (int group = 0; group < size; ++group)
        input.objText += "g same_" + number(group) + "\nf 1 2 3\n";
    for (int group = 0; group < size; ++group)
        input.objText += "g same\nf 1 2 3\n";
    input.buildsTree = true;
    input.hasHierarchy = true;
    return input;
}

Input emptyGroups(int size) {
    Input input = {TRIANGLE, ""};
    for (int group = 0; group < size; ++group)
        input.objText += "g empty\ng\n";
    input.objText += "g last\nf 1 2 3\n";
    return input;
}

Input wideTree(int size) {
    Input input = {TRIANGLE, ""};
    for (int group = 0; group < size; ++group)
        input.objText += "g a b" + number(group % 100) + " c" + number(group) + "\nf 1 2 3\n";
    input.buildsTree = true;
    input.hasHierarchy = true;
    return input;
}

Input deepTree(int size) {
    Input input = {TRIANGLE, ""};
    input.objText += "g";
    for (int name = 0; name < size; ++name)
        input.objText += " n" + number(name);
    input.objText += "\nf 1 2 3\ng other\nf 1 2 3\n";
    input.buildsTree = true;
    input.hasHierarchy = true;
    return input;
}

// --- Polygons -----------------------------------------------------------------------

struct Corner {
    double x;
    double y;
};

std::string vertexStatement(const Corner& corner) {
    char line[100];
    std::snprintf(line, sizeof line, "v %.17g %.17g 0\n", corner.x, corner.y);
    return line;
}

Input polygon(const std::vector<Corner>& corners) {
    Input input;
    std::string face = "f";
    for (std::size_t corner = 0; corner < corners.size(); ++corner) {
        input.objText += vertexStatement(corners[corner]);
        face += " " + std::to_string(corner + 1);
    }
    input.objText += face + "\n";
    return input;
}

std::vector<Corner> circle(int size) {
    std::vector<Corner> corners;
    for (int corner = 0; corner < size; ++corner) {
        const double angle = 6.283185307179586 * corner / size;
        corners.push_back({1000.0 * std::cos(angle), 1000.0 * std::sin(angle)});
    }
    return corners;
}

Input convexPolygon(int size) {
    return polygon(circle(size));
}

// The last corner lies where the first does, so only the search for that takes place.
Input polygonWithEqualCorners(int size) {
    std::vector<Corner> corners = circle(size);
    corners.push_back(corners.front());
    return polygon(corners);
}

// Coordinates that are not numbers equal all others.
Input polygonWithNans(int size) {
    Input input;
    std::string face = "f";
    for (int corner = 0; corner < size; ++corner) {
        const std::string value = number(corner);
        // Every pair differs in a coordinate that is a number in both.
        input.objText += corner % 2 == 0 ? "v " + value + " nan 0\n" : "v " + value + " 0 nan\n";
        face += " -" + number(size - corner);
    }
    input.objText += face + "\n";
    return input;
}

// Teeth of one length: every other pair of corners turns inwards.
Input comb(int size) {
    std::vector<Corner> corners = {{0, 0}, {static_cast<double>(size), 0}};
    for (int tooth = size / 4; tooth-- > 0;) {
        const double x = 4.0 * tooth;
        corners.insert(corners.end(), {{x + 3, 10}, {x + 2, 10}, {x + 2, 1}, {x + 1, 1}});
    }
    return polygon(corners);
}

Input saw(int size) {
    std::vector<Corner> corners = {{0, 0}, {static_cast<double>(size), 0}};
    for (int corner = size - 2; corner > 0; --corner)
        corners.push_back({static_cast<double>(corner), corner % 2 == 0 ? 1.0 : 3.0});
    return polygon(corners);
}

// A band wound up, out along its outer side and back along its inner one.
Input spiral(int size) {
    std::vector<Corner> corners;
    const int half = size / 2;
    const auto onSpiral = [](int step, double radius) -> Corner {
        constexpr double STEP = 0.1;
        const double angle = STEP * step;
        const double distance = radius + angle;
        return {distance * std::cos(angle), distance * std::sin(angle)};
    };
    for (int step = 0; step < half; ++step)
        corners.push_back(onSpiral(step, 10.0));
    for (int step = half; step-- > 0;)
        corners.push_back(onSpiral(step, 8.0));
    return polygon(corners);
}

Input manySmallPolygons(int size) {
    Input input;
    for (int face = 0; face < size; ++face) {
        input.objText += "v 0 0 0\nv 4 2 0\nv 0 4 0\nv 1 2 0\nf -4 -3 -2 -1\n";
        input.objText += "v 0 0 0\nv 1 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nf -5 -4 -3 -2 -1\n";
    }
    return input;
}

// --- Compaction and subdivision -----------------------------------------------------

Input compacting(std::string text) {
    Input input = {std::move(text), ""};
    input.compacts = true;
    return input;
}

Input equalVertices(int size) {
    std::string text;
    for (int vertex = 0; vertex < size; ++vertex)
        text += "v 1 2 3\n";
    return compacting(text + TRIANGLE);
}

Input verticesInDisorder(int size) {
    std::string text;
    std::uint64_t state = 1;
    for (int vertex = 0; vertex < size; ++vertex) {
        text += "v";
        for (int coordinate = 0; coordinate < 3; ++coordinate) {
            state = state * 6364136223846793005U + 1442695040888963407U;
            text += " " + number(static_cast<int>(state >> 44U));
        }
        text += "\n";
    }
    return compacting(text);
}

// Equal in x and in all but the last bits of y, where a sort by leading bits sees
// nothing to tell them apart by.
Input verticesThatHardlyDiffer(int size) {
    std::string text;
    for (int vertex = 0; vertex < size; ++vertex) {
        char line[100];
        std::snprintf(line, sizeof line, "v 1 %.17g %.17g\n", 1.0 + vertex * 0x1p-50,
                      -vertex * 1e-300);
        text += line;
    }
    return compacting(text);
}

Input equalFaces(int size) {
    std::string text = TRIANGLE;
    for (int face = 0; face < size; ++face)
        text += face % 3 == 0 ? "f 1 2 3\n" : "f 2 3 1\n";
    return compacting(text);
}

Input conflictingFaces(int size) {
    std::string text = TRIANGLE;
    for (int face = 0; face < size; ++face)
        text += face % 2 == 0 ? "f 1 3 2\n" : "f 1 2 3\n";
    return compacting(text);
}

Input grid(int size) {
    constexpr int ROWS = 8;
    std::string text;
    for (int column = 0; column < size; ++column) {
        for (int row = 0; row < ROWS; ++row)
            text += "v " + number(column) + " " + number(row) + " 0\n";
    }
    for (int column = 1; column < size; ++column) {
        for (int row = 1; row < ROWS; ++row) {
            const int corner = (column - 1) * ROWS + row;
            text += "f " + number(corner) + " " + number(corner + ROWS) + " " +
                    number(corner + ROWS + 1) + " " + number(corner + 1) + "\n";
        }
    }
    Input input = compacting(text);
    input.rounds = 1;
    return input;
}

// All triangles meet in one corner.
Input star(int size) {
    std::string text = "v 0 0 1\n";
    for (const Corner& corner : circle(size))
        text += vertexStatement(corner);
    for (int corner = 2; corner <= size; ++corner)
        text += "f 1 " + number(corner) + " " + number(corner + 1) + "\n";
    Input input = compacting(text);
    input.rounds = 1;
    return input;
}

// All triangles share one edge.
Input book(int size) {
    std::string text = "v 0 0 0\nv 0 0 1\n";
    for (const Corner& corner : circle(size))
        text += vertexStatement(corner);
    for (int page = 3; page < size + 3; ++page)
        text += "f 1 2 " + number(page) + "\n";
    Input input = compacting(text);
    input.rounds = 1;
    return input;
}

const Kind KINDS[] = {
    {"longLine", 2000000, longLine},
    {"longNames", 1000000, longNames},
    {"longNumbers", 100000, longNumbers},
    {"continuedLines", 20000, continuedLines},
    {"unknownKeywords", 250000, unknownKeywords},
    {"badStatements", 400, badStatements},
    {"missingMaterials", 20000, missingMaterials},
    {"materialsAndTheirUses", 5000, materialsAndTheirUses},
    {"materialsOfOneName", 5000, materialsOfOneName},
    {"libraryReadAgain", 200, libraryReadAgain},
    {"manyMapOptions", 20000, manyMapOptions},
    {"groupsOfOneName", 5000, groupsOfOneName},
    {"groupsOfTakenNames", 3000, groupsOfTakenNames},
    {"emptyGroups", 20000, emptyGroups},
    {"wideTree", 3000, wideTree},
    {"deepTree", 10000, deepTree},
    {"convexPolygon", 10000, convexPolygon},
    {"polygonWithEqualCorners", 10000, polygonWithEqualCorners},
    {"polygonWithNans", 10000, polygonWithNans},
    {"comb", 700, comb},
    {"saw", 700, saw},
    {"spiral", 500, spiral},
    {"manySmallPolygons", 2000, manySmallPolygons},
    {"equalVertices", 50000, equalVertices},
    {"verticesInDisorder", 20000, verticesInDisorder},
    {"verticesThatHardlyDiffer", 20000, verticesThatHardlyDiffer},
    {"equalFaces", 20000, equalFaces},
    {"conflictingFaces", 20000, conflictingFaces},
    {"grid", 500, grid},
    {"star", 5000, star},
    {"book", 5000, book},
};

// Only what lies between the two macros is counted.
void importCounted(const Input& input, const std::string& fileName) {
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setSkipPolygonsWithoutEar(true);
    converter->setDataCompaction(input.compacts);
    converter->setUseGroupNameHierarchy(input.hasHierarchy);
    converter->setSubdivisionRounds("ITERATIONS", input.rounds);
    CALLGRIND_START_INSTRUMENTATION;
    converter->importObjDataFromFile(fileName.c_str());
    if (input.buildsTree)
        converter->getRootOfHierarchy();
    const int faces = converter->getNumberOfFaces();
    const int vertices = converter->getNumberOfVertices();
    ObjConverter::clearInstance();
    CALLGRIND_STOP_INSTRUMENTATION;
    CALLGRIND_DUMP_STATS;
    std::printf("%d vertices, %d faces\n", vertices, faces);
}

int probe(const Kind& kind) {
    constexpr int SIZES = 3;
    const TemporaryDirectory directory;
    for (int doubling = 0; doubling < SIZES; ++doubling) {
        const Input input = kind.make(kind.smallestSize << doubling);
        directory.write("probe.mtl", input.mtlText);
        importCounted(input, directory.write("probe.obj", input.objText));
    }
    return 0;
}

}  // namespace
}  // namespace obj_adapter::test

int main(int argc, char** argv) {
    for (const auto& kind : obj_adapter::test::KINDS) {
        if (argc == 2 && std::string(argv[1]) == kind.name)
            return obj_adapter::test::probe(kind);
    }
    std::puts("usage: growth_probe KIND");
    for (const auto& kind : obj_adapter::test::KINDS)
        std::puts(kind.name);
    return 2;
}
