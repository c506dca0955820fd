// The exported class: life cycle, settings and getters. Covered by
// tests/converter/converterTest.cpp.
#include <obj_adapter/objConverter.h>

#include "converter/converterState.h"
#include "converter/importPipeline.h"
#include "converter/inputPath.h"
#include "converter/readingPosition.h"
#include "groups/objHierarchy.h"
#include "obj/textSource.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace obj_adapter {

namespace {

// The process's one converter and its state; both null before the first
// request. Destroyed with the library, so that unloading it leaves nothing.
struct InstanceHolder {
    ObjConverter* converter = nullptr;
    ConverterState* state = nullptr;

    constexpr InstanceHolder() noexcept = default;
    ~InstanceHolder() { delete converter; }
    InstanceHolder(const InstanceHolder&) = delete;
    InstanceHolder& operator=(const InstanceHolder&) = delete;
};

constinit InstanceHolder holder;

// Runs a change that may want memory; without memory it has no effect.
template <typename Change>
void changeOrKeep(Change change) noexcept {
    try {
        change();
    } catch (const std::exception&) {
        // Only exhausted memory comes here, and the change is all or nothing.
    }
}

// The callback may delete the converter: the import needs its state alone, and
// frees it then.
template <typename Input>
int importInto(ConverterState* importState, const Input& input) noexcept {
    if (importState->isImporting)
        return ObjConverter::CONVERTER_ERROR;
    const int result = runImport(*importState, input);
    if (importState->isOrphaned)
        delete importState;
    return result;
}

void store(std::string& setting, const char* text) noexcept {
    changeOrKeep([&] { setting = std::string(textOrEmpty(text)); });
}

}  // namespace

const int ObjConverter::CONVERTER_OK;
const int ObjConverter::CONVERTER_ERROR;

ConverterState* currentConverterState() noexcept {
    return holder.state;
}

ObjConverter* ObjConverter::getInstance() noexcept {
    if (holder.converter != nullptr)
        return holder.converter;
    try {
        auto newState = std::make_unique<ConverterState>();
        holder.converter = new ObjConverter(newState.get());
        holder.state = newState.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    return holder.converter;
}

void ObjConverter::clearInstance() noexcept {
    if (holder.state != nullptr && !holder.state->isImporting)
        delete holder.converter;
}

ObjConverter::~ObjConverter() {
    if (holder.converter == this) {
        holder.converter = nullptr;
        holder.state = nullptr;
    }
    // A host that deletes the converter from inside the callback: the import
    // still needs the state and frees it at its end.
    if (state->isImporting)
        state->isOrphaned = true;
    else
        delete state;
}

void ObjConverter::setInput(const char* fileName) noexcept {
    changeOrKeep([&] { setInputFromPath(state->settings, fileName); });
}

void ObjConverter::setInputPath(const char* path) noexcept {
    store(state->settings.inputPath, path);
}

void ObjConverter::setInputFile(const char* fileName) noexcept {
    store(state->settings.inputFile, fileName);
}

void ObjConverter::setOutput(const char* fileName) noexcept {
    changeOrKeep([&] { setOutputFromPath(state->settings, fileName); });
}

void ObjConverter::setOutputPath(const char* path) noexcept {
    store(state->settings.outputPath, path);
}

void ObjConverter::setOutputFile(const char* fileName) noexcept {
    changeOrKeep([&] { state->settings.outputFile = withoutExtension(textOrEmpty(fileName)); });
}

void ObjConverter::setSubdivisionRounds(const char* limitType, int value) noexcept {
    changeOrKeep([&] {
        state->settings.subdivisionLimitType = std::string(textOrEmpty(limitType));
        state->settings.subdivisionRounds = value;
    });
}

void ObjConverter::setDataCompaction(bool compact) noexcept {
    state->settings.dataCompaction = compact;
}

void ObjConverter::setUseGroupNameHierarchy(bool useHierarchy) noexcept {
    state->settings.useGroupNameHierarchy = useHierarchy;
}

void ObjConverter::setHierarchyReverseGroupNames(bool reverse) noexcept {
    state->settings.reverseGroupNames = reverse;
}

void ObjConverter::setHierarchyShowLastNamesOnly(bool lastNamesOnly) noexcept {
    state->settings.showLastNamesOnly = lastNamesOnly;
}

void ObjConverter::setSkipPolygonsWithoutEar(bool skip) noexcept {
    state->settings.skipPolygonsWithoutEar = skip;
}

void ObjConverter::setMsgCallback(void (*callback)(int level, const char* text)) noexcept {
    // The process's converter, which is this one unless the host holds a
    // pointer to one that it deleted from inside the callback.
    if (holder.state != nullptr)
        holder.state->messageCallback = callback;
}

void ObjConverter::setProgressCallback(bool (*callback)(void* userData, int stage, double fraction),
                                       void* userData) noexcept {
    if (holder.state != nullptr) {
        holder.state->progressCallback = callback;
        holder.state->progressUserData = userData;
    }
}

int ObjConverter::importObjDataFromFile(const char* fileName) noexcept {
    return importInto(state, fileName);
}

int ObjConverter::importObjDataFromMemory(const char* name, const char* text, std::size_t size,
                                          bool (*openLibrary)(void* userData,
                                                              const char* libraryName,
                                                              const char** text, std::size_t* size),
                                          void* userData) noexcept {
    MemoryInput input;
    input.name = name;
    input.text = std::string_view(text, text == nullptr ? 0 : size);
    input.libraries = {openLibrary, userData};
    return importInto(state, input);
}

const char* ObjConverter::getCurrentFileName() const noexcept {
    const ReadingPosition* position = ReadingPosition::getInnermost();
    return position == nullptr ? nullptr : position->getFileName().c_str();
}

int ObjConverter::getCurrentLineNumber() const noexcept {
    const ReadingPosition* position = ReadingPosition::getInnermost();
    if (position == nullptr)
        return 0;
    constexpr std::size_t MOST = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(position->getLines().getLineNumber(), MOST));
}

