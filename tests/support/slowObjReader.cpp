// Shares no code with the library's reading.
#include "support/slowObjReader.h"

#include "model/objModel.h"
#include "support/slowMtlReader.h"
#include "support/slowTexts.h"
#include "support/slowTriangulation.h"

#include <cstddef>
#include <cstring>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

int resolveSlowly(const std::string& text, std::size_t count) {
    const int value = parseIntSlowly(text);
    const int index = value < 0 ? value + static_cast<int>(count) : value - 1;
    if (index < 0)
        throw std::runtime_error("Index too low.");
    return index;
}

class SlowReader {
public:
    SlowReader(ObjModel& ownModel, SlowMaterials& ownMaterials)
        : model(ownModel), materials(ownMaterials) {}

    std::string read(const std::string& text, const std::string& fileName) {
        model.name = fileName.size() < 4 ? fileName : fileName.substr(0, fileName.size() - 4);
        addGroup({model.name});
        std::istringstream stream(text);
        while (!isAtSlowEnd(stream))
            readLine(nextSlowLine(stream));
        for (const auto& [keyword, times] : unrecognized)
            report(2, "Unrecognized statement: \"" + keyword.substr(0, 100) + "\" was seen " +
                          std::to_string(times) + " times.");
        for (const auto& [name, references] : missing)
            report(1, "Could not find material \"" + name.substr(0, 100) + "\" But saw " +
                          std::to_string(references) + " references.");
        repairIndices();
        removeEmptyGroups();
        return messages;
    }

private:
    void report(int level, const std::string& text) {
        messages += std::to_string(level) + "|" + text + "\n";
    }

    void readLine(std::string line) {
        if (line.size() < 2 || line[0] == '#')
            return;
        const char* first = std::strtok(line.data(), SLOW_DELIMITERS);
        if (first == nullptr)
            return;
        const std::string keyword = first;
        if (equalsSlowly(keyword, "v"))
            readVertex();
        else if (equalsSlowly(keyword, "vt"))
            readTexturePoint();
        else if (equalsSlowly(keyword, "vn"))
            readNormal();
        else if (equalsSlowly(keyword, "f"))
            readFace();
        else if (equalsSlowly(keyword, "g") || equalsSlowly(keyword, "o"))
            readGroup();
        else if (equalsSlowly(keyword, "mtllib"))
            readLibrary();
        else if (equalsSlowly(keyword, "usemtl"))
            readUse();
        else
            ++unrecognized[keyword];
    }

    void readVertex() {
        Vertex vertex;
        try {
            vertex.x = parseDoubleSlowly(nextSlowToken());
            vertex.y = parseDoubleSlowly(nextSlowToken());
            vertex.z = parseDoubleSlowly(nextSlowToken());
            if (const char* weight = nextSlowToken())
                vertex.w = parseDoubleSlowly(weight);
        } catch (const std::exception& failure) {
            report(1, std::string("Error processing vertex: ") + failure.what() +
                          "\nVertex will be replaced by (0,0,0).");
            vertex = Vertex(0, 0, 0);
        }
        vertex.index = static_cast<int>(model.vertices.size());
        model.vertices.push_back(vertex);
    }

    void readTexturePoint() {
        TexturePoint point;
        try {
            point.u = parseDoubleSlowly(nextSlowToken());
            point.v = parseDoubleSlowly(nextSlowToken());
            if (const char* third = nextSlowToken())
                point.w = parseDoubleSlowly(third);
        } catch (const std::exception& failure) {
            report(1, std::string("Error processing vertex texture: ") + failure.what() +
                          "\nVertex Texture will be replaced by (0,0).");
            point.u = point.v = point.w = 0.0;
        }
        point.index = static_cast<int>(model.texturePoints.size());
        model.texturePoints.push_back(point);
    }

    void readNormal() {
        NormalPoint normal;
        try {
            normal.x = parseDoubleSlowly(nextSlowToken());
            normal.y = parseDoubleSlowly(nextSlowToken());
            normal.z = parseDoubleSlowly(nextSlowToken());
        } catch (const std::exception& failure) {
            report(1, std::string("Error processing vertex normal: ") + failure.what() +
                          "\nVertex Normal will be replaced by (0,0,0).");
            normal.x = normal.y = normal.z = 0.0;
        }
        normal.index = static_cast<int>(model.normalPoints.size());
        model.normalPoints.push_back(normal);
    }

    FaceElement parseCorner(const std::string& token) const {
        FaceElement corner;
        const std::size_t p = token.find('/');
        corner.vertexIndex = resolveSlowly(token.substr(0, p), model.vertices.size());
        if (p == std::string::npos)
            return corner;
        const std::size_t q = token.find('/', p + 1);
        if (q == std::string::npos) {
            corner.textureIndex = resolveSlowly(token.substr(p + 1), model.texturePoints.size());
        } else {
            if (q != p + 1)
                corner.textureIndex =
                    resolveSlowly(token.substr(p + 1, q - p - 1), model.texturePoints.size());
            corner.normalIndex = resolveSlowly(token.substr(q + 1), model.normalPoints.size());
        }
        return corner;
    }

