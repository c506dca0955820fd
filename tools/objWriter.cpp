// Writes OBJ and MTL. Covered by tests/tools/meshWritersTest.cpp and
// convertedFilesTest.cpp.
#include "objWriter.h"

#include "programVersion.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace obj_adapter::tool {

namespace {

// The shortest text that reads back to the same bits.
void appendNumber(std::string& text, double value) {
    std::array<char, 32> digits{};
    const double finite = std::isfinite(value) ? value : 0.0;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), finite).ptr;
    text.append(digits.data(), end);
}

void appendStatement(std::string& text, const char* keyword, std::initializer_list<double> values) {
    text += keyword;
    for (const double value : values) {
        text += ' ';
        appendNumber(text, value);
    }
    text += '\n';
}

// Names are cut at blanks and line ends when they are read.
std::string asOneToken(std::string name) {
    std::replace_if(
        name.begin(), name.end(),
        [](char byte) {
            return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r' || byte == '\\';
        },
        '_');
    return name;
}

void appendGroup(std::string& text, const Group& group) {
    text += "g";
    if (!group.isCompound())
        text += " " + asOneToken(group.name);
    for (const std::string& name : group.names)
        text += " " + asOneToken(name);
    text += '\n';
}

// The name that no material has yet for faces without one.
std::string nameOfNoMaterial(const ModelAccess& model) {
    std::string name = "no_material";
    for (int index = 0; index < model.getNumberOfMaterials(); ++index) {
        if (model.getMaterial(index).name == name) {
            name += '_';
            index = -1;
        }
    }
    return name;
}

bool isMixed(const ModelAccess& model) {
    const std::size_t without = model.countFacesOfMaterials().back();
    return without > 0 && without < static_cast<std::size_t>(model.getNumberOfFaces());
}

class ObjText {
public:
    ObjText(OutputFile& outputFile, const ModelAccess& importedModel)
        : file(outputFile), model(importedModel), noMaterial(nameOfNoMaterial(model)) {
        isMixedModel = isMixed(model);
    }

    void writeHeader(const std::string& libraryName) {
        text += "# " + getProgramVersion() + "\n";
        if (!libraryName.empty())
            text += "mtllib " + libraryName + "\n";
    }

    void writeTables() {
        for (int index = 0; index < model.getNumberOfVertices(); ++index) {
            const Vertex& vertex = model.getVertex(index);
            if (vertex.w == 1.0)
                appendStatement(text, "v", {vertex.x, vertex.y, vertex.z});
            else
                appendStatement(text, "v", {vertex.x, vertex.y, vertex.z, vertex.w});
            flushIfLong();
        }
        for (int index = 0; index < model.getNumberOfTexturePoints(); ++index) {
            const TexturePoint& point = model.getTexturePoint(index);
            if (point.w == 0.0 && !std::signbit(point.w))
                appendStatement(text, "vt", {point.u, point.v});
            else
                appendStatement(text, "vt", {point.u, point.v, point.w});
            flushIfLong();
        }
        for (int index = 0; index < model.getNumberOfNormals(); ++index) {
            const Vector3 normal = model.getNormal(index);
            appendStatement(text, "vn", {normal.x, normal.y, normal.z});
            flushIfLong();
        }
    }

    void writeGroups() {
        for (int index = 0; index < model.getNumberOfGroups(); ++index) {
            const Group& group = model.getGroup(index);
            appendGroup(text, group);
            for (const int face : group.faceIndices) {
                if (model.isDrawable(model.getFace(face)))
                    appendFace(model.getFace(face));
                flushIfLong();
            }
        }
        file.write(text);
    }

private:
    void appendFace(const Face& face) {
        const int material = model.materialOf(face);
        if (material != currentMaterial) {
            if (material != NO_INDEX)
                text += "usemtl " + model.getMaterial(material).name + "\n";
            else
                text += "usemtl " + noMaterial + "\n";
            currentMaterial = material;
        } else if (material == NO_INDEX && isMixedModel && !saidNoMaterial) {
            text += "usemtl " + noMaterial + "\n";
        }
        saidNoMaterial = true;
        text += 'f';
        for (const FaceElement& corner : face.elements)
            appendCorner(corner);
        text += '\n';
    }

