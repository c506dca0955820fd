// Reads a library from a text, and prints materials compactly: what differs
// from the defaults, and nothing else.
#pragma once

#include "material/materialTable.h"
#include "material/mtlReader.h"
#include "support/describe.h"
#include "support/messageRecorder.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter::test {

// "rgb 1 0.5 0 1", "xyz 1 2 3 -1", "spectral a.rfl 1 -1 -1 -1", "none -1 -1 -1 -1"
inline std::string describeColor(const MaterialColor& color) {
    static constexpr const char* KINDS[] = {"none", "rgb", "xyz", "spectral"};
    std::string text = KINDS[static_cast<int>(color.type)];
    if (!color.spectralFile.empty())
        text += " " + color.spectralFile;
    for (const float value : color.values)
        text += " " + describeNumber(static_cast<double>(value));
    return text;
}

// "wood.png clamp=1 s=2,2,2": flags as 0 and 1, enumerations by their numbers.
inline std::string describeMap(const TextureMap& map) {
    std::string text = map.fileName;
    const auto appendIf = [&](bool isChanged, const char* name, double value) {
        if (isChanged)
            text += std::string(" ") + name + "=" + describeNumber(value);
    };
    const auto appendTriple = [&](const char* name, const double(&triple)[3], double defaultValue) {
        if (triple[0] == defaultValue && triple[1] == defaultValue && triple[2] == defaultValue)
            return;
        text += std::string(" ") + name + "=" + describeNumber(triple[0]) + "," +
                describeNumber(triple[1]) + "," + describeNumber(triple[2]);
    };
    appendIf(!map.blendU, "blendu", 0);
    appendIf(!map.blendV, "blendv", 0);
    appendIf(map.colorCorrection, "cc", 1);
    appendIf(map.clamp, "clamp", 1);
    appendIf(map.mmBase != 0.0, "base", map.mmBase);
    appendIf(map.mmGain != 1.0, "gain", map.mmGain);
    appendTriple("o", map.offset, 0.0);
    appendTriple("s", map.scale, 1.0);
    appendTriple("t", map.turbulence, 0.0);
    appendIf(map.resolution != -1, "texres", map.resolution);
    appendIf(map.boost != -1.0, "boost", map.boost);
    appendIf(map.imfChannel != ImfChannel::NONE, "imfchan", static_cast<int>(map.imfChannel));
    appendIf(map.reflectionType != ReflectionType::NONE, "type",
             static_cast<int>(map.reflectionType));
    return text;
}

// "red{Kd(rgb 1 0 0 1) Ns=10 map_Kd(wood.png)}"
inline std::string describeMaterial(const Material& material) {
    static constexpr const char* SLOTS[] = {"map_Ka", "map_Kd", "map_Ks", "map_Ns", "map_d",
                                            "disp",   "bump",   "decal",  "refl"};
    std::string text;
    const auto append = [&](bool isSet, const char* name, const std::string& value) {
        if (!text.empty())
            text += " ";
        if (!isSet)
            text += "unset ";
        text += name;
        text += value;
    };
    const auto appendColor = [&](const char* name, bool isSet, const MaterialColor& color) {
        if (isSet || describeColor(color) != describeColor(MaterialColor()))
            append(isSet, name, "(" + describeColor(color) + ")");
    };
    const auto appendIf = [&](bool isChanged, const char* name, double value) {
        if (isChanged)
            append(true, name, "=" + describeNumber(value));
    };
    appendColor("Ka", material.ambientIsSet, material.ambient);
    appendColor("Kd", material.diffuseIsSet, material.diffuse);
    appendColor("Ks", material.specularIsSet, material.specular);
    appendColor("Tf", material.filterIsSet, material.filter);
    for (int slot = 0; slot < Material::NUMBER_OF_TEXTURE_MAPS; ++slot) {
        const std::string map = describeMap(material.textureMaps[slot].textureMap);
        const bool isSet = material.textureMaps[slot].hasTextureMap;
        if (isSet || !map.empty())
            append(isSet, SLOTS[slot], "(" + map + ")");
    }
    appendIf(material.specularExponent != -1.0, "Ns", material.specularExponent);
    appendIf(material.dissolve != 1.0, "d", material.dissolve);
    appendIf(material.illumination != -1, "illum", material.illumination);
    appendIf(material.sharpness != 60, "sharpness", material.sharpness);
    appendIf(material.opticalDensity != 1.0, "Ni", material.opticalDensity);
    appendIf(material.halo, "halo", 1);
    appendIf(material.antiAliasTextures, "aat", 1);
    return material.name + "{" + text + "}";
}

// "red{...} blue{...}"
inline std::string describeMaterials(const MaterialTable& table) {
    std::string text;
    for (const Material& material : table.getMaterials())
        text += (text.empty() ? "" : " ") + describeMaterial(material);
    return text;
}

// Every bit of every field.
inline std::string printMaterials(std::span<const Material> materials) {
    std::vector<Material> copies(materials.begin(), materials.end());
    ModelView view;
    view.materials = copies;
    return printModel(view);
}

// Reads the text as a library of a directory of its own into the table. Returns
// the messages, "level|text" with a line feed after each, without the first,
// which must be the one that says where the library was found.
inline std::string readMtlText(std::string_view mtlText, MaterialTable& table) {
    const TemporaryDirectory directory;
    const std::string name = "readMtlText.mtl";
    const std::string path = directory.write(name, std::string(mtlText));
    MessageRecorder recorder;
    readMtlFile(directory.getPath(), name, table);
    const std::string found = "3|Using Mtllib file: " + path + "\n";
    const std::string messages = recorder.getText();
    if (messages.compare(0, found.size(), found) != 0)
        ADD_FAILURE() << "not said where the library is: " << messages;
    return messages.substr(std::min(found.size(), messages.size()));
}

// One row of a table of texts in, description and messages out.
struct MtlCase {
    const char* title;
    std::string_view mtlText;  // may hold NUL bytes
    const char* materials;     // describeMaterials() form
    const char* messages;      // readMtlText() form; "" = silence
};

template <std::size_t ROWS>
void checkMtlCases(const MtlCase (&rows)[ROWS]) {
    for (const MtlCase& row : rows) {
        SCOPED_TRACE(std::string(row.title) + "\n" + std::string(row.mtlText));
        MaterialTable table;
        EXPECT_EQ(readMtlText(row.mtlText, table), row.messages);
        EXPECT_EQ(describeMaterials(table), row.materials);
    }
}

}  // namespace obj_adapter::test
