// The statements of an OBJ file. Covered by tests/obj/objReaderTest.cpp.
#include "obj/objReader.h"

#include "converter/converterState.h"
#include "converter/hostCall.h"
#include "converter/messages.h"
#include "converter/progress.h"
#include "converter/readingPosition.h"
#include "groups/groupStatement.h"
#include "groups/groupTable.h"
#include "material/mtlReader.h"
#include "model/objModel.h"
#include "obj/faceReader.h"
#include "obj/keywords.h"
#include "obj/lineTokens.h"
#include "obj/numberParsing.h"
#include "obj/ordinaryStatements.h"
#include "obj/textSource.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace obj_adapter {

namespace {

// How often a text was seen, for one report at the end; in byte-wise order.
using Tally = std::map<std::string, std::int64_t, std::less<>>;

void count(Tally& tally, std::string_view text) {
    const auto found = tally.find(text);
    if (found != tally.end())
        ++found->second;
    else
        tally.emplace(text, 1);
}

// "models/cube.obj" makes the model "cube": the last four characters go,
// whatever they are. A shorter name stays.
std::string modelNameOf(const std::string& inputFile) {
    constexpr std::size_t EXTENSION_LENGTH = 4;
    return inputFile.size() < EXTENSION_LENGTH
               ? inputFile
               : inputFile.substr(0, inputFile.size() - EXTENSION_LENGTH);
}

// Finds and reads a material library; throws when there is none.
using ReadLibrary = std::function<void(const std::string& libraryName)>;

// Reads one file.
class ObjReader {
public:
    ObjReader(const ReadLibrary& ownReadLibrary, const ConverterSettings& settings,
              ObjModel& ownModel) noexcept
        : readLibrary(ownReadLibrary),
          model(ownModel),
          faceReader(ownModel, settings),
          ordinaryStatements(ownModel, faceReader) {}

    void read(const std::string& inputFile, LogicalLineReader& lines) {
        model.areFacesLent = !model.faces.empty();
        model.areGroupsLent = !model.groups.empty();
        model.name = modelNameOf(inputFile);
        addInitialGroup(model);
        readStatements(lines);
        reportUnrecognizedStatements();
        reportMissingMaterials();
        repairFaces();
        removeEmptyGroups(model);
    }

private:
    using Handler = void (ObjReader::*)();

    // The repair changes nothing, and is left out, where every index was seen to lie in
    // its table and the host cannot have written others since.
    void repairFaces() {
        if (!faceReader.areIndicesProven() || model.areFacesLent)
            repairFaceIndices(model);
    }

    void readStatements(LogicalLineReader& lines);
    void readLine(std::string_view line);
    void readVertexStatement();
    void readTexturePointStatement();
    void readNormalStatement();
    void readFaceStatement() { faceReader.readFaceStatement(tokens, currentMaterial); }
    void readGroupStatement() { handleGroupStatement(model, tokens); }
    void readMaterialLibraryStatement();
    void readMaterialSelectionStatement();
    void reportUnrecognizedStatements() const;
    void reportMissingMaterials() const;

    // What we read, in matching order; letter case is ignored. Objects are
    // groups.
    static constexpr KeywordRow<Handler> STATEMENTS[] = {
        {"v", &ObjReader::readVertexStatement},
        {"vt", &ObjReader::readTexturePointStatement},
        {"vn", &ObjReader::readNormalStatement},
        {"f", &ObjReader::readFaceStatement},
        {"g", &ObjReader::readGroupStatement},
        {"o", &ObjReader::readGroupStatement},
        {"mtllib", &ObjReader::readMaterialLibraryStatement},
        {"usemtl", &ObjReader::readMaterialSelectionStatement},
    };

