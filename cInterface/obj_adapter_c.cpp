// The flat C interface over the exported converter. Covered by
// tests/cInterface/cInterfaceTest.cpp.
#include <obj_adapter/obj_adapter_c.h>

#include <obj_adapter/obj_adapter.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

using namespace obj_adapter;

struct ObjAdapterSettings {
    std::int32_t limitType = OBJ_ADAPTER_SUBDIVIDE_ITERATIONS;
    std::int32_t limitValue = 0;
    bool compactsData = true;
    bool usesHierarchy = false;
    bool reversesNames = false;
    bool showsLastNamesOnly = true;
    bool skipsPolygonsWithoutEar = false;
    ObjAdapterMessageCallback messageCallback = nullptr;
    void* messageUserData = nullptr;
    ObjAdapterProgressCallback progressCallback = nullptr;
    void* progressUserData = nullptr;
};

// The tables are lent as they are, so the records are the same.
static_assert(sizeof(ObjAdapterVertex) == sizeof(Vertex) &&
              offsetof(ObjAdapterVertex, w) == offsetof(Vertex, w) &&
              offsetof(ObjAdapterVertex, index) == offsetof(Vertex, index));
static_assert(sizeof(ObjAdapterTexturePoint) == sizeof(TexturePoint) &&
              offsetof(ObjAdapterTexturePoint, w) == offsetof(TexturePoint, w) &&
              offsetof(ObjAdapterTexturePoint, index) == offsetof(TexturePoint, index));
static_assert(sizeof(ObjAdapterNormal) == sizeof(NormalPoint) &&
              offsetof(ObjAdapterNormal, z) == offsetof(NormalPoint, z) &&
              offsetof(ObjAdapterNormal, index) == offsetof(NormalPoint, index));
static_assert(sizeof(ObjAdapterCorner) == sizeof(FaceElement) &&
              offsetof(ObjAdapterCorner, texturePoint) == offsetof(FaceElement, textureIndex) &&
              offsetof(ObjAdapterCorner, normal) == offsetof(FaceElement, normalIndex));
static_assert(sizeof(ObjAdapterFace) == sizeof(Face) &&
              offsetof(ObjAdapterFace, corners) == offsetof(Face, elements) &&
              offsetof(ObjAdapterFace, reserved) == offsetof(Face, sortedVertexIndices) &&
              offsetof(ObjAdapterFace, material) == offsetof(Face, materialIndex) &&
              offsetof(ObjAdapterFace, group) == offsetof(Face, groupIndex));
static_assert(sizeof(int) == sizeof(std::int32_t), "lists of faces are lent as they are");

