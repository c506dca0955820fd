// Reads MTL libraries, one statement per line. Covered by
// tests/material/mtlReaderTest.cpp.
#include "material/mtlReader.h"

#include "converter/messages.h"
#include "converter/readingPosition.h"
#include "material/materialTable.h"
#include "material/ordinaryMtlStatements.h"
#include "material/textureMapOptions.h"
#include "obj/keywords.h"
#include "obj/lineTokens.h"
#include "obj/numberParsing.h"
#include "obj/textSource.h"

#include <cstddef>
#include <exception>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace obj_adapter {

namespace {

// Shorter lines cannot hold a statement.
constexpr std::size_t MIN_LINE_LENGTH = 2;

// Reads a colour's components from doubles: too large a value is infinite.
static_assert(std::numeric_limits<float>::is_iec559);

float parseFloat(const Token& token) {
    return static_cast<float>(parseDouble(token));
}

bool startsLikeNumber(const Token& token) noexcept {
    const char first = *token.begin;
    return (first >= '0' && first <= '9') || first == '.';
}

// r g b
//
// The token is red. All three are needed.
MaterialColor parseRgb(const Token& redToken, LineTokens& tokens) {
    const float red = parseFloat(redToken);
    const float green = parseFloat(tokens.next());
    const float blue = parseFloat(tokens.next());
    MaterialColor color;
    color.setRgb(red, green, blue);
    return color;
}

// x [y z]
//
// One value serves for all three, unlike RGB; with two, the third is missed.
MaterialColor parseXyz(LineTokens& tokens) {
    const float x = parseFloat(tokens.next());
    float y = x;
    float z = x;
    const Token second = tokens.next();
    if (!second.isMissing()) {
        y = parseFloat(second);
        z = parseFloat(tokens.next());
    }
    MaterialColor color;
    color.setXyz(x, y, z);
    return color;
}

// file [factor]
MaterialColor parseSpectral(LineTokens& tokens) {
    const Token file = tokens.next();
    if (file.isMissing())
        throw std::runtime_error("Invalid color format");
    const Token factor = tokens.next();
    MaterialColor color;
    color.setSpectral(file.text(), factor.isMissing() ? 1.0F : parseFloat(factor));
    return color;
}

// r g b | xyz x [y z] | spectral file [factor]
//
// RGB is told by its first character alone, so that a red with a sign is no
// colour. Throws std::exception with the reason.
MaterialColor parseColor(LineTokens& tokens) {
    const Token first = tokens.next();
    if (first.isMissing())
        throw std::runtime_error("No float value found");
    if (startsLikeNumber(first))
        return parseRgb(first, tokens);
    if (equalsIgnoringCase(first.view(), "xyz"))
        return parseXyz(tokens);
    if (equalsIgnoringCase(first.view(), "spectral"))
        return parseSpectral(tokens);
    throw std::runtime_error("Invalid color format");
}

// Reads and stores one statement's value; a failure costs that line only.
template <typename ReadAndStore>
void tryStatement(const char* messageStart, ReadAndStore readAndStore) {
    try {
        readAndStore();
    } catch (const std::exception& failure) {
        reportError(std::string(messageStart) + failureText(failure));
    }
}

void appendNewMaterial(MaterialTable& table, LineTokens& tokens) {
    const Token nameToken = tokens.next();
    if (nameToken.isMissing()) {
        reportError("Error processing New Material: No name given.");
        throw std::runtime_error("Material name missing");
    }
    if (table.addMaterialOfNewName(nameToken.view()))
        return;
    // Kept all the same; faces that ask for the name get the first.
    std::string name = nameToken.text();
    reportWarning("Material with the name \"" + name +
                  "\" already exists. The materials will not reliably be distinguished.");
    table.addMaterial(std::move(name));
}

// newmtl name; further tokens are ignored.
//
// A failure ends the whole library: the statements that follow would change a
// material that they are not meant for.
void readNewMaterial(MaterialTable& table, LineTokens& tokens) {
    try {
        appendNewMaterial(table, tokens);
    } catch (const std::exception& failure) {
        reportError(std::string("Error processing New Material: ") + failureText(failure));
        throw std::runtime_error("Could not proccess new material");
    }
}

// Ka colour
void readAmbient(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Ambient color: ", [&] {
        MaterialColor color = parseColor(tokens);
        table.currentMaterial().setAmbient(std::move(color));
    });
}

// Kd colour
void readDiffuse(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Diffuse color: ", [&] {
        MaterialColor color = parseColor(tokens);
        table.currentMaterial().setDiffuse(std::move(color));
    });
}

// Ks colour
void readSpecular(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Specular color: ", [&] {
        MaterialColor color = parseColor(tokens);
        table.currentMaterial().setSpecular(std::move(color));
    });
}

// Tf colour
void readFilter(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Transmission Filter: ", [&] {
        MaterialColor color = parseColor(tokens);
        table.currentMaterial().setFilter(std::move(color));
    });
}

