// Materials, as the MTL libraries of the file define them.
//
// Hosts read the records through ObjConverter::getMaterial and compile their
// layout in: fields, order and widths below are part of the interface. Each
// field names the statement or option that sets it and the value it has when
// none does.
#pragma once

#include <obj_adapter/export.h>

#include <cstdint>
#include <string>
#include <utility>

namespace obj_adapter {

// How a colour was given.
enum class ColorType : std::int32_t {
    NONE = 0,      // not given
    RGB = 1,       // Kd r g b
    XYZ = 2,       // Kd xyz x [y z]
    SPECTRAL = 3,  // Kd spectral file.rfl [factor]
};

// The channel of an image that a scalar map is made from: -imfchan.
enum class ImfChannel : std::int32_t {
    NONE = 0,
    R = 1,  // red
    G = 2,  // green
    B = 3,  // blue
    M = 4,  // matte
    L = 5,  // luminance
    Z = 6,  // depth
};

// The shape of a reflection map: -type.
enum class ReflectionType : std::int32_t {
    NONE = 0,
    SPHERE = 1,
    CUBE_TOP = 2,
    CUBE_BOTTOM = 3,
    CUBE_FRONT = 4,
    CUBE_BACK = 5,
    CUBE_LEFT = 6,
    CUBE_RIGHT = 7,
};

// One colour of a material: Ka, Kd, Ks or Tf.
struct MaterialColor {
    // RGB: red, green, blue, 1. XYZ: x, y, z, and a fourth that is not touched.
    // SPECTRAL: the factor comes first, the rest is not touched.
    float values[4] = {-1.0F, -1.0F, -1.0F, -1.0F};
    std::string spectralFile;  // SPECTRAL only: the curve's file name
    ColorType type = ColorType::NONE;

    // The four values, for a host that wants RGB. The array is the colour's own
    // and lives as long as the colour.
    //
    // An XYZ colour is first converted in place, for good, by the D65 matrix
    // and the gamma curve of sRGB: it is brought to chromaticity, so that its
    // luminance is lost; there is no linear segment for small values and no
    // clamping. A channel that comes out negative is NaN. The fourth value
    // stays as it was. Other kinds are returned as they are.
    OBJ_ADAPTER_API float* toColorArray();

    // Stores a colour of one kind and sets the type. What the kind does not
    // use is left as it was.
    void setRgb(float red, float green, float blue) noexcept {
        values[0] = red;
        values[1] = green;
        values[2] = blue;
        values[3] = 1.0F;
        type = ColorType::RGB;
    }
    void setXyz(float x, float y, float z) noexcept {
        values[0] = x;
        values[1] = y;
        values[2] = z;
        type = ColorType::XYZ;
    }
    void setSpectral(const std::string& fileName, float factor) {
        spectralFile = fileName;
        values[0] = factor;
        type = ColorType::SPECTRAL;
    }
};

// One texture map statement with its options.
struct TextureMap {
    std::string fileName;          // the last token that is no option; no blanks possible
    bool blendU = true;            // -blendu on|off
    bool blendV = true;            // -blendv on|off
    bool colorCorrection = false;  // -cc on|off
    bool clamp = false;            // -clamp on|off
    double mmBase = 0.0;           // -mm base gain
    double mmGain = 1.0;
    double offset[3] = {0.0, 0.0, 0.0};      // -o u [v [w]]
    double scale[3] = {1.0, 1.0, 1.0};       // -s u [v [w]]
    double turbulence[3] = {0.0, 0.0, 0.0};  // -t u [v [w]]
    std::int32_t resolution = -1;            // -texres n; -1: not given
    double boost = -1.0;                     // no option sets it; -1: not given
    unsigned char reserved[8];               // never read or written, but copied
    ImfChannel imfChannel = ImfChannel::NONE;              // -imfchan r|g|b|m|l|z
    ReflectionType reflectionType = ReflectionType::NONE;  // -type sphere|cube_...

    // Leaves the reserved bytes unset on purpose.
    TextureMap() {}  // NOLINT(modernize-use-equals-default)

    // The options that differ from their defaults, then the file name, as MTL
    // text: " -clamp on wood.png". Begins with a blank.
    OBJ_ADAPTER_API std::string textureMapString() const;
};

// One of a material's map slots: whether a statement filled it, and its map.
struct TextureMapSlot {
    bool hasTextureMap = false;
    TextureMap textureMap;
};

// A material: one newmtl statement and the statements after it.
struct Material {
    // The map slots; the value is the position in textureMaps.
    enum TextureMapName : std::int32_t {
        MAP_KA = 0,
        MAP_KD = 1,
        MAP_KS = 2,
        MAP_NS = 3,
        MAP_D = 4,
        DISP = 5,
        BUMP = 6,
        DECAL = 7,
        REFL = 8,
    };
    static constexpr int NUMBER_OF_TEXTURE_MAPS = 9;

    bool ambientIsSet = false;  // Ka
    MaterialColor ambient;
    bool diffuseIsSet = false;  // Kd
    MaterialColor diffuse;
    bool specularIsSet = false;  // Ks
    MaterialColor specular;
    bool filterIsSet = false;  // Tf
    MaterialColor filter;
    TextureMapSlot textureMaps[NUMBER_OF_TEXTURE_MAPS];  // map_Ka ... refl
    std::string name;                                    // newmtl
    double specularExponent = -1.0;                      // Ns; -1: not given
    double dissolve = 1.0;                               // d, or 1 - Tr
    std::int32_t illumination = -1;                      // illum; -1: not given
    std::int32_t sharpness = 60;                         // sharpness
    double opticalDensity = 1.0;                         // Ni
    bool halo = false;                                   // d -halo
    bool antiAliasTextures = false;                      // no statement sets it

    // The colours, for reading and writing, whether or not they were given.
    MaterialColor& getAmbient() noexcept { return ambient; }
    MaterialColor& getDiffuse() noexcept { return diffuse; }
    MaterialColor& getSpecular() noexcept { return specular; }
    MaterialColor& getFilter() noexcept { return filter; }

    // Whether the file gave the colour.
    bool hasAmbient() const noexcept { return ambientIsSet; }
    bool hasDiffuse() const noexcept { return diffuseIsSet; }
    bool hasSpecular() const noexcept { return specularIsSet; }
    bool hasFilter() const noexcept { return filterIsSet; }

    // The map in a slot, for reading and writing, whether or not it was given.
    //
    // Throws std::runtime_error "Invalid map type" for DISP and for any value
    // outside the enumeration: displacement maps are read and checked but never
    // kept. It is the only function of this interface that throws on purpose.
    OBJ_ADAPTER_API TextureMap& getTextureMap(TextureMapName slot);

    // Whether the file gave the map. Always false for DISP and for any value
    // outside the enumeration.
    OBJ_ADAPTER_API bool hasTextureMap(TextureMapName slot) const;

    // Stores the colour and marks it as given.
    void setAmbient(MaterialColor color) noexcept {
        ambient = std::move(color);
        ambientIsSet = true;
    }
    void setDiffuse(MaterialColor color) noexcept {
        diffuse = std::move(color);
        diffuseIsSet = true;
    }
    void setSpecular(MaterialColor color) noexcept {
        specular = std::move(color);
        specularIsSet = true;
    }
    void setFilter(MaterialColor color) noexcept {
        filter = std::move(color);
        filterIsSet = true;
    }
};

}  // namespace obj_adapter