namespace {

// The import that runs; null when none does.
const ObjAdapterSettings* runningSettings = nullptr;

// Whether there is a model to read. Asked first, so that a getter makes no converter.
bool hasModel = false;

// The tree as last handed out.
struct FlatTree {
    std::vector<ObjAdapterTreeNode> nodes;
    std::vector<std::string> names;
};
FlatTree tree;

void passMessageOn(int level, const char* text) {
    runningSettings->messageCallback(runningSettings->messageUserData, level, text);
}

bool passProgressOn(void*, int stage, double fraction) {
    return runningSettings->progressCallback(runningSettings->progressUserData, stage, fraction) !=
           0;
}

// A host's function and what it is to be called with.
struct LibraryHost {
    ObjAdapterLibraryCallback openLibrary;
    void* userData;
};

bool passLibraryOn(void* userData, const char* libraryName, const char** text, std::size_t* size) {
    const LibraryHost& host = *static_cast<const LibraryHost*>(userData);
    return host.openLibrary(host.userData, libraryName, text, size) != 0;
}

const char* limitTypeName(std::int32_t limitType) noexcept {
    switch (limitType) {
        case OBJ_ADAPTER_SUBDIVIDE_FACE_COUNT:
            return "FACE_COUNT";
        case OBJ_ADAPTER_SUBDIVIDE_VERTEX_COUNT:
            return "VERTEX_COUNT";
        default:
            return "ITERATIONS";
    }
}

void apply(const ObjAdapterSettings& settings, ObjConverter& converter) noexcept {
    converter.setSubdivisionRounds(limitTypeName(settings.limitType), settings.limitValue);
    converter.setDataCompaction(settings.compactsData);
    converter.setUseGroupNameHierarchy(settings.usesHierarchy);
    converter.setHierarchyReverseGroupNames(settings.reversesNames);
    converter.setHierarchyShowLastNamesOnly(settings.showsLastNamesOnly);
    converter.setSkipPolygonsWithoutEar(settings.skipsPolygonsWithoutEar);
    converter.setMsgCallback(settings.messageCallback != nullptr ? passMessageOn : nullptr);
    converter.setProgressCallback(settings.progressCallback != nullptr ? passProgressOn : nullptr,
                                  nullptr);
}

// The converter that holds the model, or null.
ObjConverter* modelHolder() noexcept {
    return hasModel ? ObjConverter::getInstance() : nullptr;
}

// A table as an array: its records follow one another.
template <typename Record, typename Original>
const Record* lendTable(std::int32_t* count, int (ObjConverter::*getNumber)() const noexcept,
                        Original* (ObjConverter::*getRecord)(int) noexcept) noexcept {
    ObjConverter* converter = modelHolder();
    const int number = converter == nullptr ? 0 : (converter->*getNumber)();
    if (count != nullptr)
        *count = number;
    if (number == 0)
        return nullptr;
    return reinterpret_cast<const Record*>((converter->*getRecord)(0));
}

const Group* groupAt(std::int32_t group) noexcept {
    ObjConverter* converter = modelHolder();
    if (converter == nullptr || group < 0 || group >= converter->getNumberOfGroups())
        return nullptr;
    return converter->getGroup(group);
}

const Material* materialAt(std::int32_t material) noexcept {
    ObjConverter* converter = modelHolder();
    if (converter == nullptr || material < 0 || material >= converter->getNumberOfMaterials())
        return nullptr;
    return converter->getMaterial(material);
}

ObjAdapterColor colorRecord(const MaterialColor& color) noexcept {
    ObjAdapterColor record;
    record.type = static_cast<std::int32_t>(color.type);
    std::copy(std::begin(color.values), std::end(color.values), record.values);
    record.spectralFile = color.spectralFile.c_str();
    return record;
}

// Depth first, every node before its children; the stack is a list, for trees of any depth.
FlatTree flattened(ObjHierarchyNode& root, const Group* firstGroup) {
    struct Pending {
        ObjHierarchyNode* node;
        std::int32_t parent;
    };
    FlatTree flat;
    std::vector<std::int32_t> lastChildren;  // of each node
    std::vector<Pending> pending{{&root, OBJ_ADAPTER_NO_INDEX}};
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        const auto position = static_cast<std::int32_t>(flat.nodes.size());
        const Group* group = next.node->group;
        flat.nodes.push_back({nullptr, next.parent, OBJ_ADAPTER_NO_INDEX, OBJ_ADAPTER_NO_INDEX,
                              group == nullptr ? OBJ_ADAPTER_NO_INDEX
                                               : static_cast<std::int32_t>(group - firstGroup)});
        flat.names.push_back(next.node->getName());
        lastChildren.push_back(OBJ_ADAPTER_NO_INDEX);
        if (next.parent != OBJ_ADAPTER_NO_INDEX) {
            const auto parent = static_cast<std::size_t>(next.parent);
            if (lastChildren[parent] == OBJ_ADAPTER_NO_INDEX)
                flat.nodes[parent].firstChild = position;
            else
                flat.nodes[static_cast<std::size_t>(lastChildren[parent])].nextSibling = position;
            lastChildren[parent] = position;
        }
        for (int child = next.node->getNumberOfChildren() - 1; child >= 0; --child)
            pending.push_back({next.node->getChild(child), position});
    }
    for (std::size_t node = 0; node < flat.nodes.size(); ++node)
        flat.nodes[node].name = flat.names[node].c_str();
    return flat;
}

std::size_t copyText(const std::string& text, char* buffer, std::size_t capacity) noexcept {
    if (capacity > 0) {
        const std::size_t length = std::min(text.size(), capacity - 1);
        std::memcpy(buffer, text.data(), length);
        buffer[length] = '\0';
    }
    return text.size();
}

// A text that composing may find no memory for: then, too, there is none.
template <typename Compose>
std::size_t copyComposed(Compose compose, char* buffer, std::size_t capacity) noexcept {
    try {
        return copyText(compose(), buffer, capacity);
    } catch (const std::bad_alloc&) {
        return copyText({}, buffer, capacity);
    }
}

// From the start of an import to its end.
class RunningImport {
public:
    explicit RunningImport(const ObjAdapterSettings& settings) noexcept {
        runningSettings = &settings;
    }
    ~RunningImport() { runningSettings = nullptr; }
    RunningImport(const RunningImport&) = delete;
    RunningImport& operator=(const RunningImport&) = delete;
};

