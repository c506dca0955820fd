// What is told of a mesh, for small meshes as text.
#include "meshFacts.h"

#include "tools/importedText.h"

#include <gtest/gtest.h>

#include <string>

namespace obj_adapter::test {

namespace {

// What is not 0, in the order of the record.
std::string describe(const tool::MeshFacts& facts) {
    std::string text;
    const auto add = [&text](const char* name, long long count) {
        if (count != 0)
            text += std::string(text.empty() ? "" : " ") + name + "=" + std::to_string(count);
    };
    add("noVertex", facts.facesWithoutVertex);
    add("notFinite", facts.facesNotFinite);
    add("noArea", facts.facesWithoutArea);
    add("duplicate", facts.duplicateFaces);
    add("normals", facts.facesWithNormals);
    add("textures", facts.facesWithTextures);
    add("edges", facts.edges);
    add("boundary", facts.boundaryEdges);
    add("nonManifold", facts.nonManifoldEdges);
    add("winding", facts.windingConflicts);
    add("unused", facts.unusedVertices);
    add("badVertices", facts.verticesNotFinite);
    add("pieces", facts.pieces);
    if (facts.isClosed())
        text += " closed";
    return text;
}

struct FactsCase {
    const char* title;
    const char* objText;
    const char* facts;
};

// A square of four vertices in front of each.
const char* const SQUARE = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

const FactsCase CASES[] = {
    {"one triangle", "f 1 2 3\n", "edges=3 boundary=3 unused=1 pieces=1"},
    {"two triangles with a common edge", "f 1 2 3\nf 1 3 4\n", "edges=5 boundary=4 pieces=1"},
    {"two that disagree on the front side", "f 1 2 3\nf 1 4 3\n",
     "edges=5 boundary=4 winding=1 pieces=1"},
    {"three faces of one edge", "v 0 0 1\nf 1 2 3\nf 1 2 4\nf 2 1 5\n",
     "edges=7 boundary=6 nonManifold=1 pieces=1"},
    {"two sides of a sheet are closed", "f 1 2 3\nf 1 3 2\n",
     "duplicate=1 edges=3 unused=1 pieces=1 closed"},
    {"two that touch in a corner are one piece", "v 2 0 0\nv 2 1 0\nf 1 2 3\nf 2 5 6\n",
     "edges=6 boundary=6 unused=1 pieces=1"},
    {"two that do not touch", "v 5 0 0\nv 6 0 0\nv 6 1 0\nf 1 2 3\nf 5 6 7\n",
     "edges=6 boundary=6 unused=1 pieces=2"},
    {"corners on one line", "v 2 0 0\nf 1 2 5\n", "noArea=1 edges=3 boundary=3 unused=2 pieces=1"},
    {"a thin face has area", "v 0.5 1e-9 0\nf 1 2 5\n", "edges=3 boundary=3 unused=2 pieces=1"},
    {"a tiny face has area", "v 0 0 9\nv 1e-200 0 9\nv 0 1e-200 9\nf 5 6 7\n",
     "edges=3 boundary=3 unused=4 pieces=1"},
    {"an enormous face has area", "v 1e308 0 9\nv -1e308 0 9\nv 0 1e308 9\nf 5 6 7\n",
     "noArea=1 edges=3 boundary=3 unused=4 pieces=1"},
    {"a corner that is no number", "v nan 0 0\nf 1 2 5\n",
     "notFinite=1 edges=3 boundary=3 unused=2 badVertices=1 pieces=1"},
    {"a corner that is infinite", "v 0 inf 0\nf 1 2 5\n",
     "notFinite=1 edges=3 boundary=3 unused=2 badVertices=1 pieces=1"},
    {"normals and texture points at all corners only",
     "vn 0 0 1\nvt 0 0\nf 1/1/1 2/1/1 3/1/1\nf 1//1 3//1 4\n",
     "normals=1 textures=1 edges=5 boundary=4 pieces=1"},
    {"no faces", "", "unused=4"},
};

TEST(MeshFactsTest, Cases) {
    for (const FactsCase& row : CASES) {
        SCOPED_TRACE(row.title);
        const ImportedText imported(std::string(SQUARE) + row.objText);
        EXPECT_EQ(describe(tool::computeMeshFacts(imported.getModel())), row.facts);
    }
}

TEST(MeshFactsTest, WithoutCompactionVerticesAreApartAndFacesStay) {
    tool::ImportSettings settings;
    settings.compaction = false;
    const ImportedText imported(std::string(SQUARE) + "v 0 0 0\nf 1 2 3\nf 5 3 4\nf 1 1 2\n", {},
                                settings);
    EXPECT_EQ(describe(tool::computeMeshFacts(imported.getModel())),
              "noArea=1 edges=6 boundary=6 pieces=1");
    EXPECT_EQ(tool::countCollapsedFaces(imported.getModel()), 1);
}

TEST(MeshFactsTest, FacesWithoutVertices) {
    tool::ImportSettings settings;
    settings.compaction = false;
    const ImportedText imported("f 1 2 3\n", {}, settings);
    EXPECT_EQ(describe(tool::computeMeshFacts(imported.getModel())), "noVertex=1");
    EXPECT_EQ(tool::countCollapsedFaces(imported.getModel()), 1);
}

}  // namespace

}  // namespace obj_adapter::test
