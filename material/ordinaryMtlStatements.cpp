// The short way of ordinary material statements. Covered by
// tests/material/ordinaryMtlStatementsTest.cpp, which compares it with the slow twin.
#include "material/ordinaryMtlStatements.h"

#include "material/materialTable.h"
#include "obj/ordinaryNumbers.h"
#include "obj/textSource.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string_view>
#include <utility>

namespace obj_adapter {

namespace {

// Two characters as one number, to tell keywords by.
constexpr unsigned pairOf(const char* characters) noexcept {
    return static_cast<unsigned>(static_cast<unsigned char>(characters[0])) << 8U |
           static_cast<unsigned char>(characters[1]);
}

bool startsWith(const char* position, std::string_view keyword) noexcept {
    return std::memcmp(position, keyword.data(), keyword.size()) == 0;
}

// The token behind the blanks at position, which ends where position is moved to; empty
// where it is not ordinary.
std::string_view takeToken(const char*& position) noexcept {
    const char* const begin = skipBlanks(position);
    const char* end = begin;
    while (!isEndOfToken(*end) && *end != '\\' && *end != '\0')
        ++end;
    if (begin == position || !isEndOfToken(*end))
        return {};
    position = end;
    return {begin, static_cast<std::size_t>(end - begin)};
}

// So many numbers from behind a keyword, and the rest of the line, which is ignored; null
// where something is not ordinary.
const char* readNumbers(const char* position, std::size_t count, double* numbers) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        const char* token = skipBlanks(position);
        if (token == position)
            return nullptr;
        position = readOrdinaryDouble(token, numbers[i]);
        if (position == nullptr || !isEndOfToken(*position))
            return nullptr;
    }
    return skipRestOfLine(position);
}

const char* readNumber(const char* position, double& number) noexcept {
    double value;
    const char* next = readNumbers(position, 1, &value);
    if (next != nullptr)
        number = value;
    return next;
}

// Tr transparency
const char* readTransparency(const char* position, double& dissolve) noexcept {
    double transparency;
    const char* next = readNumbers(position, 1, &transparency);
    if (next != nullptr)
        dissolve = 1.0 - transparency;
    return next;
}

// digits, so few that every number of them fits
const char* readInteger(const char* position, std::int32_t& number) noexcept {
    constexpr std::ptrdiff_t MAX_DIGITS = 9;
    constexpr std::int32_t DECIMAL = 10;
    const char* const begin = skipBlanks(position);
    if (begin == position)
        return nullptr;
    const char* end = begin;
    std::int32_t value = 0;
    for (; digitOf(*end) < DECIMAL && end - begin < MAX_DIGITS; ++end)
        value = DECIMAL * value + static_cast<std::int32_t>(digitOf(*end));
    if (end == begin || !isEndOfToken(*end))
        return nullptr;
    const char* next = skipRestOfLine(end);
    if (next != nullptr)
        number = value;
    return next;
}

// r g b; a sign before the red is none of this kind of colour.
const char* readColor(const char* position, MaterialColor& color, bool& isSet) noexcept {
    constexpr std::size_t COMPONENTS = 3;
    double rgb[COMPONENTS];
    if (*skipBlanks(position) == '-')
        return nullptr;
    const char* next = readNumbers(position, COMPONENTS, rgb);
    if (next != nullptr) {
        color.spectralFile.clear();
        color.setRgb(static_cast<float>(rgb[0]), static_cast<float>(rgb[1]),
                     static_cast<float>(rgb[2]));
        isSet = true;
    }
    return next;
}

// file, without options
const char* readMap(const char* position, Material& material, Material::TextureMapName slot) {
    const std::string_view file = takeToken(position);
    if (file.empty() || file.front() == '-')
        return nullptr;
    const char* next = skipEndOfLine(position);
    if (next != nullptr) {
        TextureMap map;
        map.fileName.assign(file);
        setTextureMap(material, slot, std::move(map));
    }
    return next;
}

