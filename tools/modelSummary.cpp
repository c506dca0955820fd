// Prints what is in an imported model. Covered by tests/tools.
#include "modelSummary.h"

#include "terminalText.h"

#include <obj_adapter/obj_adapter.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <ostream>

namespace obj_adapter::tool {

namespace {

// How much of a long list is shown unless all is wanted.
constexpr std::size_t MAX_LISTED_GROUPS = 40;
constexpr std::size_t MAX_LISTED_NODES = 40;
constexpr std::size_t MAX_LISTED_MATERIALS = 20;

constexpr int COUNT_WIDTH = 9;
constexpr int COORDINATE_WIDTH = 14;
constexpr int MILLISECONDS_WIDTH = 12;
constexpr int KEYWORD_WIDTH = 10;
constexpr int NAME_WIDTH = 21;

struct MapSlot {
    Material::TextureMapName slot;
    const char* keyword;
};

// The slots that can hold a map, in their order.
constexpr MapSlot MAP_SLOTS[] = {
    {Material::MAP_KA, "map_Ka"}, {Material::MAP_KD, "map_Kd"}, {Material::MAP_KS, "map_Ks"},
    {Material::MAP_NS, "map_Ns"}, {Material::MAP_D, "map_d"},   {Material::BUMP, "bump"},
    {Material::DECAL, "decal"},   {Material::REFL, "refl"},
};

// The extent in one coordinate. Comparisons with a NaN are false, so that one
// changes nothing.
struct Extent {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    void include(double value) {
        if (value < low)
            low = value;
        if (value > high)
            high = value;
    }
};

class SummaryPrinter {
public:
    SummaryPrinter(std::ostream& output, ObjConverter& model, const SummaryOptions& settings)
        : out(output), converter(model), options(settings) {}

    void print(const ImportRun& importRun) {
        if (!importRun.succeeded)
            out << "The import gave up; this is what it read before that.\n\n";
        printCounts();
        printBoundingBox();
        // The order matters: making the tree renames groups of one name in the
        // model, so the list comes first and has the names of the file.
        printGroups();
        printTree();
        printMaterials();
        printTimes(importRun.stages);
    }

private:
    void printCounts() {
        const auto line = [this](const char* what, int count) {
            out << "  " << textColumn(what, NAME_WIDTH)
                << numberColumn(static_cast<std::size_t>(count), COUNT_WIDTH) << "\n";
        };
        out << "Counts\n";
        line("vertices", converter.getNumberOfVertices());
        line("texture coordinates", converter.getNumberOfVertexTextures());
        line("normals", converter.getNumberOfVertexNormals());
        line("faces", converter.getNumberOfFaces());
        line("groups", converter.getNumberOfGroups());
        line("materials", converter.getNumberOfMaterials());
    }

    // Of all vertices, used by a face or not.
    void printBoundingBox() {
        Extent extents[3];
        int notNumbers = 0;
        for (int index = 0; index < converter.getNumberOfVertices(); ++index) {
            const Vertex& vertex = *converter.getVertex(index);
            extents[0].include(vertex.x);
            extents[1].include(vertex.y);
            extents[2].include(vertex.z);
            if (std::isnan(vertex.x) || std::isnan(vertex.y) || std::isnan(vertex.z))
                ++notNumbers;
        }
        out << "\nBounding box\n";
        if (converter.getNumberOfVertices() == 0) {
            out << "  no vertices\n";
            return;
        }
        out << "   "
            << "           least"
            << "      greatest"
            << "          size\n";
        const char* axes = "xyz";
        for (const Extent& extent : extents)
            printExtent(*axes++, extent);
        if (notNumbers > 0)
            out << "  Coordinates that are not numbers are left out; vertices with one: "
                << notNumbers << "\n";
    }