// Runs an import into a fresh converter.
template <typename Import>
std::int32_t runImport(const ObjAdapterSettings* settings, Import import) noexcept {
    if (runningSettings != nullptr)
        return OBJ_ADAPTER_ERROR;
    objAdapterClear();
    ObjConverter* converter = ObjConverter::getInstance();
    if (converter == nullptr)
        return OBJ_ADAPTER_ERROR;
    // A copy: the callback may change or destroy the host's.
    const ObjAdapterSettings used = settings == nullptr ? ObjAdapterSettings() : *settings;
    const RunningImport running(used);
    hasModel = true;
    apply(used, *converter);
    const int result = import(*converter);
    converter->setMsgCallback(nullptr);
    converter->setProgressCallback(nullptr, nullptr);
    return result == ObjConverter::CONVERTER_OK ? OBJ_ADAPTER_OK : OBJ_ADAPTER_ERROR;
}

}  // namespace

ObjAdapterSettings* objAdapterCreateSettings(void) {
    return new (std::nothrow) ObjAdapterSettings;
}

void objAdapterDestroySettings(ObjAdapterSettings* settings) {
    delete settings;
}

void objAdapterSetSubdivision(ObjAdapterSettings* settings, std::int32_t limitType,
                              std::int32_t value) {
    settings->limitType = limitType;
    settings->limitValue = value;
}

void objAdapterSetDataCompaction(ObjAdapterSettings* settings, std::int32_t yes) {
    settings->compactsData = yes != 0;
}

void objAdapterSetUseGroupNameHierarchy(ObjAdapterSettings* settings, std::int32_t yes) {
    settings->usesHierarchy = yes != 0;
}

void objAdapterSetReverseGroupNames(ObjAdapterSettings* settings, std::int32_t yes) {
    settings->reversesNames = yes != 0;
}

void objAdapterSetShowLastNamesOnly(ObjAdapterSettings* settings, std::int32_t yes) {
    settings->showsLastNamesOnly = yes != 0;
}

void objAdapterSetSkipPolygonsWithoutEar(ObjAdapterSettings* settings, std::int32_t yes) {
    settings->skipsPolygonsWithoutEar = yes != 0;
}

void objAdapterSetMessageCallback(ObjAdapterSettings* settings, ObjAdapterMessageCallback callback,
                                  void* userData) {
    settings->messageCallback = callback;
    settings->messageUserData = userData;
}

void objAdapterSetProgressCallback(ObjAdapterSettings* settings,
                                   ObjAdapterProgressCallback callback, void* userData) {
    settings->progressCallback = callback;
    settings->progressUserData = userData;
}

std::int32_t objAdapterImportFile(const ObjAdapterSettings* settings, const char* fileName) {
    return runImport(settings, [&](ObjConverter& converter) {
        return converter.importObjDataFromFile(fileName == nullptr ? "" : fileName);
    });
}

std::int32_t objAdapterImportMemory(const ObjAdapterSettings* settings, const char* name,
                                    const char* text, std::size_t size,
                                    ObjAdapterLibraryCallback openLibrary, void* userData) {
    return runImport(settings, [&](ObjConverter& converter) {
        LibraryHost host{openLibrary, userData};
        return converter.importObjDataFromMemory(
            name, text, size, openLibrary != nullptr ? passLibraryOn : nullptr, &host);
    });
}

const char* objAdapterGetCurrentFileName(void) {
    const ObjConverter* converter = modelHolder();
    return converter == nullptr ? nullptr : converter->getCurrentFileName();
}

std::int32_t objAdapterGetCurrentLineNumber(void) {
    const ObjConverter* converter = modelHolder();
    return converter == nullptr ? 0 : converter->getCurrentLineNumber();
}

void objAdapterClear(void) {
    if (runningSettings != nullptr)
        return;
    ObjConverter::clearInstance();
    tree = FlatTree();
    hasModel = false;
}

const char* objAdapterGetVersion(void) {
#define OBJ_ADAPTER_TEXT_OF(value) #value
#define OBJ_ADAPTER_TEXT(value) OBJ_ADAPTER_TEXT_OF(value)
    return OBJ_ADAPTER_TEXT(OBJ_ADAPTER_VERSION_MAJOR) "." OBJ_ADAPTER_TEXT(
        OBJ_ADAPTER_VERSION_MINOR) "." OBJ_ADAPTER_TEXT(OBJ_ADAPTER_VERSION_PATCH);
}

const ObjAdapterVertex* objAdapterGetVertices(std::int32_t* count) {
    return lendTable<ObjAdapterVertex>(count, &ObjConverter::getNumberOfVertices,
                                       &ObjConverter::getVertex);
}

const ObjAdapterTexturePoint* objAdapterGetTexturePoints(std::int32_t* count) {
    return lendTable<ObjAdapterTexturePoint>(count, &ObjConverter::getNumberOfVertexTextures,
                                             &ObjConverter::getVertexTexture);
}

const ObjAdapterNormal* objAdapterGetNormals(std::int32_t* count) {
    return lendTable<ObjAdapterNormal>(count, &ObjConverter::getNumberOfVertexNormals,
                                       &ObjConverter::getVertexNormal);
}

