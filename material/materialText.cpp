// Materials as MTL text. Covered by tests/material/materialTextTest.cpp.
//
// The spacing, the order of the maps and "RBG" are read by others as they are.
#include "material/materialText.h"

#include "material/materialTable.h"

#include <obj_adapter/materialText.h>

#include <charconv>
#include <cmath>
#include <limits>

namespace obj_adapter {

namespace {

// What unset fields hold, and others when no statement changes them.
constexpr int UNSET_INTEGER = -1;
constexpr double UNSET_NUMBER = -1.0;
constexpr int DEFAULT_SHARPNESS = 60;
constexpr double OPAQUE = 1.0;
constexpr double DEFAULT_OPTICAL_DENSITY = 1.0;
constexpr double DEFAULT_BASE = 0.0;
constexpr double DEFAULT_GAIN = 1.0;

constexpr int DECIMALS = 6;

// A sign, the digits before the point, the point and the decimals.
constexpr int MAX_NUMBER_LENGTH =
    1 + (std::numeric_limits<double>::max_exponent10 + 1) + 1 + DECIMALS;

// As printf's %f in the "C" locale; a NaN has no sign.
void append(std::string& text, double value) {
    if (std::isnan(value)) {
        text += "nan";
        return;
    }
    char digits[MAX_NUMBER_LENGTH];
    const std::to_chars_result result = std::to_chars(digits, digits + MAX_NUMBER_LENGTH, value,
                                                      std::chars_format::fixed, DECIMALS);
    text.append(digits, result.ptr);
}

void append(std::string& text, int value) {
    text += std::to_string(value);
}

template <typename Number>
std::string numberText(Number value) {
    std::string text;
    append(text, value);
    return text;
}

// False when the value is a NaN.
bool differs(double value, double defaultValue) noexcept {
    return value < defaultValue || value > defaultValue;
}

// " -o u v w", unless all three are the default.
void appendTriple(std::string& text, const char* option, const double (&triple)[3],
                  double defaultValue) {
    if (!differs(triple[0], defaultValue) && !differs(triple[1], defaultValue) &&
        !differs(triple[2], defaultValue))
        return;
    text += option;
    for (const double component : triple) {
        text += " ";
        append(text, component);
    }
}

const char* nameOf(ReflectionType type) noexcept {
    switch (type) {
        case ReflectionType::CUBE_TOP:
            return "cube_top";
        case ReflectionType::CUBE_BOTTOM:
            return "cube_bottom";
        case ReflectionType::CUBE_FRONT:
            return "cube_front";
        case ReflectionType::CUBE_BACK:
            return "cube_back";
        case ReflectionType::CUBE_LEFT:
            return "cube_left";
        case ReflectionType::CUBE_RIGHT:
            return "cube_right";
        default:
            return "sphere";
    }
}

const char* nameOf(ImfChannel channel) noexcept {
    switch (channel) {
        case ImfChannel::R:
            return "r";
        case ImfChannel::G:
            return "g";
        case ImfChannel::B:
            return "b";
        case ImfChannel::M:
            return "m";
        case ImfChannel::Z:
            return "z";
        default:
            return "l";
    }
}

std::string threeValues(const MaterialColor& color, const char* firstGap, const char* secondGap) {
    std::string text;
    append(text, static_cast<double>(color.values[0]));
    text += firstGap;
    append(text, static_cast<double>(color.values[1]));
    text += secondGap;
    append(text, static_cast<double>(color.values[2]));
    return text;
}

std::string spectralFactor(const MaterialColor& color) {
    return numberText(static_cast<double>(color.values[0]));
}

void appendColor(std::string& text, const char* keyword, bool isSet, const MaterialColor& color) {
    if (isSet)
        text += keyword + colorToText(color) + "\n";
}

struct MapStatement {
    Material::TextureMapName slot;
    const char* keyword;  // with the blank behind it
};

// On either side of map_aat; neither is the order of the slots.
constexpr MapStatement MAPS_BEFORE_ANTI_ALIASING[] = {
    {Material::MAP_KA, "map_Ka "}, {Material::MAP_KD, "map_Kd "}, {Material::MAP_KS, "map_Ks "},
    {Material::MAP_NS, "map_Ns "}, {Material::MAP_D, "map_d "},
};
constexpr MapStatement MAPS_AFTER_ANTI_ALIASING[] = {
    {Material::DECAL, "decal "},
    {Material::DISP, "disp "},
    {Material::BUMP, "bump "},
    {Material::REFL, "refl "},
};

void appendMap(std::string& text, const Material& material, const MapStatement& statement) {
    const TextureMapSlot& slot = material.textureMaps[statement.slot];
    if (slot.hasTextureMap)
        text += statement.keyword + slot.textureMap.textureMapString() + "\n";
}

}  // namespace

std::string TextureMap::textureMapString() const {
    std::string text;
    if (reflectionType != ReflectionType::NONE)
        text += std::string(" -type ") + " " + nameOf(reflectionType);  // two blanks
    if (!blendU)
        text += " -blendu off";
    if (!blendV)
        text += " -blendv off";
    if (differs(boost, UNSET_NUMBER))
        text += " -boost " + numberText(boost);
    if (colorCorrection)
        text += " -cc on";
    if (clamp)
        text += " -clamp on";
    if (imfChannel != ImfChannel::NONE)
        text += std::string(" -imfchan ") + nameOf(imfChannel);
    if (differs(mmBase, DEFAULT_BASE) || differs(mmGain, DEFAULT_GAIN))
        text += " -mm " + numberText(mmBase) + " " + numberText(mmGain);
    appendTriple(text, " -o", offset, 0.0);
    appendTriple(text, " -s", scale, 1.0);
    appendTriple(text, " -t", turbulence, 0.0);
    if (resolution != UNSET_INTEGER)
        text += " -texres " + numberText(resolution);
    return text + " " + fileName;
}

std::string colorToText(const MaterialColor& color) {
    switch (color.type) {
        case ColorType::RGB:
            return threeValues(color, " ", " ");
        case ColorType::XYZ:
            return "xyz " + threeValues(color, " ", " ");
        case ColorType::SPECTRAL:
            return "spectral " + color.spectralFile + " " + spectralFactor(color);
        default:
            return "# No color found";
    }
}

std::string colorDescription(const MaterialColor& color) {
    switch (color.type) {
        case ColorType::RGB:
            return "RBG: (" + threeValues(color, ", ", ",") + ")";
        case ColorType::XYZ:
            return "XYZ: (" + threeValues(color, ", ", ",") + ")";
        case ColorType::SPECTRAL:
            return "Spectral: " + color.spectralFile + " Factor:" + spectralFactor(color);
        default:
            return "No color";
    }
}

std::string dissolveToText(const Material& material) {
    if (material.halo)
        return "d -halo " + numberText(material.dissolve);
    if (!differs(material.dissolve, OPAQUE))
        return {};
    return "d " + numberText(material.dissolve);
}

std::string materialToText(const Material& material) {
    std::string text = "newmtl " + material.name + "\n";
    appendColor(text, "Ka ", material.ambientIsSet, material.ambient);
    appendColor(text, "Kd ", material.diffuseIsSet, material.diffuse);
    appendColor(text, "Ks ", material.specularIsSet, material.specular);
    appendColor(text, "Tf ", material.filterIsSet, material.filter);
    const std::string dissolve = dissolveToText(material);
    if (!dissolve.empty())
        text += dissolve + "\n";
    if (material.illumination != UNSET_INTEGER)
        text += "illum " + numberText(material.illumination) + "\n";
    if (differs(material.specularExponent, UNSET_NUMBER))
        text += "Ns " + numberText(material.specularExponent) + "\n";
    if (material.sharpness != DEFAULT_SHARPNESS)
        text += "sharpness " + numberText(material.sharpness) + "\n";
    if (differs(material.opticalDensity, DEFAULT_OPTICAL_DENSITY))
        text += "Ni " + numberText(material.opticalDensity) + "\n";
    for (const MapStatement& statement : MAPS_BEFORE_ANTI_ALIASING)
        appendMap(text, material, statement);
    if (material.antiAliasTextures)
        text += "map_aat on";  // no line end, on purpose
    for (const MapStatement& statement : MAPS_AFTER_ANTI_ALIASING)
        appendMap(text, material, statement);
    return text;
}

std::string libraryNamesToText(const MaterialTable& table) {
    std::string text;
    for (const std::string& libraryName : table.libraryNames)
        text += "mtllib " + libraryName + "\n";
    return text;
}

}  // namespace obj_adapter
