// What is wrong with a file: the importer's messages and the mesh's faults,
// grouped and counted.
#pragma once

#include "importRun.h"
#include "meshFacts.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace obj_adapter::tool {

enum class Category {
    FAILED,     // a file, or a stage of the import
    NOT_FOUND,  // a library, a material, an image
    REFUSED,    // a statement or an option that had no effect
    REPAIRED,   // read as something else than what stands there
    IGNORED,    // statements that the importer does not know
    MESH,       // faults of the mesh that came out
    OTHER,
};

constexpr Category CATEGORIES[] = {Category::FAILED,   Category::NOT_FOUND, Category::REFUSED,
                                   Category::REPAIRED, Category::IGNORED,   Category::MESH,
                                   Category::OTHER};

struct Place {
    std::string fileName;
    int line;
};

// One kind of trouble and how often it came.
struct Issue {
    int level;  // ObjConverter::MESSAGE_ERROR or MESSAGE_WARNING
    Category category;
    std::string text;
    long long count;
    std::vector<Place> places;  // the first ones, where they are known
};

// The tables before and after compaction.
struct CompactionEffect {
    int verticesBefore = 0;
    int verticesAfter = 0;
    int facesBefore = 0;
    int facesAfter = 0;
    int collapsedFaces = 0;  // of those that are gone
};

struct CheckReport {
    std::string fileName;
    bool succeeded = false;
    std::vector<Issue> issues;  // in order of their first occurrence
    MeshFacts facts;
    std::optional<CompactionEffect> compaction;  // none when it did not run
    int vertices = 0;
    int faces = 0;

    long long countIssues(int level) const;
};

// Imports the file and looks at what came of it.
CheckReport checkFile(const ImportSettings& settings);

}  // namespace obj_adapter::tool
