// Writes a model in another format. Covered by tests/tools.
#include "convertVerb.h"

#include "angles.h"
#include "exitCodes.h"
#include "glbWriter.h"
#include "importOptions.h"
#include "materialLook.h"
#include "modelAccess.h"
#include "objWriter.h"
#include "outputFile.h"
#include "plyWriter.h"
#include "stlWriter.h"
#include "textureFiles.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <stdexcept>
#include <system_error>

namespace obj_adapter::tool {

namespace {

constexpr const char* FORMATS[] = {".glb", ".ply", ".stl", ".obj"};

// In lower case.
std::string extensionOf(const std::string& fileName) {
    std::string extension = nameOf(pathOf(fileName).extension());
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char byte) {
        return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
    });
    return extension;
}

// Empty if the format is known; otherwise what is wrong, for the command line.
std::string checkFormat(const std::string& fileName) {
    const std::string extension = extensionOf(fileName);
    if (std::find(std::begin(FORMATS), std::end(FORMATS), extension) != std::end(FORMATS))
        return {};
    return fileName + " ends in none of .glb, .ply, .stl, .obj";
}

void refuseInput(const std::filesystem::path& output, const std::string& input) {
    std::error_code failure;
    if (std::filesystem::equivalent(output, pathOf(input), failure) && !failure)
        throw std::runtime_error(nameOf(output) + " was read for this; not overwritten");
}

// Nothing that was read is written over.
void refuseInputs(const std::filesystem::path& output, const ImportSettings& settings,
                  const ImportRun& importRun) {
    refuseInput(output, settings.fileName);
    for (const LoadedLibrary& library : importRun.libraries)
        refuseInput(output, library.fileName);
}

int countDrawableFaces(const ModelAccess& model) {
    int count = 0;
    for (int index = 0; index < model.getNumberOfFaces(); ++index)
        count += model.isDrawable(model.getFace(index)) ? 1 : 0;
    return count;
}

// The MTL file beside an OBJ file. Its name is one token of a statement.
std::filesystem::path libraryPathOf(const std::filesystem::path& objFile) {
    std::string name = nameOf(objFile.stem());
    std::replace_if(
        name.begin(), name.end(), [](char byte) { return byte == ' ' || byte == '\t'; }, '_');
    return objFile.parent_path() / pathOf(name + ".mtl");
}

}  // namespace

void ConvertVerb::addTo(CLI::App& program) {
    CLI::App& command = *program.add_subcommand("convert", "Write a model as GLB, PLY, STL or OBJ");
    addInputFile(command, settings);
    command.add_option("OUT", outputName, "The file to write; its ending names the format")
        ->type_name("OUT.glb|.ply|.stl|.obj")
        ->check(CLI::Validator(checkFormat, ""))
        ->required();
    command
        .add_option("--crease-angle", creaseAngle,
                    "GLB: smooth normals, over edges of at most so many degrees, where the file "
                    "has none")
        ->type_name("DEGREES")
        ->check(CLI::Range(0.0, 180.0).description(""));
    command.add_flag("--bump-is-normal", bumpIsNormal, "GLB: take bump maps for maps of normals");
    addImportOptions(command, settings);
}

int ConvertVerb::run() {
    const ImportRun importRun = runImport(settings);
    ObjConverter* converter = ObjConverter::getInstance();
    if (converter == nullptr || !importRun.succeeded) {
        printError("nothing is written, as the import gave up");
        return EXIT_CODE_FAILURE;
    }
    write(ModelAccess(*converter), importRun);
    return EXIT_CODE_SUCCESS;
}

void ConvertVerb::write(const ModelAccess& model, const ImportRun& importRun) const {
    refuseInputs(pathOf(outputName), settings, importRun);
    const std::string format = extensionOf(outputName);
    int faces = countDrawableFaces(model);
    if (format == ".obj") {
        writeObjFiles(model, importRun);
    } else if (format == ".glb") {
        faces = writeGlbFile(model, importRun);
    } else {
        OutputFile file(pathOf(outputName));
        if (format == ".stl")
            faces = writeStl(file, model);
        else
            writePly(file, model);
        file.commit();
    }
    if (faces < model.getNumberOfFaces())
        printWarning("faces that have no place in the format, left out: " +
                     std::to_string(model.getNumberOfFaces() - faces));
    printMessage({ObjConverter::MESSAGE_INFORMATION,
                  "Wrote " + outputName + " with " + std::to_string(faces) + " faces.",
                  {},
                  0});
}

int ConvertVerb::writeGlbFile(const ModelAccess& model, const ImportRun& importRun) const {
    const std::filesystem::path output = pathOf(outputName);
    GlbOptions options;
    options.folder = output.parent_path();
    options.bumpIsNormal = bumpIsNormal;
    if (creaseAngle)
        options.smallestCosine = sineAndCosine(*creaseAngle).cosine;
    OutputFile file(output);
    const GlbResult result = writeGlb(file, model, TextureFiles(settings, importRun), options);
    file.commit();
    noteTakenForOpaque(model);
    for (const std::string& loss : result.losses)
        printWarning(loss);
    return result.faces;
}

void ConvertVerb::writeObjFiles(const ModelAccess& model, const ImportRun& importRun) const {
    const std::filesystem::path output = pathOf(outputName);
    std::string libraryName;
    if (hasMaterials(model)) {
        const std::filesystem::path library = libraryPathOf(output);
        refuseInputs(library, settings, importRun);
        libraryName = nameOf(library.filename());
        OutputFile file(library);
        writeMtl(file, model);
        file.commit();
    }
    OutputFile file(output);
    writeObj(file, model, libraryName);
    file.commit();
}

}  // namespace obj_adapter::tool
