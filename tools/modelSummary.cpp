// Prints what is in an imported model. Covered by tests/tools.
#include "modelSummary.h"

#include "boundingBox.h"
#include "materialMaps.h"
#include "modelAccess.h"
#include "terminalText.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

namespace obj_adapter::tool {

namespace {

// How much of a long list is shown unless all is wanted.
constexpr std::size_t MAX_LISTED_GROUPS = 40;
constexpr std::size_t MAX_LISTED_MATERIALS = 20;

constexpr int COUNT_WIDTH = 9;
constexpr int COORDINATE_WIDTH = 14;
constexpr int MILLISECONDS_WIDTH = 12;
constexpr int KEYWORD_WIDTH = 10;
constexpr int NAME_WIDTH = 21;

class SummaryPrinter {
public:
    SummaryPrinter(std::ostream& output, const ModelAccess& importedModel, bool showAll)
        : out(output), model(importedModel), all(showAll) {}

    void print(const ImportRun& importRun) {
        if (!importRun.succeeded)
            out << "The import gave up; this is what it read before that.\n\n";
        printCounts();
        printBoundingBox();
        printGroups();
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
        line("vertices", model.getNumberOfVertices());
        line("texture coordinates", model.getNumberOfTexturePoints());
        line("normals", model.getNumberOfNormals());
        line("faces", model.getNumberOfFaces());
        line("groups", model.getNumberOfGroups());
        line("materials", model.getNumberOfMaterials());
    }

    void printBoundingBox() {
        out << "\nBounding box\n";
        if (model.getNumberOfVertices() == 0) {
            out << "  no vertices\n";
            return;
        }
        const BoundingBox box = computeBoundingBox(model);
        out << "   "
            << "           least"
            << "      greatest"
            << "          size\n";
        for (int axis = 0; axis < AXIS_COUNT; ++axis)
            printExtent(AXIS_NAMES[axis], box.extents[axis]);
        if (box.notNumbers > 0)
            out << "  Coordinates that are not numbers are left out; vertices with one: "
                << box.notNumbers << "\n";
    }

    void printExtent(const char* axis, const Extent& extent) {
        out << "  " << axis << "  ";
        if (extent.isEmpty()) {
            out << "no numbers\n";
            return;
        }
        out << numberColumn(extent.low, COORDINATE_WIDTH)
            << numberColumn(extent.high, COORDINATE_WIDTH)
            << numberColumn(extent.high - extent.low, COORDINATE_WIDTH) << "\n";
    }

    std::size_t limitOf(std::size_t count, std::size_t limit) const {
        return all ? count : std::min(count, limit);
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
        out << numberColumn(count, COUNT_WIDTH) << "  " << printableName(name, all) << "\n";
    }

    void printGroups() {
        const auto count = static_cast<std::size_t>(model.getNumberOfGroups());
        printHeading("Groups", count == 0 ? "  none\n" : "    faces  full name\n");
        const std::size_t shown = limitOf(count, MAX_LISTED_GROUPS);
        for (std::size_t index = 0; index < shown; ++index) {
            const Group& group = model.getGroup(static_cast<int>(index));
            printCountedName(group.faceIndices.size(), group.getFullName());
        }
        printRest(count, shown);
    }

    void printMaterials() {
        const auto count = static_cast<std::size_t>(model.getNumberOfMaterials());
        const std::vector<std::size_t> uses = model.countFacesOfMaterials();
        printHeading("Materials", count == 0 ? "  none\n" : "    faces  name and statements\n");
        const std::size_t shown = limitOf(count, MAX_LISTED_MATERIALS);
        for (std::size_t index = 0; index < shown; ++index) {
            Material& material = model.getMaterial(static_cast<int>(index));
            printCountedName(uses[index], material.name);
            printColors(material);
            printScalars(material);
            printMaps(material);
        }
        printRest(count, shown);
        if (count > 0 && uses[count] > 0)
            out << numberColumn(uses[count], COUNT_WIDTH) << "  (no material)\n";
    }

    void printStatement(const char* keyword, const std::string& value) {
        out << std::string(COUNT_WIDTH + 4, ' ') << textColumn(keyword, KEYWORD_WIDTH)
            << printableName(value, all) << "\n";
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
    const ModelAccess& model;
    bool all;
};

}  // namespace

bool hasRecords(const ModelAccess& model) {
    return model.getNumberOfVertices() > 0 || model.getNumberOfTexturePoints() > 0 ||
           model.getNumberOfNormals() > 0 || model.getNumberOfFaces() > 0 ||
           model.getNumberOfMaterials() > 0;
}

void printSummary(std::ostream& out, const ModelAccess& model, const ImportRun& importRun,
                  bool all) {
    SummaryPrinter(out, model, all).print(importRun);
}

}  // namespace obj_adapter::tool
