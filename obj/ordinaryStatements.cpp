// The short way of ordinary statements. Covered by
// tests/obj/ordinaryStatementsTest.cpp, which compares it with the plain way.
#include "obj/ordinaryStatements.h"

#include "groups/groupStatement.h"
#include "model/objModel.h"
#include "obj/faceReader.h"
#include "obj/lineTokens.h"
#include "obj/ordinaryNumbers.h"
#include "obj/textSource.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <iterator>
#include <string_view>

namespace obj_adapter {

namespace {

// v x y z [w]
struct VertexStatement {
    static constexpr std::string_view KEYWORD = "v";
    static constexpr double Vertex::*NUMBERS[] = {&Vertex::x, &Vertex::y, &Vertex::z, &Vertex::w};
    static constexpr std::size_t REQUIRED = 3;
    static constexpr double DEFAULT = 1.0;  // of what is not required
    static constexpr auto TABLE = &ObjModel::vertices;
};

// vt u v [w]
struct TexturePointStatement {
    static constexpr std::string_view KEYWORD = "vt";
    static constexpr double TexturePoint::*NUMBERS[] = {&TexturePoint::u, &TexturePoint::v,
                                                        &TexturePoint::w};
    static constexpr std::size_t REQUIRED = 2;
    static constexpr double DEFAULT = 0.0;
    static constexpr auto TABLE = &ObjModel::texturePoints;
};

// vn x y z
struct NormalStatement {
    static constexpr std::string_view KEYWORD = "vn";
    static constexpr double NormalPoint::*NUMBERS[] = {&NormalPoint::x, &NormalPoint::y,
                                                       &NormalPoint::z};
    static constexpr std::size_t REQUIRED = 3;
    static constexpr double DEFAULT = 0.0;
    static constexpr auto TABLE = &ObjModel::normalPoints;
};

// A comment, or a line of nothing but blanks; null for every other.
const char* skipLineOfNoStatement(const char* position) noexcept {
    return *position == '#' ? skipRestOfLine(position) : skipEndOfLine(position);
}

template <typename Statement>
bool beginsLine(const char* position) noexcept {
    for (const char character : Statement::KEYWORD) {
        if (*position++ != character)
            return false;
    }
    return isBlank(*position);
}

// The numbers behind the keyword, and the rest of the line, which is ignored; null
// where something is not ordinary.
//
// One call of the conversion for all numbers, so that compilers put it in place: whole
// imports gained 1 to 10 %.
template <typename Statement, typename Record>
const char* readNumbers(const char* position, Record& record) noexcept {
    constexpr std::size_t COUNT = std::size(Statement::NUMBERS);
    for (std::size_t i = Statement::REQUIRED; i < COUNT; ++i)
        record.*Statement::NUMBERS[i] = Statement::DEFAULT;
    for (std::size_t i = 0; i < COUNT; ++i) {
        const char* token = skipBlanks(position);
        if (i >= Statement::REQUIRED &&
            (isLineFeed(*token) || (token[0] == '\r' && isLineFeed(token[1]))))
            break;
        if (token == position)
            return nullptr;
        position = readOrdinaryDouble(token, record.*Statement::NUMBERS[i]);
        if (position == nullptr || !isEndOfToken(*position))
            return nullptr;
    }
    return skipRestOfLine(position);
}

}  // namespace

void OrdinaryStatements::read(LogicalLineReader& lines, int& currentMaterial) {
    const std::string_view text = lines.getReadyLines();
    if (text.size() > MAX_LINE_LENGTH)
        return;  // one of them may be too long
    const char* position = text.data();
    const char* const end = position + text.size();
    while (position != end) {
        const char* const begin = position;
        if (beginsLine<VertexStatement>(position))
            position = readPoints<VertexStatement>(lines, position, end);
        else if (position[0] == 'f' && isBlank(position[1]))
            position = readFaces(lines, position, end, currentMaterial);
        else if (beginsLine<TexturePointStatement>(position))
            position = readPoints<TexturePointStatement>(lines, position, end);
        else if (beginsLine<NormalStatement>(position))
            position = readPoints<NormalStatement>(lines, position, end);
        else
            position = readOther(lines, position, end, currentMaterial);
        if (position == begin)
            break;
    }
    faceReader.joinPendingFaces();
    lines.skipReadyLines(static_cast<std::size_t>(position - text.data()));
}

// One line of another kind. Apart from the runs, whose loops compilers then do better.
const char* OrdinaryStatements::readOther(LogicalLineReader& lines, const char* position,
                                          const char* end, int& currentMaterial) {
    if ((position[0] == 'g' || position[0] == 'o') && isBlank(position[1]))
        return readGroup(lines, position, end);
    const char* next = position[0] == 'u' ? readMaterialSelection(position, currentMaterial)
                                          : skipLineOfNoStatement(position);
    if (next == nullptr || next == position)
        return position;
    lines.countReadyLines(1);
    return next;
}

// Lines of vertices, texture points or normals.
template <typename Statement>
const char* OrdinaryStatements::readPoints(LogicalLineReader& lines, const char* position,
                                           const char* end) noexcept {
    auto& table = model.*Statement::TABLE;
    std::size_t count = 0;
    while (position != end && beginsLine<Statement>(position) && hasRoomForRecord(table)) {
        auto& record = recordBehindTheLast(table);
        const char* next = readNumbers<Statement>(position + Statement::KEYWORD.size(), record);
        if (next == nullptr)
            break;
        record.index = static_cast<std::int32_t>(table.size());
        keepRecordBehindTheLast(table);
        ++count;
        position = next;
    }
    lines.countReadyLines(count);
    return position;
}

// f corner corner corner ...
const char* OrdinaryStatements::readFaces(LogicalLineReader& lines, const char* position,
                                          const char* end, int currentMaterial) {
    std::size_t count = 0;
    position = faceReader.readOrdinaryFaces(position, end, currentMaterial, count);
    lines.countReadyLines(count);
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

// g name ... | o name ...
//
// Whatever the names: only where the line ends is looked at here. Where memory runs out
// the plain way tries again.
const char* OrdinaryStatements::readGroup(LogicalLineReader& lines, const char* position,
                                          const char* end) {
    const auto length = static_cast<std::size_t>(end - position);
    const auto* lineFeed = static_cast<const char*>(std::memchr(position, '\n', length));
    if (lineFeed[-1] == '\\')
        return position;
    faceReader.joinPendingFaces();
    LineTokens tokens(
        std::string_view(position + 1, static_cast<std::size_t>(lineFeed - position - 1)));
    try {
        handleGroupStatement(model, tokens);
    } catch (const std::exception&) {
        return position;
    }
    lines.countReadyLines(1);
    return lineFeed + 1;
}

}  // namespace obj_adapter
