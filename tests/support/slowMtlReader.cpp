// Of material/ it uses the exported records alone.
#include "support/slowMtlReader.h"

#include "support/slowTexts.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

MaterialColor parseColorSlowly() {
    MaterialColor color;
    const char* first = nextSlowToken();
    if (first == nullptr)
        throw std::runtime_error("No float value found");
    if (std::strchr("0123456789.", first[0]) != nullptr) {
        color.values[0] = static_cast<float>(parseDoubleSlowly(first));
        color.values[1] = static_cast<float>(parseDoubleSlowly(nextSlowToken()));
        color.values[2] = static_cast<float>(parseDoubleSlowly(nextSlowToken()));
        color.values[3] = 1.0F;
        color.type = ColorType::RGB;
    } else if (equalsSlowly(first, "xyz")) {
        color.values[0] = static_cast<float>(parseDoubleSlowly(nextSlowToken()));
        color.values[1] = color.values[2] = color.values[0];
        if (const char* second = nextSlowToken()) {
            color.values[1] = static_cast<float>(parseDoubleSlowly(second));
            color.values[2] = static_cast<float>(parseDoubleSlowly(nextSlowToken()));
        }
        color.type = ColorType::XYZ;
    } else if (equalsSlowly(first, "spectral")) {
        const char* file = nextSlowToken();
        if (file == nullptr)
            throw std::runtime_error("Invalid color format");
        color.spectralFile = file;
        color.values[0] = 1.0F;
        if (const char* factor = nextSlowToken())
            color.values[0] = static_cast<float>(parseDoubleSlowly(factor));
        color.type = ColorType::SPECTRAL;
    } else {
        throw std::runtime_error("Invalid color format");
    }
    return color;
}

class SlowMtlReader {
public:
    explicit SlowMtlReader(std::vector<Material>& ownMaterials) : materials(ownMaterials) {}

    std::string read(const std::string& text) {
        std::istringstream stream(text);
        try {
            while (!isAtSlowEnd(stream))
                readLine(nextSlowLine(stream));
        } catch (const std::exception& failure) {
            report(1, std::string("Problem with material library: ") + failure.what());
        }
        return messages;
    }

private:
    void report(int level, const std::string& text) {
        messages += std::to_string(level) + "|" + text + "\n";
    }

    Material& current() {
        if (materials.empty())
            throw std::runtime_error("No current material");
        return materials.back();
    }

    void readLine(std::string line) {
        if (line.size() < 2 || line[0] == '#')
            return;
        const char* first = std::strtok(line.data(), SLOW_DELIMITERS);
        if (first == nullptr)
            return;
        const std::string keyword = first;
        if (equalsSlowly(keyword, "newmtl"))
            readNewMaterial();
        else if (!readValue(keyword))
            readMap(keyword);
    }

    void readNewMaterial() {
        try {
            const char* name = nextSlowToken();
            if (name == nullptr) {
                report(1, "Error processing New Material: No name given.");
                throw std::runtime_error("Material name missing");
            }
            Material material;
            material.name = name;
            if (findMaterialSlowly(name, materials) != -1)
                report(2, std::string("Material with the name \"") + name +
                              "\" already exists. The materials will not reliably be "
                              "distinguished.");
            materials.push_back(material);
        } catch (const std::exception& failure) {
            report(1, std::string("Error processing New Material: ") + failure.what());
            throw std::runtime_error("Could not proccess new material");
        }
    }

    // Whether the keyword is that of a value.
    bool readValue(const std::string& keyword) {
        struct Row {
            const char* keyword;
            const char* prefix;
            std::function<void()> read;
        };
        const Row rows[] = {
            {"Ka", "Error processing Ambient color: ",
             [&] { setColor(&Material::ambient, &Material::ambientIsSet); }},
            {"Kd", "Error processing Diffuse color: ",
             [&] { setColor(&Material::diffuse, &Material::diffuseIsSet); }},
            {"Ks", "Error processing Specular color: ",
             [&] { setColor(&Material::specular, &Material::specularIsSet); }},
            {"Tf", "Error processing Transmission Filter: ",
             [&] { setColor(&Material::filter, &Material::filterIsSet); }},
            {"Ns", "Error processing Specular Exponent: ",
             [&] { setDouble(&Material::specularExponent); }},
            {"d", "Error processing Dissolve: ", [&] { setDissolve(); }},
            {"Tr", "Error processing Transparency: ",
             [&] {
                 const double transparency = parseDoubleSlowly(nextSlowToken());
                 current().dissolve = 1.0 - transparency;
             }},
            {"illum",
             "Error processing Illumination Model: ", [&] { setInt(&Material::illumination); }},
            {"sharpness", "Error processing Sharpness: ", [&] { setInt(&Material::sharpness); }},
            {"Ni",
             "Error processing Optical Density: ", [&] { setDouble(&Material::opticalDensity); }},
        };
        for (const Row& row : rows) {
            if (!equalsSlowly(keyword, row.keyword))
                continue;
            try {
                row.read();
            } catch (const std::exception& failure) {
                report(1, std::string(row.prefix) + failure.what());
            }
            return true;
        }
        return false;
    }

    void setColor(MaterialColor Material::*color, bool Material::*isSet) {
        const MaterialColor value = parseColorSlowly();
        current().*color = value;
        current().*isSet = true;
    }

    void setDouble(double Material::*field) {
        const double value = parseDoubleSlowly(nextSlowToken());
        current().*field = value;
    }

    static int nextInt() {
        const char* token = nextSlowToken();
        return parseIntSlowly(token == nullptr ? "" : token);
    }

