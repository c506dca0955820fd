// Faces and their indices. Covered by tests/obj/faceStatementTest.cpp.
#include "obj/faceReader.h"

#include "converter/converterState.h"
#include "converter/messages.h"
#include "converter/progress.h"
#include "model/objModel.h"
#include "obj/numberParsing.h"
#include "obj/ordinaryNumbers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace obj_adapter {

namespace {

// [-] digits that name one of count records read so far; null for anything else,
// and for more digits than every index fits.
inline const char* readOrdinaryIndex(const char* position, int count,
                                     std::int32_t& index) noexcept {
    constexpr std::ptrdiff_t MAX_DIGITS = 9;
    const bool isNegative = *position == '-';
    position += isNegative ? 1 : 0;
    const char* const begin = position;
    unsigned value = 0;
    position = readDigits(position, value);
    // One below the first record, or no digits, becomes a number beyond every count.
    const auto number = static_cast<unsigned>(count);
    const unsigned resolved = isNegative ? number - value : value - 1;
    if (resolved >= number || position - begin > MAX_DIGITS)
        return nullptr;
    index = static_cast<std::int32_t>(resolved);
    return position;
}

// The blank before a corner, and the corner in any of its forms; null where it is not
// ordinary.
inline const char* readBlankAndCorner(const char* position, const ObjModel& model,
                                      FaceElement& corner) noexcept {
    if (!isBlank(*position))
        return nullptr;
    corner.textureIndex = NO_INDEX;
    corner.normalIndex = NO_INDEX;
    position = readOrdinaryIndex(skipBlanks(position + 1), model.getNumberOfVertices(),
                                 corner.vertexIndex);
    if (position == nullptr || *position != '/')
        return position;
    ++position;
    if (*position != '/') {
        position =
            readOrdinaryIndex(position, model.getNumberOfTexturePoints(), corner.textureIndex);
        if (position == nullptr || *position != '/')
            return position;
    }
    return readOrdinaryIndex(position + 1, model.getNumberOfNormalPoints(), corner.normalIndex);
}

}  // namespace

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
        proveIndices();
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

const char* FaceReader::readOrdinaryFaces(const char* position, const char* end,
                                          int currentMaterial, std::size_t& count) {
    while (position != end && position[0] == 'f' && isBlank(position[1]) &&
           hasRoomForRecord(model.faces)) {
        Face& face = recordBehindTheLast(model.faces);
        const char* behind = position + 1;
        for (FaceElement& corner : face.elements) {
            behind = readBlankAndCorner(behind, model, corner);
            if (behind == nullptr)
                return position;
        }
        const char* next = skipEndOfLine(behind);
        if (next != nullptr) {
            completeFace(face, currentMaterial);
            keepRecordBehindTheLast(model.faces);
            ++pendingFaces;
        } else {
            next = tryToReadOrdinaryPolygon(face, behind, currentMaterial);
            if (next == nullptr)
                return position;
        }
        ++count;
        position = next;
    }
    return position;
}

// Without memory a polygon is not ordinary.
const char* FaceReader::tryToReadOrdinaryPolygon(const Face& begun, const char* position,
                                                 int currentMaterial) noexcept {
    try {
        return readOrdinaryPolygon(begun, position, currentMaterial);
    } catch (const std::exception&) {
        return nullptr;
    }
}

// The corners behind the first three, which the face has. A polygon that is not split is
// not ordinary: the plain way says why.
const char* FaceReader::readOrdinaryPolygon(const Face& begun, const char* position,
                                            int currentMaterial) {
    // A larger one takes so long that the host may be told of it.
    constexpr std::size_t MOST_CORNERS = 64;
    corners.assign(std::begin(begun.elements), std::end(begun.elements));
    const char* next = nullptr;
    do {
        if (corners.size() == MOST_CORNERS)
            return nullptr;
        position = readBlankAndCorner(position, model, corners.emplace_back());
        if (position == nullptr)
            return nullptr;
        next = skipEndOfLine(position);
    } while (next == nullptr);

    const std::span<const CornerTriple> pieces = triangulator.tryTriangulate(model, corners);
    if (pieces.empty() || !hasRoomForRecords(model.faces, pieces.size()))
        return nullptr;
    for (const CornerTriple& places : pieces) {
        Face& face = recordBehindTheLast(model.faces);
        for (std::size_t i = 0; i < CORNERS_PER_FACE; ++i)
            face.elements[i] = corners[places.corners[i]];
        completeFace(face, currentMaterial);
        keepRecordBehindTheLast(model.faces);
    }
    pendingFaces += pieces.size();
    return next;
}

// All but the corners.
void FaceReader::completeFace(Face& face, int currentMaterial) const noexcept {
    std::fill(std::begin(face.sortedVertexIndices), std::end(face.sortedVertexIndices), NO_INDEX);
    face.sortedKeyValid = false;
    face.materialIndex = currentMaterial;
    face.groupIndex = model.getNumberOfGroups() - 1;
}

// Without memory for the list, the faces are taken back and reported as if each had
// failed by itself.
void FaceReader::joinPendingFaces() {
    if (pendingFaces == 0)
        return;
    const std::size_t joining = std::exchange(pendingFaces, 0);
    try {
        model.addLastFacesToCurrentGroup(joining);
    } catch (const std::exception& failure) {
        model.faces.resize(model.faces.size() - joining);
        for (std::size_t face = 0; face < joining; ++face)
            reportError(std::string("Could not process face. ") + failureText(failure) +
                        " Skipping face.");
    }
}

// A corner may name a record that comes later, or none. Tables only grow, so an
// index that lies in its table stays in it.
void FaceReader::proveIndices() noexcept {
    for (const FaceElement& corner : corners) {
        if (corner.vertexIndex >= model.getNumberOfVertices() ||
            corner.textureIndex >= model.getNumberOfTexturePoints() ||
            corner.normalIndex >= model.getNumberOfNormalPoints())
            indicesAreProven = false;
    }
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
    } catch (const ImportCancelled&) {
        throw;
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