// map_Ka file | map_Kd file | map_Ks file | map_Ns file | map_d file
const char* readNamedMap(const char* position, Material& material) {
    static constexpr std::string_view START = "map_";
    static constexpr std::size_t PAIR = 2;
    if (!startsWith(position, START))
        return nullptr;
    position += START.size();
    switch (pairOf(position)) {
        case pairOf("Ka"):
            return readMap(position + PAIR, material, Material::MAP_KA);
        case pairOf("Kd"):
            return readMap(position + PAIR, material, Material::MAP_KD);
        case pairOf("Ks"):
            return readMap(position + PAIR, material, Material::MAP_KS);
        case pairOf("Ns"):
            return readMap(position + PAIR, material, Material::MAP_NS);
        case pairOf("d "):
            return readMap(position + 1, material, Material::MAP_D);
        default:
            return nullptr;
    }
}

// What all statements but newmtl do to the current material.
const char* readStatement(const char* position, Material& material) {
    static constexpr std::string_view ILLUMINATION = "illum";
    static constexpr std::string_view BUMP = "bump";
    static constexpr std::size_t PAIR = 2;
    switch (pairOf(position)) {
        case pairOf("Ka"):
            return readColor(position + PAIR, material.ambient, material.ambientIsSet);
        case pairOf("Kd"):
            return readColor(position + PAIR, material.diffuse, material.diffuseIsSet);
        case pairOf("Ks"):
            return readColor(position + PAIR, material.specular, material.specularIsSet);
        case pairOf("Ke"):  // no statement of ours, but of nearly every library
            return isBlank(position[PAIR]) ? skipRestOfLine(position + PAIR) : nullptr;
        case pairOf("Tf"):
            return readColor(position + PAIR, material.filter, material.filterIsSet);
        case pairOf("Ns"):
            return readNumber(position + PAIR, material.specularExponent);
        case pairOf("Ni"):
            return readNumber(position + PAIR, material.opticalDensity);
        case pairOf("d "):
            return readNumber(position + 1, material.dissolve);
        case pairOf("Tr"):
            return readTransparency(position + PAIR, material.dissolve);
        case pairOf("il"):
            return startsWith(position, ILLUMINATION)
                       ? readInteger(position + ILLUMINATION.size(), material.illumination)
                       : nullptr;
        case pairOf("bu"):
            return startsWith(position, BUMP)
                       ? readMap(position + BUMP.size(), material, Material::BUMP)
                       : nullptr;
        case pairOf("ma"):
            return readNamedMap(position, material);
        default:
            return nullptr;
    }
}

// newmtl name; further tokens are ignored.
const char* readNewMaterial(const char* position, MaterialTable& table) {
    static constexpr std::string_view KEYWORD = "newmtl";
    if (!startsWith(position, KEYWORD))
        return nullptr;
    position += KEYWORD.size();
    const std::string_view name = takeToken(position);
    const char* next = name.empty() ? nullptr : skipRestOfLine(position);
    return next != nullptr && table.addMaterialOfNewName(name) ? next : nullptr;
}

// Behind the line; null where it is not ordinary. A # behind blanks makes a keyword that
// nobody knows, which is the same as a comment.
const char* readLine(const char* position, MaterialTable& table) {
    position = skipBlanks(position);
    switch (*position) {
        case '\n':
        case '\r':
            return skipEndOfLine(position);
        case '#':
            return skipRestOfLine(position);
        case 'n':
            return readNewMaterial(position, table);
        default:
            return table.getNumberOfMaterials() == 0
                       ? nullptr
                       : readStatement(position, table.currentMaterial());
    }
}

}  // namespace

void readOrdinaryMtlStatements(LogicalLineReader& lines, MaterialTable& table) {
    const std::string_view text = lines.getReadyLines();
    if (text.size() > MAX_LINE_LENGTH)
        return;  // one of them may be too long
    const char* position = text.data();
    const char* const end = position + text.size();
    try {
        while (position != end) {
            const char* next = readLine(position, table);
            if (next == nullptr)
                break;
            lines.countReadyLines(1);
            position = next;
        }
    } catch (const std::exception&) {
        // The plain way tries the line once more and says what is wrong.
    }
    lines.skipReadyLines(static_cast<std::size_t>(position - text.data()));
}

}  // namespace obj_adapter