    void appendCorner(const FaceElement& corner) {
        const int texturePoint = model.texturePointOf(corner);
        const int normal = model.normalOf(corner);
        text += ' ' + std::to_string(corner.vertexIndex + 1);
        if (texturePoint != NO_INDEX)
            text += '/' + std::to_string(texturePoint + 1);
        else if (normal != NO_INDEX)
            text += '/';
        if (normal != NO_INDEX)
            text += '/' + std::to_string(normal + 1);
    }

    void flushIfLong() {
        constexpr std::size_t BLOCK_BYTES = 65536;
        if (text.size() < BLOCK_BYTES)
            return;
        file.write(text);
        text.clear();
    }

    OutputFile& file;
    const ModelAccess& model;
    std::string noMaterial;
    bool isMixedModel = false;
    bool saidNoMaterial = false;
    int currentMaterial = NO_INDEX;
    std::string text;
};

double withSixDecimals(double value) {
    std::array<char, 400> digits{};
    constexpr int DECIMALS = 6;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, DECIMALS)
                         .ptr;
    double read = 0.0;
    std::from_chars(digits.data(), end, read);
    return read;
}

// The exported texts have six decimals. Where these lose digits, the statement
// follows once more with all of them, and readers take the last.
void appendExactly(std::string& text, const char* keyword, double value, double untouched) {
    if (value != untouched && std::isfinite(value) && withSixDecimals(value) != value)
        appendStatement(text, keyword, {value});
}

void appendExactly(std::string& text, const char* keyword, const MaterialColor& color) {
    if (color.type != ColorType::RGB && color.type != ColorType::XYZ)
        return;
    double values[3];
    bool isExact = true;
    for (int channel = 0; channel < 3; ++channel) {
        values[channel] = static_cast<double>(color.values[channel]);
        // Values are read in double precision and kept in single precision.
        isExact = isExact &&
                  static_cast<float>(withSixDecimals(values[channel])) == color.values[channel];
    }
    if (isExact || !(values[0] >= 0.0 || color.type == ColorType::XYZ))
        return;
    const std::string beginning =
        std::string(keyword) + (color.type == ColorType::XYZ ? " xyz" : "");
    appendStatement(text, beginning.c_str(), {values[0], values[1], values[2]});
}

}  // namespace

void writeObj(OutputFile& file, const ModelAccess& model, const std::string& libraryName) {
    ObjText text(file, model);
    text.writeHeader(libraryName);
    text.writeTables();
    text.writeGroups();
}

void writeMtl(OutputFile& file, const ModelAccess& model) {
    const Material untouched;
    std::string text = "# " + getProgramVersion() + "\n";
    for (int index = 0; index < model.getNumberOfMaterials(); ++index) {
        const Material& material = model.getMaterial(index);
        text += "\n" + materialToText(material);
        if (material.hasAmbient())
            appendExactly(text, "Ka", material.ambient);
        if (material.hasDiffuse())
            appendExactly(text, "Kd", material.diffuse);
        if (material.hasSpecular())
            appendExactly(text, "Ks", material.specular);
        if (material.hasFilter())
            appendExactly(text, "Tf", material.filter);
        appendExactly(text, "d", material.dissolve, untouched.dissolve);
        appendExactly(text, "Ns", material.specularExponent, untouched.specularExponent);
        appendExactly(text, "Ni", material.opticalDensity, untouched.opticalDensity);
    }
    if (isMixed(model))
        text += "\nnewmtl " + nameOfNoMaterial(model) + "\n";
    file.write(text);
}

}  // namespace obj_adapter::tool
