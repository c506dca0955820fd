// Faces and their indices. Covered by tests/obj/faceStatementTest.cpp.
#include "obj/faceReader.h"

#include "converter/converterState.h"
#include "converter/messages.h"
#include "model/objModel.h"
#include "obj/numberParsing.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

namespace obj_adapter {

int resolveIndex(int value, int count) {
    const int index = value < 0 ? value + count : value - 1;
    if (index < 0)
        throw std::runtime_error("Index too low.");
    return index;
}

FaceElement parseFaceElement(const ObjModel& model, const Token& token) {
    const auto vertexIndex = [&](std::string_view text) {
        return resolveIndex(parseInt(text), model.getNumberOfVertices());
    };
    const auto textureIndex = [&](std::string_view text) {
        return resolveIndex(parseInt(text), model.getNumberOfTexturePoints());
    };
    const auto normalIndex = [&](std::string_view text) {
        return resolveIndex(parseInt(text), model.getNumberOfNormalPoints());
    };

    FaceElement corner;
    const std::string_view text = token.view();
    const std::size_t firstSlash = text.find('/');
    corner.vertexIndex = vertexIndex(text.substr(0, firstSlash));
    if (firstSlash == std::string_view::npos)
        return corner;

    const std::string_view rest = text.substr(firstSlash + 1);
    const std::size_t secondSlash = rest.find('/');
    // "1//2" has no texture index; in "1/" it is missing.
    if (secondSlash != 0)
        corner.textureIndex = textureIndex(rest.substr(0, secondSlash));
    // What follows a third slash is behind the digits and so ignored.
    if (secondSlash != std::string_view::npos)
        corner.normalIndex = normalIndex(rest.substr(secondSlash + 1));
    return corner;
}

void FaceReader::readFaceStatement(LineTokens& tokens, int currentMaterial) {
    corners.clear();
    try {
        for (Token token = tokens.next(); !token.isMissing(); token = tokens.next())
            corners.push_back(parseFaceElement(model, token));
        if (corners.size() == CORNERS_PER_FACE)
            addTriangle(currentMaterial);
    } catch (const std::exception& failure) {
        reportError(std::string("Could not process face. ") + failureText(failure) +
                    " Skipping face.");
        return;
    }
    if (corners.size() < CORNERS_PER_FACE)
        reportError("Face does not have enough vertices. Skipping face.");
    else if (corners.size() > CORNERS_PER_FACE)
        addPolygon(currentMaterial);
}

void FaceReader::addTriangle(int currentMaterial) {
    Face face;
    for (const FaceElement& corner : corners)
        face.addElement(corner);
    face.setMaterialIndex(currentMaterial);
    model.addFaceInCurrentGroup(face);
}

// A polygon that fails half-way keeps the triangles that were added before.
void FaceReader::addPolygon(int currentMaterial) {
    try {
        triangles.clear();
        triangulator.triangulate(model, corners, triangles, settings.skipPolygonsWithoutEar);
        for (Face& face : triangles) {
            face.setMaterialIndex(currentMaterial);
            model.addFaceInCurrentGroup(face);
        }
    } catch (...) {
        reportError("Could not split non-triangular face. Skipping face.");
    }
}

namespace {

// Unbroken, so that a search for what a user saw finds it.
// clang-format off
const char REPAIRED_FACES_MESSAGE[] =
    "Number of faces where vertex, texture, or normal indices had to be changed due to being out of range: ";
// clang-format on

// A negative index becomes 0, even where the table is empty; one past the end the
// last, which is NO_INDEX there.
int clampedIndex(int index, int last) noexcept {
    return index < 0 ? 0 : std::min(index, last);
}

// Like that, but NO_INDEX stays.
int clampedOptionalIndex(int index, int last) noexcept {
    return index == NO_INDEX ? index : clampedIndex(index, last);
}

}  // namespace

void repairFaceIndices(ObjModel& model) {
    const int lastVertex = model.getNumberOfVertices() - 1;
    const int lastTexturePoint = model.getNumberOfTexturePoints() - 1;
    const int lastNormal = model.getNumberOfNormalPoints() - 1;

    int changedFaces = 0;
    for (Face& face : model.faces) {
        bool isChanged = false;
        for (FaceElement& corner : face.elements) {
            const FaceElement repaired{clampedIndex(corner.vertexIndex, lastVertex),
                                       clampedOptionalIndex(corner.textureIndex, lastTexturePoint),
                                       clampedOptionalIndex(corner.normalIndex, lastNormal)};
            if (repaired.vertexIndex == corner.vertexIndex &&
                repaired.textureIndex == corner.textureIndex &&
                repaired.normalIndex == corner.normalIndex)
                continue;
            corner = repaired;
            face.sortedKeyValid = false;
            isChanged = true;
        }
        if (isChanged)
            ++changedFaces;
    }
    if (changedFaces > 0)
        reportWarning(REPAIRED_FACES_MESSAGE + std::to_string(changedFaces));
}

}  // namespace obj_adapter
