// The short way of ordinary statements. Covered by
// tests/obj/ordinaryStatementsTest.cpp, which compares it with the plain way.
#include "obj/ordinaryStatements.h"

#include "model/objModel.h"
#include "obj/faceReader.h"
#include "obj/ordinaryNumbers.h"
#include "obj/textSource.h"

#include <cstring>
#include <string_view>

namespace obj_adapter {

namespace {

bool isLineFeed(char character) noexcept {
    return character == '\n';
}

// Behind the line feed of a line whose statement is complete at position; null where
// the next line belongs to this one. What stands there is ignored.
const char* skipRestOfLine(const char* position) noexcept {
    if (isLineFeed(*position))
        return position + 1;
    if (position[0] == '\r' && isLineFeed(position[1]))
        return position + 2;
    while (!isLineFeed(*position))
        ++position;
    return position[-1] == '\\' ? nullptr : position + 1;
}

bool isEndOfToken(char character) noexcept {
    return isBlank(character) || character == '\r' || isLineFeed(character);
}

// The blank before a number, and the number; null if it is not ordinary.
const char* readBlankAndDouble(const char* position, double& value) noexcept {
    if (!isBlank(*position))
        return nullptr;
    position = readOrdinaryDouble(skipBlanks(position + 1), value);
    return position != nullptr && isEndOfToken(*position) ? position : nullptr;
}

// The same for a number that may be missing at the end of the line.
const char* readBlankAndOptionalDouble(const char* position, double& value) noexcept {
    const char* token = skipBlanks(position);
    if (isLineFeed(*token) || (token[0] == '\r' && isLineFeed(token[1])))
        return token;
    return readBlankAndDouble(position, value);
}

}  // namespace

void OrdinaryStatements::read(LogicalLineReader& lines, int& currentMaterial) {
    const std::string_view text = lines.getReadyLines();
    const char* position = text.data();
    const char* const end = position + text.size();
    while (position != end) {
        const char* const begin = position;
        if (position[0] == 'v' && isBlank(position[1]))
            position = readVertices(lines, position, end);
        else if (position[0] == 'f' && isBlank(position[1]))
            position = readFaces(lines, position, end, currentMaterial);
        else if (position[0] == 'v' && position[1] == 't')
            position = readTexturePoints(lines, position, end);
        else if (position[0] == 'v' && position[1] == 'n')
            position = readNormals(lines, position, end);
        else if (position[0] == 'u' &&
                 (position = readMaterialSelection(position, currentMaterial)) != begin)
            lines.countReadyLine();
        if (position == begin)
            break;
    }
    faceReader.joinPendingFaces();
    lines.skipReadyLines(static_cast<std::size_t>(position - text.data()));
}

// v x y z [w]
const char* OrdinaryStatements::readVertices(LogicalLineReader& lines, const char* position,
                                             const char* end) noexcept {
    while (position != end && position[0] == 'v' && isBlank(position[1]) &&
           hasRoomForRecord(model.vertices)) {
        Vertex& vertex = recordBehindTheLast(model.vertices);
        vertex.w = 1.0;
        const char* next = readBlankAndDouble(position + 1, vertex.x);
        if (next != nullptr)
            next = readBlankAndDouble(next, vertex.y);
        if (next != nullptr)
            next = readBlankAndDouble(next, vertex.z);
        if (next != nullptr && !isLineFeed(*next))
            next = readBlankAndOptionalDouble(next, vertex.w);
        if (next != nullptr)
            next = skipRestOfLine(next);
        if (next == nullptr)
            break;
        vertex.index = model.getNumberOfVertices();
        keepRecordBehindTheLast(model.vertices);
        lines.countReadyLine();
        position = next;
    }
    return position;
}

// vt u v [w]
const char* OrdinaryStatements::readTexturePoints(LogicalLineReader& lines, const char* position,
                                                  const char* end) noexcept {
    while (position != end && position[0] == 'v' && position[1] == 't' &&
           hasRoomForRecord(model.texturePoints)) {
        TexturePoint& texturePoint = recordBehindTheLast(model.texturePoints);
        texturePoint.w = 0.0;
        const char* next = readBlankAndDouble(position + 2, texturePoint.u);
        if (next != nullptr)
            next = readBlankAndDouble(next, texturePoint.v);
        if (next != nullptr && !isLineFeed(*next))
            next = readBlankAndOptionalDouble(next, texturePoint.w);
        if (next != nullptr)
            next = skipRestOfLine(next);
        if (next == nullptr)
            break;
        texturePoint.index = model.getNumberOfTexturePoints();
        keepRecordBehindTheLast(model.texturePoints);
        lines.countReadyLine();
        position = next;
    }
    return position;
}

// vn x y z
const char* OrdinaryStatements::readNormals(LogicalLineReader& lines, const char* position,
                                            const char* end) noexcept {
    while (position != end && position[0] == 'v' && position[1] == 'n' &&
           hasRoomForRecord(model.normalPoints)) {
        NormalPoint& normal = recordBehindTheLast(model.normalPoints);
        const char* next = readBlankAndDouble(position + 2, normal.x);
        if (next != nullptr)
            next = readBlankAndDouble(next, normal.y);
        if (next != nullptr)
            next = readBlankAndDouble(next, normal.z);
        if (next != nullptr)
            next = skipRestOfLine(next);
        if (next == nullptr)
            break;
        normal.index = model.getNumberOfNormalPoints();
        keepRecordBehindTheLast(model.normalPoints);
        lines.countReadyLine();
        position = next;
    }
    return position;
}

// f corner corner corner ...
const char* OrdinaryStatements::readFaces(LogicalLineReader& lines, const char* position,
                                          const char* end, int currentMaterial) {
    while (position != end && position[0] == 'f' && isBlank(position[1])) {
        const char* next = faceReader.readOrdinaryFace(position + 1, currentMaterial);
        if (next == nullptr)
            break;
        lines.countReadyLine();
        position = next;
    }
    return position;
}

// usemtl name
//
// Returns position where the line is not ordinary, or the name that of no material.
const char* OrdinaryStatements::readMaterialSelection(const char* position,
                                                      int& currentMaterial) noexcept {
    static constexpr std::string_view KEYWORD = "usemtl";
    if (std::memcmp(position, KEYWORD.data(), KEYWORD.size()) != 0)
        return position;
    const char* begin = position + KEYWORD.size();
    if (!isBlank(*begin))
        return position;
    begin = skipBlanks(begin);
    const char* end = begin;
    while (!isEndOfToken(*end) && *end != '\\' && *end != '\0')
        ++end;
    if (begin == end || !isEndOfToken(*end))
        return position;
    const char* next = skipRestOfLine(end);
    if (next == nullptr)
        return position;
    const int material = model.materialTable.findKnownMaterial(
        std::string_view(begin, static_cast<std::size_t>(end - begin)));
    if (material == NO_INDEX)
        return position;
    currentMaterial = material;
    return next;
}

}  // namespace obj_adapter