    void setInt(std::int32_t Material::*field) {
        const int value = nextInt();
        current().*field = value;
    }

    void setDissolve() {
        const char* value = nextSlowToken();
        if (value != nullptr && equalsSlowly(value, "-halo")) {
            current().halo = true;
            value = nextSlowToken();
        }
        const double dissolve = parseDoubleSlowly(value);
        current().dissolve = dissolve;
    }

    void readMap(const std::string& keyword) {
        static const struct {
            const char* keyword;
            int slot;
        } SLOTS[] = {{"map_Ka", 0}, {"map_Kd", 1}, {"map_Ks", 2}, {"map_Ns", 3}, {"map_d", 4},
                     {"disp", 5},   {"decal", 7},  {"bump", 6},   {"refl", 8}};
        for (const auto& row : SLOTS) {
            if (equalsSlowly(keyword, row.keyword))
                return readMapInto(row.slot);
        }
    }

    void readMapInto(int slot) {
        TextureMap map;
        try {
            parseOptions(map);
            if (slot == Material::REFL && map.reflectionType == ReflectionType::NONE) {
                report(2, "Reflection map is missing type. Map skipped.");
                return;
            }
            Material& material = current();
            if (slot == Material::DISP)
                return;
            material.textureMaps[slot].hasTextureMap = true;
            material.textureMaps[slot].textureMap = map;
        } catch (...) {
            report(2, "Error processing texture map. Map will be skipped.");
        }
    }

    void parseOptions(TextureMap& map) {
        try {
            while (const char* token = nextSlowToken()) {
                if (token[0] == '-')
                    parseOption(token, map);
                else
                    map.fileName = token;
            }
            if (map.fileName.empty()) {
                report(1, "Map missing file name.");
                throw std::runtime_error("Unable to process texture map options");
            }
        } catch (const std::exception& failure) {
            report(1, std::string("Problem processing map options.") + failure.what());
            throw std::runtime_error("Unable to process texture map options");
        }
    }

    void parseOption(const std::string& option, TextureMap& map) {
        if (equalsSlowly(option, "-o"))
            parseTriple(map.offset);
        else if (equalsSlowly(option, "-s"))
            parseTriple(map.scale);
        else if (equalsSlowly(option, "-t"))
            parseTriple(map.turbulence);
        else if (equalsSlowly(option, "-blendu"))
            parseFlag(map.blendU, "Invalid value for -blendu. Option skipped.");
        else if (equalsSlowly(option, "-blendv"))
            parseFlag(map.blendV, "Invalid value for -blendv. Option skipped.");
        else if (equalsSlowly(option, "-cc"))
            parseFlag(map.colorCorrection, "Invalid value for -cc. Option skipped.");
        else if (equalsSlowly(option, "-clamp"))
            parseFlag(map.clamp, "Invalid value for -clamp. Option skipped.");
        else if (equalsSlowly(option, "-mm"))
            parseBaseAndGain(map);
        else if (equalsSlowly(option, "-texres"))
            parseResolution(map);
        else if (equalsSlowly(option, "-imfchan"))
            parseChannel(map);
        else if (equalsSlowly(option, "-type"))
            parseType(map);
    }

    static void parseTriple(double (&triple)[3]) {
        triple[0] = parseDoubleSlowly(nextSlowToken());
        if (const char* second = nextSlowToken()) {
            triple[1] = parseDoubleSlowly(second);
            if (const char* third = nextSlowToken())
                triple[2] = parseDoubleSlowly(third);
        }
    }

    void parseFlag(bool& flag, const char* warning) {
        const char* value = nextSlowToken();
        if (value != nullptr && equalsSlowly(value, "on"))
            flag = true;
        else if (value != nullptr && equalsSlowly(value, "off"))
            flag = false;
        else
            report(2, warning);
    }

    void parseBaseAndGain(TextureMap& map) {
        try {
            map.mmBase = parseDoubleSlowly(nextSlowToken());
            map.mmGain = parseDoubleSlowly(nextSlowToken());
        } catch (const std::exception&) {
            report(2, "Bad input values for -mm. Option skipped.");
        }
    }

    void parseResolution(TextureMap& map) {
        try {
            map.resolution = nextInt();
        } catch (const std::exception&) {
            report(2, "Bad input values for -texres. Option skipped.");
        }
    }

    void parseChannel(TextureMap& map) {
        const char* value = nextSlowToken();
        const std::size_t place =
            value == nullptr ? std::string::npos : std::string("rgbmlz").find(value[0]);
        if (place == std::string::npos)
            report(2, "Invalid value for -imfchan. Option skipped.");
        else
            map.imfChannel = static_cast<ImfChannel>(place + 1);
    }

    void parseType(TextureMap& map) {
        static const char* const TYPES[] = {"sphere",    "cube_top",  "cube_bottom", "cube_front",
                                            "cube_back", "cube_left", "cube_right"};
        const char* value = nextSlowToken();
        int number = 1;
        for (const char* type : TYPES) {
            if (value != nullptr && equalsSlowly(value, type)) {
                map.reflectionType = static_cast<ReflectionType>(number);
                return;
            }
            ++number;
        }
        report(2, "Invalid value for reflection map's -type.");
    }

    std::vector<Material>& materials;
    std::string messages;
};

}  // namespace

std::string readMtlSlowly(const std::string& text, std::vector<Material>& materials) {
    return SlowMtlReader(materials).read(text);
}

int findMaterialSlowly(const std::string& name, const std::vector<Material>& materials) {
    for (std::size_t position = 0; position < materials.size(); ++position) {
        if (materials[position].name == name)
            return static_cast<int>(position);
    }
    return -1;
}

}  // namespace obj_adapter::test