// Ns exponent
void readSpecularExponent(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Specular Exponent: ", [&] {
        const double exponent = parseDouble(tokens.next());
        table.currentMaterial().specularExponent = exponent;
    });
}

// d [-halo] factor
//
// The flag is set before the factor is read, and nothing clears it.
void readDissolve(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Dissolve: ", [&] {
        Token value = tokens.next();
        if (!value.isMissing() && equalsIgnoringCase(value.view(), "-halo")) {
            table.currentMaterial().halo = true;
            value = tokens.next();
        }
        const double dissolve = parseDouble(value);
        table.currentMaterial().dissolve = dissolve;
    });
}

// Tr transparency, the complement of d: the later of the two holds.
void readTransparency(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Transparency: ", [&] {
        const double dissolve = 1.0 - parseDouble(tokens.next());
        table.currentMaterial().dissolve = dissolve;
    });
}

// illum model
void readIllumination(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Illumination Model: ", [&] {
        const int illumination = parseInt(tokens.next());
        table.currentMaterial().illumination = illumination;
    });
}

// sharpness value
void readSharpness(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Sharpness: ", [&] {
        const int sharpness = parseInt(tokens.next());
        table.currentMaterial().sharpness = sharpness;
    });
}

// Ni density
void readOpticalDensity(MaterialTable& table, LineTokens& tokens) {
    tryStatement("Error processing Optical Density: ", [&] {
        const double density = parseDouble(tokens.next());
        table.currentMaterial().opticalDensity = density;
    });
}

template <Material::TextureMapName slot>
void readMap(MaterialTable& table, LineTokens& tokens) {
    readMapStatement(table, tokens, slot);
}

using Handler = void (*)(MaterialTable& table, LineTokens& tokens);

// What is read, in matching order; everything else is ignored in silence.
constexpr KeywordRow<Handler> STATEMENTS[] = {
    {"newmtl", &readNewMaterial},
    {"Ka", &readAmbient},
    {"Kd", &readDiffuse},
    {"Ks", &readSpecular},
    {"Tf", &readFilter},
    {"Ns", &readSpecularExponent},
    {"d", &readDissolve},
    {"Tr", &readTransparency},
    {"illum", &readIllumination},
    {"sharpness", &readSharpness},
    {"Ni", &readOpticalDensity},
    {"map_Ka", &readMap<Material::MAP_KA>},
    {"map_Kd", &readMap<Material::MAP_KD>},
    {"map_Ks", &readMap<Material::MAP_KS>},
    {"map_Ns", &readMap<Material::MAP_NS>},
    {"map_d", &readMap<Material::MAP_D>},
    {"disp", &readMap<Material::DISP>},
    {"decal", &readMap<Material::DECAL>},
    {"bump", &readMap<Material::BUMP>},
    {"refl", &readMap<Material::REFL>},
};

void readLine(std::string_view line, MaterialTable& table) {
    if (line.size() < MIN_LINE_LENGTH || line.front() == '#')
        return;
    LineTokens tokens(line);
    const Token keyword = tokens.next();
    if (keyword.isMissing())
        return;
    if (const KeywordRow<Handler>* statement = findKeyword(STATEMENTS, keyword.view()))
        statement->handler(table, tokens);
}

// Enters the library and says where it was found.
void enterLibrary(const std::string& fileName, const std::string& libraryName,
                  MaterialTable& table) {
    table.addLibraryName(libraryName);
    reportInformation("Using Mtllib file: " + fileName);
}

void openLibrary(std::optional<TextFile>& file, const std::string& fileName,
                 const std::string& libraryName, MaterialTable& table) {
    file.emplace(fileName);
    enterLibrary(fileName, libraryName, table);
}

// Each line the short way if it is ordinary, otherwise the plain way.
void readStatements(const std::string& fileName, LogicalLineReader& lines, MaterialTable& table) {
    const ReadingPosition position(fileName, lines);
    try {
        for (;;) {
            readOrdinaryMtlStatements(lines, table);
            std::string_view line;
            if (!lines.next(line))
                return;
            readLine(line, table);
        }
    } catch (const std::exception& failure) {
        reportFailure("Problem with material library: ", failureText(failure));
    }
}

}  // namespace

void readMtlFile(const std::string& inputPath, const std::string& libraryName,
                 MaterialTable& table) {
    std::optional<TextFile> file;
    std::string fileName = libraryName;
    try {
        openLibrary(file, fileName, libraryName, table);
    } catch (...) {
        // Whatever went wrong at the first place, the host's callback included,
        // the second is tried; only what goes wrong there is told.
        fileName = inputPath + libraryName;
        openLibrary(file, fileName, libraryName, table);
    }
    readStatements(fileName, file->getLines(), table);
}

void readMtlText(const std::string& libraryName, std::string_view text, MaterialTable& table) {
    enterLibrary(libraryName, libraryName, table);
    MemoryText memory(text);
    readStatements(libraryName, memory.getLines(), table);
}

}  // namespace obj_adapter