    void printExtent(char axis, const Extent& extent) {
        out << "  " << axis << "  ";
        if (extent.low > extent.high) {
            out << "no numbers\n";
            return;
        }
        out << numberColumn(extent.low, COORDINATE_WIDTH)
            << numberColumn(extent.high, COORDINATE_WIDTH)
            << numberColumn(extent.high - extent.low, COORDINATE_WIDTH) << "\n";
    }

    std::size_t limitOf(std::size_t count, std::size_t limit) const {
        return options.all ? count : std::min(count, limit);
    }

    void printHeading(const std::string& title, const std::string& columns) {
        out << "\n" << title << "\n";
        out << columns;
    }

    void printRest(std::size_t count, std::size_t shown) {
        if (count > shown)
            out << "  ... and " << count - shown << " more (--all shows them)\n";
    }

    // "      12  house_wall_front"; the count comes first so that names of any
    // length leave it in its column.
    void printCountedName(std::size_t count, const std::string& name) {
        out << numberColumn(count, COUNT_WIDTH) << "  " << printableName(name, options.all) << "\n";
    }

    void printGroups() {
        const auto count = static_cast<std::size_t>(converter.getNumberOfGroups());
        printHeading("Groups", count == 0 ? "  none\n" : "    faces  full name\n");
        const std::size_t shown = limitOf(count, MAX_LISTED_GROUPS);
        for (std::size_t index = 0; index < shown; ++index) {
            const Group& group = *converter.getGroup(static_cast<int>(index));
            printCountedName(group.faceIndices.size(), group.getFullName());
        }
        printRest(count, shown);
    }

    // A name of many parts makes a deep tree, so the walk has a list of its own
    // and does not use the call stack.
    void printTree() {
        struct Place {
            ObjHierarchyNode* node;
            std::size_t depth;
        };
        ObjHierarchyNode* root = converter.getRootOfHierarchy();
        printHeading(options.hierarchy ? "Tree of groups, by the parts of their names"
                                       : "Tree of groups, flat (--hierarchy nests it)",
                     root == nullptr ? "  no memory for it\n" : "    faces  node\n");
        std::vector<Place> open;
        if (root != nullptr)
            open.push_back({root, 0});
        std::size_t count = 0;
        const std::size_t limit =
            limitOf(std::numeric_limits<std::size_t>::max(), MAX_LISTED_NODES);
        while (!open.empty()) {
            const Place place = open.back();
            open.pop_back();
            if (++count <= limit)
                printNode(*place.node, place.depth);
            for (int child = place.node->getNumberOfChildren() - 1; child >= 0; --child)
                open.push_back({place.node->getChild(child), place.depth + 1});
        }
        printRest(count, std::min(count, limit));
    }

    // A node without a group has no faces of its own.
    void printNode(ObjHierarchyNode& node, std::size_t depth) {
        // Deeper nodes say how deep they are, or each line of a deep tree would
        // be as long as the tree is deep.
        constexpr std::size_t MAX_INDENTED_DEPTH = 24;
        const std::vector<int>* faces = node.getFaceIndices();
        out << (faces == nullptr ? std::string(COUNT_WIDTH - 1, ' ') + "-"
                                 : numberColumn(faces->size(), COUNT_WIDTH))
            << std::string(2 + 2 * std::min(depth, MAX_INDENTED_DEPTH), ' ');
        if (depth > MAX_INDENTED_DEPTH)
            out << "(level " << depth << ") ";
        out << printableName(node.getName(), options.all) << "\n";
    }

    void printMaterials() {
        const auto count = static_cast<std::size_t>(converter.getNumberOfMaterials());
        const std::vector<std::size_t> uses = countFacesOfMaterials(count);
        printHeading("Materials", uses.empty() ? "  none\n" : "    faces  name and statements\n");
        const std::size_t shown = limitOf(count, MAX_LISTED_MATERIALS);
        for (std::size_t index = 0; index < shown; ++index) {
            Material& material = *converter.getMaterial(static_cast<int>(index));
            printCountedName(uses[index], material.name);
            printColors(material);
            printScalars(material);
            printMaps(material);
        }
        printRest(count, shown);
        const std::size_t without =
            static_cast<std::size_t>(converter.getNumberOfFaces()) - sumOf(uses);
        if (count > 0 && without > 0)
            out << numberColumn(without, COUNT_WIDTH) << "  (no material)\n";
    }