    const ReadLibrary& readLibrary;
    ObjModel& model;
    FaceReader faceReader;
    OrdinaryStatements ordinaryStatements;
    LineTokens tokens{std::string_view()};  // of the present line, behind the keyword
    int currentMaterial = NO_INDEX;
    Tally unrecognizedStatements;
    Tally missingMaterials;
};

// Each line the short way if it is ordinary, otherwise the plain way.
void ObjReader::readStatements(LogicalLineReader& lines) {
    for (;;) {
        ordinaryStatements.read(lines, currentMaterial);
        std::string_view line;
        if (!lines.next(line))
            return;
        readLine(line);
    }
}

// A comment starts in the first column; a line of one character is no
// statement, whatever it is.
void ObjReader::readLine(std::string_view line) {
    constexpr std::size_t SHORTEST_STATEMENT = 2;
    if (line.size() < SHORTEST_STATEMENT || line.front() == '#')
        return;
    tokens = LineTokens(line);
    const Token keyword = tokens.next();
    if (keyword.isMissing())
        return;
    if (const KeywordRow<Handler>* row = findKeyword(STATEMENTS, keyword.view()))
        (this->*row->handler)();
    else
        count(unrecognizedStatements, keyword.view());
}

// v x y z [w]; further tokens are ignored.
//
// A vertex that cannot be read becomes (0,0,0) and is still stored: faces name
// vertices by position, so leaving one out would shift every later face.
void ObjReader::readVertexStatement() {
    Vertex vertex;
    try {
        vertex.x = parseDouble(tokens.next());
        vertex.y = parseDouble(tokens.next());
        vertex.z = parseDouble(tokens.next());
        if (const Token weight = tokens.next(); !weight.isMissing())
            vertex.w = parseDouble(weight);
    } catch (const std::exception& failure) {
        reportError(std::string("Error processing vertex: ") + failureText(failure) +
                    "\nVertex will be replaced by (0,0,0).");
        vertex = Vertex(0.0, 0.0, 0.0);
    }
    model.addVertex(vertex);
}

// vt u v [w]; further tokens are ignored. One that cannot be read keeps its
// place, as a vertex does.
void ObjReader::readTexturePointStatement() {
    TexturePoint texturePoint;
    try {
        texturePoint.u = parseDouble(tokens.next());
        texturePoint.v = parseDouble(tokens.next());
        if (const Token third = tokens.next(); !third.isMissing())
            texturePoint.w = parseDouble(third);
    } catch (const std::exception& failure) {
        reportError(std::string("Error processing vertex texture: ") + failureText(failure) +
                    "\nVertex Texture will be replaced by (0,0).");
        texturePoint.u = 0.0;
        texturePoint.v = 0.0;
        texturePoint.w = 0.0;
    }
    model.addTexturePoint(texturePoint);
}

// vn x y z; further tokens are ignored. One that cannot be read keeps its
// place, as a vertex does.
void ObjReader::readNormalStatement() {
    NormalPoint normal;
    try {
        normal.x = parseDouble(tokens.next());
        normal.y = parseDouble(tokens.next());
        normal.z = parseDouble(tokens.next());
    } catch (const std::exception& failure) {
        reportError(std::string("Error processing vertex normal: ") + failureText(failure) +
                    "\nVertex Normal will be replaced by (0,0,0).");
        normal.x = 0.0;
        normal.y = 0.0;
        normal.z = 0.0;
    }
    model.addNormalPoint(normal);
}

// mtllib name; further names are ignored.
void ObjReader::readMaterialLibraryStatement() {
    const Token name = tokens.next();
    if (name.isMissing()) {
        reportError("No name given for material library. Materials will not be loaded.");
        return;
    }
    const std::string libraryName = name.text();
    try {
        readLibrary(libraryName);
    } catch (const ImportCancelled&) {
        throw;
    } catch (...) {
        reportError("Could not find material library " + reportedName(libraryName));
    }
}

// usemtl name; faces from now on have the material, or none if there is no such
// material.
void ObjReader::readMaterialSelectionStatement() {
    const Token name = tokens.next();
    if (name.isMissing()) {
        reportError("usemtl with no material name. No material will be assigned.");
        currentMaterial = NO_INDEX;
        return;
    }
    currentMaterial = model.materialTable.findMaterial(name.view());
    if (currentMaterial == NO_INDEX)
        count(missingMaterials, name.view());
}

void ObjReader::reportUnrecognizedStatements() const {
    for (const auto& [keyword, times] : unrecognizedStatements)
        reportWarning("Unrecognized statement: \"" + reportedName(keyword) + "\" was seen " +
                      std::to_string(times) + " times.");
}

void ObjReader::reportMissingMaterials() const {
    for (const auto& [name, references] : missingMaterials)
        reportError("Could not find material \"" + reportedName(name) + "\" But saw " +
                    std::to_string(references) + " references.");
}

void readObj(const std::string& name, LogicalLineReader& lines, const ReadLibrary& readLibrary,
             const ConverterSettings& settings, ObjModel& model) {
    try {
        ObjReader(readLibrary, settings, model).read(name, lines);
    } catch (const std::exception& failure) {
        reportFailure("Problem reading obj file ", failureText(failure));
        throw std::runtime_error("Unable to read obj file.");
    }
}

// Asks the host for the library.
void readHostLibrary(const HostLibraries& libraries, const std::string& libraryName,
                     MaterialTable& table) {
    const char* text = nullptr;
    std::size_t size = 0;
    bool isThere = false;
    if (libraries.open != nullptr) {
        const HostCall call;
        isThere = libraries.open(libraries.userData, libraryName.c_str(), &text, &size);
    }
    if (!isThere)
        throw std::runtime_error("Unable to open file");
    readMtlText(libraryName, std::string_view(text, text == nullptr ? 0 : size), table);
}

}  // namespace

void readObjFile(const std::string& inputPath, const std::string& inputFile,
                 const ConverterSettings& settings, ObjModel& model) {
    const std::string fileName = inputPath + inputFile;
    TextFile file(fileName);
    file.getLines().setExpectedSize(file.getSize());
    const ReadingPosition position(fileName, file.getLines());
    const ReadLibrary readLibrary = [&](const std::string& libraryName) {
        readMtlFile(inputPath, libraryName, model.materialTable);
    };
    readObj(inputFile, file.getLines(), readLibrary, settings, model);
}

void readObjText(const std::string& name, std::string_view text, const HostLibraries& libraries,
                 const ConverterSettings& settings, ObjModel& model) {
    MemoryText memory(text);
    memory.getLines().setExpectedSize(text.size());
    const ReadingPosition position(name, memory.getLines());
    const ReadLibrary readLibrary = [&](const std::string& libraryName) {
        readHostLibrary(libraries, libraryName, model.materialTable);
    };
    readObj(name, memory.getLines(), readLibrary, settings, model);
}

}  // namespace obj_adapter
