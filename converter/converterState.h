// Internal: what stands behind ObjConverter, the exported class.
#pragma once

#include "model/objModel.h"

#include <string>

namespace obj_adapter {

// The settings with their defaults, in the words of the exported setters.
struct ConverterSettings {
    std::string subdivisionLimitType;
    int subdivisionRounds = 0;
    bool dataCompaction = true;
    bool useGroupNameHierarchy = false;
    bool reverseGroupNames = false;
    bool showLastNamesOnly = true;
    bool skipPolygonsWithoutEar = false;
    std::string inputPath;
    std::string inputFile;
    std::string outputPath;
    std::string outputFile;
};

struct ConverterState {
    ObjModel model;
    ConverterSettings settings;
    void (*messageCallback)(int, const char*) = nullptr;
    bool (*progressCallback)(void*, int, double) = nullptr;
    void* progressUserData = nullptr;

    // An import into this model runs.
    bool isImporting = false;

    // The host deleted the converter from inside the callback: the running
    // import ends as it would and frees the state then.
    bool isOrphaned = false;
};

// The state of the process's one converter; null when there is none.
ConverterState* currentConverterState() noexcept;

}  // namespace obj_adapter
