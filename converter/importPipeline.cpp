// The stages of one import. Covered by tests/converter/importPipelineTest.cpp
// and hostCallbackTest.cpp.
#include "converter/importPipeline.h"

#include "converter/converterState.h"
#include "converter/inputPath.h"
#include "converter/messages.h"
#include "converter/progress.h"
#include "groups/groupTable.h"
#include "obj/objReader.h"
#include "platform/floatingPointMode.h"
#include "processing/compaction.h"
#include "processing/subdivision.h"

#include <obj_adapter/objConverter.h>

#include <cerrno>
#include <exception>
#include <string>

namespace obj_adapter {

namespace {

// Unbroken, so that a search for what a user saw finds it.
// clang-format off
const char COMPACTION_OVERRIDDEN_MESSAGE[] =
    "Data compaction was turned off, but data must be compacted before subdivision can be performed. Compaction setting will be overridden.";
// clang-format on

// The host's errno is as it was after an import.
class ErrnoKeeper {
public:
    ErrnoKeeper() noexcept : kept(errno) {}
    ~ErrnoKeeper() { errno = kept; }
    ErrnoKeeper(const ErrnoKeeper&) = delete;
    ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;

private:
    int kept;
};

// The process state of the host set aside for the time of an import.
class ImportScope {
public:
    explicit ImportScope(ConverterState& ownState) noexcept : state(ownState) {
        state.isImporting = true;
        state.model.materialTable.endLoans();
    }
    ~ImportScope() { state.isImporting = false; }
    ImportScope(const ImportScope&) = delete;
    ImportScope& operator=(const ImportScope&) = delete;

private:
    ErrnoKeeper errnoKeeper;
    platform::DefaultFloatingPointMode mode;
    ImportProgress progress;
    ConverterState& state;
};

template <typename ReadInput>
void read(ReadInput readInput) {
    reportInformation("Obj Converter Import:");
    reportInformation("Reading input file...");
    beginStage(ObjConverter::STAGE_READING);
    readInput();
    reportInformation("Done reading input.");
}

void reverse(ConverterState& state) {
    if (!state.settings.useGroupNameHierarchy || !state.settings.reverseGroupNames)
        return;
    reportInformation("Reversing the order of group names...");
    reverseGroupNames(state.model);
    reportInformation("Done reversing group names.");
}

void compact(ConverterState& state) {
    if (!state.settings.dataCompaction && state.settings.subdivisionRounds > 0) {
        reportWarning(COMPACTION_OVERRIDDEN_MESSAGE);
        // For good: later imports compact too until the host changes it.
        state.settings.dataCompaction = true;
    }
    if (!state.settings.dataCompaction)
        return;
    reportInformation("Compacting...");
    beginStage(ObjConverter::STAGE_COMPACTION);
    compactData(state.model);
    reportInformation("Done compacting.");
}

int subdivisionLimit(const std::string& limitType) {
    if (limitType == "ITERATIONS")
        return LIMIT_ITERATIONS;
    if (limitType == "FACE_COUNT")
        return LIMIT_FACE_COUNT;
    if (limitType == "VERTEX_COUNT")
        return LIMIT_VERTEX_COUNT;
    reportWarning("Invalid subdivision limit type. Assuming Iterations...");
    return LIMIT_ITERATIONS;
}

void subdivideAsSet(ConverterState& state) {
    if (state.settings.subdivisionRounds <= 0)
        return;
    reportInformation("Subdividing...");
    const int limitType = subdivisionLimit(state.settings.subdivisionLimitType);
    subdivide(limitType, state.settings.subdivisionRounds, state.model);
    reportInformation("Done Subdividing.");
}

int refuseImport() {
    reportError("No input file specified.");
    return ObjConverter::CONVERTER_ERROR;
}

template <typename ReadInput>
int runStages(ConverterState& state, ReadInput readInput) {
    read(readInput);
    reverse(state);
    compact(state);
    subdivideAsSet(state);
    reportInformation("Obj data import complete.");
    return ObjConverter::CONVERTER_OK;
}

int importFile(ConverterState& state, const char* fileName) {
    if (fileName != nullptr)
        setInputFromPath(state.settings, fileName);
    if (state.settings.inputFile.empty())
        return refuseImport();
    return runStages(state, [&] {
        // Copies: the callback may change the settings meanwhile.
        const std::string inputPath = state.settings.inputPath;
        const std::string inputFile = state.settings.inputFile;
        readObjFile(inputPath, inputFile, state.settings, state.model);
    });
}

int importText(ConverterState& state, const MemoryInput& input) {
    const std::string name(textOrEmpty(input.name));
    if (name.empty())
        return refuseImport();
    return runStages(state, [&] {
        readObjText(name, input.text, input.libraries, state.settings, state.model);
    });
}

// The last message of an import that a failure ended.
int stop(const char* reason) noexcept {
    try {
        const bool hasText = reason != nullptr && *reason != '\0';
        reportFailure("Stopping conversion... ", hasText ? reason : "Unknown exception");
    } catch (...) {
        // The host's own exception, at the last message: nobody is left to tell.
    }
    return ObjConverter::CONVERTER_ERROR;
}

template <typename Import>
int runGuarded(ConverterState& state, Import import) noexcept {
    const ImportScope scope(state);
    try {
        return import();
    } catch (const ImportCancelled&) {
        return stop("Cancelled by host");
    } catch (const std::exception& failure) {
        return stop(failureText(failure));
    } catch (...) {
        return stop(nullptr);
    }
}

}  // namespace

int runImport(ConverterState& state, const char* fileName) noexcept {
    return runGuarded(state, [&] { return importFile(state, fileName); });
}

int runImport(ConverterState& state, const MemoryInput& input) noexcept {
    return runGuarded(state, [&] { return importText(state, input); });
}

}  // namespace obj_adapter
