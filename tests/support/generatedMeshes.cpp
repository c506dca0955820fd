#include "support/generatedMeshes.h"

#include "model/objModel.h"
#include "support/modelChecker.h"
#include "support/modelView.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

// The same with some triangles taken away at random.
Mesh withHoles(Mesh mesh, RandomSource& random) {
    std::vector<std::array<int, 3>> left;
    for (const auto& triangle : mesh.triangles) {
        if (!random.oneIn(5))
            left.push_back(triangle);
    }
    mesh.triangles = left;
    return mesh;
}

// Two fans that touch in point 0 only.
Mesh bowTie(int triangles) {
    Mesh mesh = fan(triangles, false);
    const int offset = static_cast<int>(mesh.points.size()) - 1;
    const Mesh other = fan(triangles, true);
    for (std::size_t point = 1; point < other.points.size(); ++point)
        mesh.addPoint(other.points[point][0], other.points[point][1], 2);
    for (const auto& [a, b, c] : other.triangles)
        mesh.triangles.push_back({a, b + offset, c + offset});
    return mesh;
}

}  // namespace

int addTexturePoint(ObjModel& model, double u, double v, double w) {
    TexturePoint point;
    point.u = u;
    point.v = v;
    point.w = w;
    return model.addTexturePoint(point);
}

void decorateFaces(ObjModel& model, RandomSource& random) {
    const int groupCount = random.between(1, 4);
    model.groups.clear();
    for (int group = 0; group < groupCount; ++group)
        model.groups.emplace_back().name = "g" + std::to_string(group);
    const int textureCount = random.below(6);
    for (int point = 0; point < textureCount; ++point)
        addTexturePoint(model, random.fraction(), random.fraction(), random.below(2));
    NormalPoint normal;
    normal.x = normal.y = normal.z = 1;
    model.addNormalPoint(normal);
    for (std::size_t face = 0; face < model.faces.size(); ++face) {
        Face& record = model.faces[face];
        record.groupIndex = random.below(groupCount);
        record.materialIndex = random.between(NO_INDEX, 2);
        model.groups[static_cast<std::size_t>(record.groupIndex)].faceIndices.push_back(
            static_cast<int>(face));
        const bool isPartly = random.oneIn(4);
        for (FaceElement& corner : record.elements) {
            if (textureCount > 0 && !(isPartly && random.oneIn(2)))
                corner.textureIndex = random.below(textureCount);
            if (random.oneIn(3))
                corner.normalIndex = 0;
        }
        if (random.oneIn(2))
            record.refreshSortedKey();
    }
}

Mesh randomTriangles(RandomSource& random) {
    Mesh mesh;
    const int pointCount = random.between(3, 14);
    for (int point = 0; point < pointCount; ++point)
        mesh.addPoint(random.fraction(), random.between(-3, 3), random.fraction() - 0.5);
    const int triangleCount = random.between(1, 40);
    for (int triangle = 0; triangle < triangleCount; ++triangle) {
        const int a = random.below(pointCount);
        const int b = (a + random.between(1, pointCount - 1)) % pointCount;
        const int c = random.below(pointCount);
        if (c != a && c != b)
            mesh.triangles.push_back({a, b, c});
    }
    return mesh;
}

Mesh randomMesh(RandomSource& random) {
    switch (random.below(9)) {
        case 0:
            return roughGrid(random.between(1, 6), random.between(1, 6), random);
        case 1:
            return roughTorus(random.between(3, 7), random.between(3, 7), random);
        case 2:
            return withHoles(roughTorus(6, 5, random), random);
        case 3:
            return withHoles(roughGrid(6, 6, random), random);
        case 4:
            return fan(random.between(3, 80), random.oneIn(2));
        case 5:
            return bowTie(random.between(3, 6));
        case 6:
            return icosahedron();
        default:
            return randomTriangles(random);
    }
}

std::string findViolationsAfter(ObjModel& model) {
    std::vector<Material> materials(3);
    ModelView view = viewOfModel(model);
    view.materials = materials;
    return findViolations(view, ModelState::SUBDIVIDED);
}

}  // namespace obj_adapter::test