    void readFace() {
        std::vector<FaceElement> corners;
        try {
            while (const char* token = nextSlowToken())
                corners.push_back(parseCorner(token));
        } catch (const std::exception& failure) {
            report(1, std::string("Could not process face. ") + failure.what() + " Skipping face.");
            return;
        }
        if (corners.size() < 3) {
            report(1, "Face does not have enough vertices. Skipping face.");
        } else if (corners.size() == 3) {
            Face face;
            for (const FaceElement& corner : corners)
                face.addElement(corner);
            addFace(face);
        } else {
            readPolygon(corners);
        }
    }

    void readPolygon(std::vector<FaceElement>& corners) {
        if (!slow::isTriangulable(model, corners)) {
            report(1, "Polygonal face has elements that cannot be processed. It will be skipped.");
            return;
        }
        std::vector<Face> triangles;
        try {
            slow::triangulate(model, corners, triangles);
        } catch (const std::exception&) {
            report(1, "Could not split non-triangular face. Skipping face.");
            return;
        }
        for (const Face& triangle : triangles)
            addFace(triangle);
    }

    void addFace(Face face) {
        face.materialIndex = currentMaterial;
        face.groupIndex = static_cast<int>(model.groups.size()) - 1;
        model.groups.back().faceIndices.push_back(static_cast<int>(model.faces.size()));
        model.faces.push_back(face);
    }

    void addGroup(const std::vector<std::string>& names) {
        Group group;
        group.name = names.size() == 1 ? names[0] : "COMPOUND_GROUP";
        if (names.size() > 1)
            group.names = names;
        model.groups.push_back(group);
    }

    void readGroup() {
        std::vector<std::string> names;
        while (const char* token = nextSlowToken())
            names.push_back(token);
        if (names.empty())
            names = {"default"};
        addGroup(names);
    }

    void readLibrary() {
        const char* token = nextSlowToken();
        if (token == nullptr) {
            report(1, "No name given for material library. Materials will not be loaded.");
            return;
        }
        const std::string name = token;
        const auto library = materials.libraries.find(name);
        if (library == materials.libraries.end()) {
            report(1, "Could not find material library " + name.substr(0, 100));
            return;
        }
        report(3, "Using Mtllib file: " + name);
        messages += readMtlSlowly(library->second, materials.materials);
    }

    void readUse() {
        currentMaterial = -1;
        const char* name = nextSlowToken();
        if (name == nullptr) {
            report(1, "usemtl with no material name. No material will be assigned.");
            return;
        }
        currentMaterial = findMaterialSlowly(name, materials.materials);
        if (currentMaterial == -1)
            ++missing[name];
    }

    // The corner's index by the rule; whether it was changed.
    static bool clamp(int& index, std::size_t count, bool mayBeNone) {
        const int before = index;
        const int last = static_cast<int>(count) - 1;
        if (index < (mayBeNone ? -1 : 0))
            index = 0;
        else if (index > last)
            index = last;
        return index != before;
    }

    void repairIndices() {
        int changed = 0;
        for (Face& face : model.faces) {
            bool isChanged = false;
            for (FaceElement& corner : face.elements) {
                isChanged |= clamp(corner.vertexIndex, model.vertices.size(), false);
                isChanged |= clamp(corner.textureIndex, model.texturePoints.size(), true);
                isChanged |= clamp(corner.normalIndex, model.normalPoints.size(), true);
            }
            changed += isChanged ? 1 : 0;
        }
        if (changed > 0)
            report(2,
                   "Number of faces where vertex, texture, or normal indices had to be changed due "
                   "to being out of range: " +
                       std::to_string(changed));
    }

    void removeEmptyGroups() {
        if (model.groups.size() == 1)
            return;
        GroupTable kept;
        std::map<int, int> newIndices;
        for (std::size_t group = 0; group < model.groups.size(); ++group) {
            if (model.groups[group].faceIndices.empty())
                continue;
            newIndices[static_cast<int>(group)] = static_cast<int>(kept.size());
            kept.push_back(model.groups[group]);
        }
        for (Face& face : model.faces)
            face.groupIndex = newIndices.at(face.groupIndex);
        model.groups = kept;
    }

    ObjModel& model;
    SlowMaterials& materials;
    int currentMaterial = -1;
    std::string messages;
    std::map<std::string, int> unrecognized;
    std::map<std::string, int> missing;
};

}  // namespace

std::string readObjSlowly(const std::string& text, const std::string& fileName, ObjModel& model,
                          SlowMaterials& materials) {
    return SlowReader(model, materials).read(text, fileName);
}

std::string readObjSlowly(const std::string& text, const std::string& fileName, ObjModel& model) {
    SlowMaterials none;
    return readObjSlowly(text, fileName, model, none);
}

}  // namespace obj_adapter::test