    std::vector<std::size_t> countFacesOfMaterials(std::size_t numberOfMaterials) {
        std::vector<std::size_t> uses(numberOfMaterials);
        for (int index = 0; index < converter.getNumberOfFaces(); ++index) {
            const auto material = static_cast<std::size_t>(converter.getFace(index)->materialIndex);
            if (material < uses.size())
                ++uses[material];
        }
        return uses;
    }

    static std::size_t sumOf(const std::vector<std::size_t>& counts) {
        std::size_t sum = 0;
        for (const std::size_t count : counts)
            sum += count;
        return sum;
    }

    void printStatement(const char* keyword, const std::string& value) {
        out << std::string(COUNT_WIDTH + 4, ' ') << textColumn(keyword, KEYWORD_WIDTH)
            << printableName(value, options.all) << "\n";
    }

    // As the file gave them: an XYZ colour is not converted.
    void printColors(const Material& material) {
        if (material.hasAmbient())
            printStatement("Ka", colorToText(material.ambient));
        if (material.hasDiffuse())
            printStatement("Kd", colorToText(material.diffuse));
        if (material.hasSpecular())
            printStatement("Ks", colorToText(material.specular));
        if (material.hasFilter())
            printStatement("Tf", colorToText(material.filter));
    }

    // Those that differ from what a material has without the statement.
    void printScalars(const Material& material) {
        const Material untouched;
        if (material.specularExponent != untouched.specularExponent)
            printStatement("Ns", numberColumn(material.specularExponent, 0));
        if (material.dissolve != untouched.dissolve || material.halo)
            printStatement("d",
                           (material.halo ? "-halo " : "") + numberColumn(material.dissolve, 0));
        if (material.illumination != untouched.illumination)
            printStatement("illum", std::to_string(material.illumination));
        if (material.sharpness != untouched.sharpness)
            printStatement("sharpness", std::to_string(material.sharpness));
        if (material.opticalDensity != untouched.opticalDensity)
            printStatement("Ni", numberColumn(material.opticalDensity, 0));
    }

    void printMaps(Material& material) {
        for (const auto& [slot, keyword] : MAP_SLOTS) {
            if (!material.hasTextureMap(slot))
                continue;
            // The text begins with a blank, made for standing after the keyword.
            printStatement(keyword, material.getTextureMap(slot).textureMapString().substr(1));
        }
    }

    void printTimes(const std::vector<StageTime>& stages) {
        printHeading("Time", stages.empty() ? "  no stage ran\n" : "");
        for (const StageTime& stage : stages) {
            char milliseconds[64];
            std::snprintf(milliseconds, sizeof milliseconds, "%*.3f", MILLISECONDS_WIDTH,
                          stage.time.count());
            out << "  " << textColumn(stage.name, NAME_WIDTH - 3) << milliseconds << " ms"
                << (stage.finished ? "" : "  (gave up)") << "\n";
        }
    }

    std::ostream& out;
    ObjConverter& converter;
    const SummaryOptions& options;
};

}  // namespace

bool hasRecords(ObjConverter& converter) {
    return converter.getNumberOfVertices() > 0 || converter.getNumberOfVertexTextures() > 0 ||
           converter.getNumberOfVertexNormals() > 0 || converter.getNumberOfFaces() > 0 ||
           converter.getNumberOfMaterials() > 0;
}

void printSummary(std::ostream& out, ObjConverter& converter, const ImportRun& importRun,
                  const SummaryOptions& options) {
    SummaryPrinter(out, converter, options).print(importRun);
}

}  // namespace obj_adapter::tool
