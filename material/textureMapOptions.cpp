// The texture map statements of an MTL library. Covered by
// tests/material/textureMapOptionsTest.cpp.
#include "material/textureMapOptions.h"

#include "converter/messages.h"
#include "material/materialTable.h"
#include "obj/keywords.h"
#include "obj/numberParsing.h"

#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace obj_adapter {

namespace {

constexpr int COMPONENTS = 3;

// u [v [w]]
//
// Greedy: whatever follows is taken for a number, a file name too. A failure
// costs the whole map.
void readTriple(LineTokens& tokens, double (&triple)[COMPONENTS]) {
    triple[0] = parseDouble(tokens.next());
    for (int component = 1; component < COMPONENTS; ++component) {
        const Token token = tokens.next();
        if (token.isMissing())
            return;
        triple[component] = parseDouble(token);
    }
}

// -o u [v [w]]
void readOffset(LineTokens& tokens, TextureMap& map) {
    readTriple(tokens, map.offset);
}

// -s u [v [w]]
void readScale(LineTokens& tokens, TextureMap& map) {
    readTriple(tokens, map.scale);
}

// -t u [v [w]]
void readTurbulence(LineTokens& tokens, TextureMap& map) {
    readTriple(tokens, map.turbulence);
}

// on | off; false, with the flag as it was, for anything else. The token is
// taken either way.
bool readFlag(LineTokens& tokens, bool& flag) noexcept {
    const Token token = tokens.next();
    if (token.isMissing())
        return false;
    const bool isOn = equalsIgnoringCase(token.view(), "on");
    if (!isOn && !equalsIgnoringCase(token.view(), "off"))
        return false;
    flag = isOn;
    return true;
}

// -blendu on|off
void readBlendU(LineTokens& tokens, TextureMap& map) {
    if (!readFlag(tokens, map.blendU))
        reportWarning("Invalid value for -blendu. Option skipped.");
}

// -blendv on|off
void readBlendV(LineTokens& tokens, TextureMap& map) {
    if (!readFlag(tokens, map.blendV))
        reportWarning("Invalid value for -blendv. Option skipped.");
}

// -cc on|off
void readColorCorrection(LineTokens& tokens, TextureMap& map) {
    if (!readFlag(tokens, map.colorCorrection))
        reportWarning("Invalid value for -cc. Option skipped.");
}

// -clamp on|off
void readClamp(LineTokens& tokens, TextureMap& map) {
    if (!readFlag(tokens, map.clamp))
        reportWarning("Invalid value for -clamp. Option skipped.");
}

// -mm base gain
//
// Deliberate: the base is stored before the gain is read, and stays when the
// gain fails. After a bad base the gain is not read and is seen as a file name.
void readBaseAndGain(LineTokens& tokens, TextureMap& map) {
    try {
        map.mmBase = parseDouble(tokens.next());
        map.mmGain = parseDouble(tokens.next());
    } catch (const std::exception&) {
        reportWarning("Bad input values for -mm. Option skipped.");
    }
}

// -texres resolution
void readResolution(LineTokens& tokens, TextureMap& map) {
    try {
        map.resolution = parseInt(tokens.next());
    } catch (const std::exception&) {
        reportWarning("Bad input values for -texres. Option skipped.");
    }
}

template <typename Value>
struct NamedValue {
    std::string_view name;
    Value value;
};

constexpr NamedValue<ImfChannel> IMF_CHANNELS[] = {
    {"r", ImfChannel::R}, {"g", ImfChannel::G}, {"b", ImfChannel::B},
    {"m", ImfChannel::M}, {"l", ImfChannel::L}, {"z", ImfChannel::Z},
};

// -imfchan r|g|b|m|l|z
//
// Only the first character counts ("red" is r), and its case does too.
void readImfChannel(LineTokens& tokens, TextureMap& map) {
    const Token token = tokens.next();
    if (!token.isMissing()) {
        for (const auto& [name, value] : IMF_CHANNELS) {
            if (token.view().front() == name.front()) {
                map.imfChannel = value;
                return;
            }
        }
    }
    reportWarning("Invalid value for -imfchan. Option skipped.");
}

constexpr NamedValue<ReflectionType> REFLECTION_TYPES[] = {
    {"sphere", ReflectionType::SPHERE},           {"cube_top", ReflectionType::CUBE_TOP},
    {"cube_bottom", ReflectionType::CUBE_BOTTOM}, {"cube_front", ReflectionType::CUBE_FRONT},
    {"cube_back", ReflectionType::CUBE_BACK},     {"cube_left", ReflectionType::CUBE_LEFT},
    {"cube_right", ReflectionType::CUBE_RIGHT},
};

// -type sphere|cube_...; taken on every kind of map, needed by refl.
void readReflectionType(LineTokens& tokens, TextureMap& map) {
    const Token token = tokens.next();
    if (!token.isMissing()) {
        for (const auto& [name, value] : REFLECTION_TYPES) {
            if (equalsIgnoringCase(token.view(), name)) {
                map.reflectionType = value;
                return;
            }
        }
    }
    reportWarning("Invalid value for reflection map's -type.");
}

using Handler = void (*)(LineTokens& tokens, TextureMap& map);

// In matching order. An option that is not here (-boost, say) is skipped by
// itself; its values are then seen as file names, which does no harm where the
// real one follows.
constexpr KeywordRow<Handler> OPTIONS[] = {
    {"-o", &readOffset},
    {"-s", &readScale},
    {"-t", &readTurbulence},
    {"-blendu", &readBlendU},
    {"-blendv", &readBlendV},
    {"-cc", &readColorCorrection},
    {"-clamp", &readClamp},
    {"-mm", &readBaseAndGain},
    {"-texres", &readResolution},
    {"-imfchan", &readImfChannel},
    {"-type", &readReflectionType},
};

void readOptionsAndFile(LineTokens& tokens, TextureMap& map) {
    for (Token token = tokens.next(); !token.isMissing(); token = tokens.next()) {
        if (!token.view().starts_with('-'))
            map.fileName.assign(token.view());  // the last one holds
        else if (const KeywordRow<Handler>* option = findKeyword(OPTIONS, token.view()))
            option->handler(tokens, map);
    }
    if (map.fileName.empty()) {
        reportError("Map missing file name.");
        throw std::runtime_error("Unable to process texture map options");
    }
}

}  // namespace

void parseTextureMapOptions(LineTokens& tokens, TextureMap& map) {
    try {
        readOptionsAndFile(tokens, map);
    } catch (const std::exception& failure) {
        reportError(std::string("Problem processing map options.") + failureText(failure));
        throw std::runtime_error("Unable to process texture map options");
    }
}

void readMapStatement(MaterialTable& table, LineTokens& tokens, Material::TextureMapName slot) {
    TextureMap map;
    try {
        parseTextureMapOptions(tokens, map);
        if (slot == Material::REFL && map.reflectionType == ReflectionType::NONE)
            reportWarning("Reflection map is missing type. Map skipped.");
        else
            setTextureMap(table.currentMaterial(), slot, std::move(map));
    } catch (...) {
        reportWarning("Error processing texture map. Map will be skipped.");
    }
}

}  // namespace obj_adapter