int ObjConverter::getNumberOfVertices() const noexcept {
    return state->model.getNumberOfVertices();
}

int ObjConverter::getNumberOfVertexTextures() const noexcept {
    return state->model.getNumberOfTexturePoints();
}

int ObjConverter::getNumberOfVertexNormals() const noexcept {
    return state->model.getNumberOfNormalPoints();
}

int ObjConverter::getNumberOfFaces() const noexcept {
    return state->model.getNumberOfFaces();
}

int ObjConverter::getNumberOfGroups() const noexcept {
    return state->model.getNumberOfGroups();
}

int ObjConverter::getNumberOfMaterials() const noexcept {
    return state->model.materialTable.getNumberOfMaterials();
}

Vertex* ObjConverter::getVertex(int index) noexcept {
    return state->model.vertices.data() + index;
}

TexturePoint* ObjConverter::getVertexTexture(int index) noexcept {
    return state->model.texturePoints.data() + index;
}

NormalPoint* ObjConverter::getVertexNormal(int index) noexcept {
    return state->model.normalPoints.data() + index;
}

Face* ObjConverter::getFace(int index) noexcept {
    state->model.areFacesLent = true;
    return state->model.faces.data() + index;
}

Group* ObjConverter::getGroup(int index) noexcept {
    state->model.areGroupsLent = true;
    return state->model.groups.data() + index;
}

Material* ObjConverter::getMaterial(int index) noexcept {
    return state->model.materialTable.lendMaterial(index);
}

ObjHierarchyNode* ObjConverter::getRootOfHierarchy() noexcept {
    state->model.areGroupsLent = true;
    try {
        return getHierarchy(state->model, !state->settings.useGroupNameHierarchy,
                            state->settings.showLastNamesOnly)
            .getRoot();
    } catch (const std::exception&) {
        return nullptr;
    }
}

}  // namespace obj_adapter
