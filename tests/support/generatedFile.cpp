#include "support/generatedFile.h"

#include "support/randomSource.h"

#include <cstdio>
#include <iterator>

namespace obj_adapter::test {

namespace {

template <std::size_t SIZE>
std::string anyOf(RandomSource& random, const char* const (&texts)[SIZE]) {
    return texts[random.below(static_cast<int>(SIZE))];
}

const char* const ODD_NUMBERS[] = {
    "0",     "-0",    "1e-320",  "4.9e-324",
    "1e308", "1e309", "-1e400",  "nan",
    "inf",   "-inf",  "0x1.8p3", "1.7976931348623157e308",
    ".5",    "5.",    "1e",      "abc",
    "12abc", "+3",    "0.1",     "0.30000000000000004",
    "1/3",   "1e-5x",
};

// Most lie on a small grid, so that vertices coincide and polygons are flat.
std::string number(RandomSource& random) {
    if (random.oneIn(40))
        return anyOf(random, ODD_NUMBERS);
    if (random.oneIn(3)) {
        char text[64];
        std::snprintf(text, sizeof text, "%.17g", 200.0 * random.fraction() - 100.0);
        return text;
    }
    return std::to_string(random.between(-3, 3));
}

std::string numbers(RandomSource& random, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " " + number(random);
    return text;
}

// One-based, from the end, or now and then beside the table.
std::string index(RandomSource& random, int count) {
    if (random.oneIn(60))
        return std::to_string(random.between(-count - 3, count + 3));
    if (count > 0 && random.oneIn(4))
        return std::to_string(-random.between(1, count));
    return std::to_string(random.between(1, count > 0 ? count : 1));
}

struct Counts {
    int vertices = 0;
    int texturePoints = 0;
    int normals = 0;
};

std::string faceStatement(RandomSource& random, const Counts& counts) {
    std::string text = "f";
    const int corners = random.oneIn(3) ? random.between(4, 9) : 3;
    const int form = random.below(4);
    for (int corner = 0; corner < corners; ++corner) {
        text += " " + index(random, counts.vertices);
        if (form == 1 || form == 2)
            text += "/" + index(random, counts.texturePoints);
        if (form == 2)
            text += "/" + index(random, counts.normals);
        if (form == 3)
            text += "//" + index(random, counts.normals);
    }
    return text;
}

std::string statement(RandomSource& random, Counts& counts) {
    const char* const GROUPS[] = {"g a", "g a b", "g a b c", "o part", "g b", "g ", "G arm left"};
    const char* const MATERIALS[] = {"usemtl m0", "usemtl m1", "usemtl m2", "usemtl none"};
    const char* const OTHERS[] = {
        "s 1", "# comment", "", "curv 1 2", "x", "mtllib none.mtl", "v 1 \\\n2 3", "mtllib"};
    const int kind = random.below(100);
    if (kind < 40)
        return ++counts.vertices, "v" + numbers(random, random.oneIn(10) ? 4 : 3);
    if (kind < 50)
        return ++counts.texturePoints, "vt" + numbers(random, random.between(2, 3));
    if (kind < 58)
        return ++counts.normals, "vn" + numbers(random, 3);
    if (kind < 84)
        return faceStatement(random, counts);
    if (kind < 90)
        return anyOf(random, GROUPS);
    if (kind < 94)
        return anyOf(random, MATERIALS);
    return anyOf(random, OTHERS);
}

std::string library(RandomSource& random) {
    const char* const COLORS[] = {"Ka", "Kd", "Ks", "Tf"};
    const char* const VALUES[] = {"Ns", "d", "d -halo", "illum", "sharpness", "Ni"};
    const char* const MAPS[] = {"map_Ka", "map_Kd", "map_Ks", "map_Ns", "map_d",
                                "bump",   "disp",   "decal",  "refl"};
    const char* const OPTIONS[] = {" -blendu off", " -clamp on", " -mm 0.1 2",  " -o 1 2 3",
                                   " -s 2",        " -t 1 1",    " -texres 64", " -type sphere",
                                   " -imfchan l",  " -bm 0.5",   " -cc maybe",  " -boost 2"};
    std::string text;
    for (int material = 0; material < 3; ++material) {
        text += "newmtl m" + std::to_string(material) + "\n";
        for (int line = 0; line < 8; ++line) {
            text += anyOf(random, COLORS) + (random.oneIn(4) ? " xyz" : "") + numbers(random, 3);
            text += "\n" + anyOf(random, VALUES) + " " + number(random) + "\n";
            text += anyOf(random, MAPS);
            while (random.oneIn(2))
                text += anyOf(random, OPTIONS);
            text += " map.png\n";
        }
    }
    return text;
}

}  // namespace

GeneratedFile generateFile(unsigned seed) {
    RandomSource random(seed);
    GeneratedFile file;
    file.mtlText = library(random);
    file.objText = "mtllib generated.mtl\n";
    Counts counts;
    // Something for the first faces to name.
    for (; counts.vertices < 4; ++counts.vertices)
        file.objText += "v" + numbers(random, 3) + "\n";
    const int length = random.between(5, 150);
    for (int line = 0; line < length; ++line)
        file.objText += statement(random, counts) + "\n";
    return file;
}

}  // namespace obj_adapter::test