const ObjAdapterFace* objAdapterGetFaces(std::int32_t* count) {
    return lendTable<ObjAdapterFace>(count, &ObjConverter::getNumberOfFaces,
                                     &ObjConverter::getFace);
}

std::int32_t objAdapterGetNumberOfGroups(void) {
    const ObjConverter* converter = modelHolder();
    return converter == nullptr ? 0 : converter->getNumberOfGroups();
}

std::int32_t objAdapterGetNumberOfGroupNames(std::int32_t group) {
    const Group* found = groupAt(group);
    if (found == nullptr)
        return 0;
    return found->names.empty() ? 1 : static_cast<std::int32_t>(found->names.size());
}

const char* objAdapterGetGroupName(std::int32_t group, std::int32_t component) {
    if (component < 0 || component >= objAdapterGetNumberOfGroupNames(group))
        return nullptr;
    const Group* found = groupAt(group);
    return found->names.empty() ? found->name.c_str()
                                : found->names[static_cast<std::size_t>(component)].c_str();
}

const std::int32_t* objAdapterGetGroupFaces(std::int32_t group, std::int32_t* count) {
    const Group* found = groupAt(group);
    const std::size_t number = found == nullptr ? 0 : found->faceIndices.size();
    if (count != nullptr)
        *count = static_cast<std::int32_t>(number);
    return number == 0 ? nullptr : found->faceIndices.data();
}

std::int32_t objAdapterGetNumberOfMaterials(void) {
    const ObjConverter* converter = modelHolder();
    return converter == nullptr ? 0 : converter->getNumberOfMaterials();
}

std::int32_t objAdapterGetMaterial(std::int32_t material, ObjAdapterMaterial* record) {
    const Material* found = materialAt(material);
    if (found == nullptr)
        return 0;
    record->name = found->name.c_str();
    record->ambient = colorRecord(found->ambient);
    record->diffuse = colorRecord(found->diffuse);
    record->specular = colorRecord(found->specular);
    record->filter = colorRecord(found->filter);
    record->specularExponent = found->specularExponent;
    record->dissolve = found->dissolve;
    record->opticalDensity = found->opticalDensity;
    record->illumination = found->illumination;
    record->sharpness = found->sharpness;
    record->halo = found->halo ? 1 : 0;
    return 1;
}

std::int32_t objAdapterGetTextureMap(std::int32_t material, std::int32_t map,
                                     ObjAdapterTextureMap* record) {
    const Material* found = materialAt(material);
    if (found == nullptr || !found->hasTextureMap(static_cast<Material::TextureMapName>(map)))
        return 0;
    const TextureMap& source = found->textureMaps[map].textureMap;
    record->fileName = source.fileName.c_str();
    record->mmBase = source.mmBase;
    record->mmGain = source.mmGain;
    std::copy(std::begin(source.offset), std::end(source.offset), record->offset);
    std::copy(std::begin(source.scale), std::end(source.scale), record->scale);
    std::copy(std::begin(source.turbulence), std::end(source.turbulence), record->turbulence);
    record->boost = source.boost;
    record->resolution = source.resolution;
    record->blendU = source.blendU ? 1 : 0;
    record->blendV = source.blendV ? 1 : 0;
    record->colorCorrection = source.colorCorrection ? 1 : 0;
    record->clamp = source.clamp ? 1 : 0;
    record->imfChannel = static_cast<std::int32_t>(source.imfChannel);
    record->reflectionType = static_cast<std::int32_t>(source.reflectionType);
    return 1;
}

const ObjAdapterTreeNode* objAdapterGetTree(std::int32_t* count) {
    if (count != nullptr)
        *count = 0;
    tree = FlatTree();
    ObjConverter* converter = modelHolder();
    if (converter == nullptr)
        return nullptr;
    try {
        ObjHierarchyNode* root = converter->getRootOfHierarchy();
        if (root == nullptr)
            return nullptr;
        tree = flattened(*root, converter->getGroup(0));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    if (count != nullptr)
        *count = static_cast<std::int32_t>(tree.nodes.size());
    return tree.nodes.data();
}

std::size_t objAdapterCopyGroupFullName(std::int32_t group, char* buffer, std::size_t capacity) {
    const Group* found = groupAt(group);
    return copyComposed([&] { return found == nullptr ? std::string() : found->getFullName(); },
                        buffer, capacity);
}

std::size_t objAdapterCopyMaterialText(std::int32_t material, char* buffer, std::size_t capacity) {
    const Material* found = materialAt(material);
    return copyComposed([&] { return found == nullptr ? std::string() : materialToText(*found); },
                        buffer, capacity);
}
