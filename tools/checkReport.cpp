// Collects what is wrong with a file. Covered by tests/tools/checkReportTest.cpp.
#include "checkReport.h"

#include "modelAccess.h"
#include "textureFiles.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <unordered_map>

namespace obj_adapter::tool {

namespace {

// How many places of an issue are kept.
constexpr std::size_t MAX_PLACES = 5;

struct CategoryRule {
    std::string_view beginning;
    Category category;
    bool hasCount = false;  // tallied by the importer: the text's last number is the count
};

// The first rule whose beginning the message has.
constexpr CategoryRule CATEGORY_RULES[] = {
    {"Stopping conversion... ", Category::FAILED},
    {"No input file specified.", Category::FAILED},
    {"Problem reading obj file ", Category::FAILED},
    {"Problem with material library: ", Category::FAILED},
    {"Could not find material library ", Category::NOT_FOUND},
    {"Could not find material \"", Category::NOT_FOUND, true},
    {"Error processing vertex", Category::REPAIRED},
    {"Number of faces where ", Category::REPAIRED, true},
    {"Invalid subdivision limit type.", Category::REPAIRED},
    {"Data compaction was turned off", Category::REPAIRED},
    {"Unrecognized statement: ", Category::IGNORED, true},
    {"Could not process face. ", Category::REFUSED},
    {"Could not split non-triangular face.", Category::REFUSED},
    {"Face does not have enough vertices.", Category::REFUSED},
    {"Polygonal face has elements ", Category::REFUSED},
    {"Error processing ", Category::REFUSED},
    {"Map missing file name.", Category::REFUSED},
    {"Problem processing map options.", Category::REFUSED},
    {"Reflection map is missing type.", Category::REFUSED},
    {"Invalid value for ", Category::REFUSED},
    {"Bad input values for ", Category::REFUSED},
    {"No name given for material library.", Category::REFUSED},
    {"usemtl with no material name.", Category::REFUSED},
};

CategoryRule ruleOf(std::string_view message) {
    for (const CategoryRule& rule : CATEGORY_RULES) {
        if (message.starts_with(rule.beginning))
            return rule;
    }
    return {{}, Category::OTHER};
}

long long lastNumberIn(std::string_view text) {
    constexpr std::string_view DIGITS = "0123456789";
    const std::size_t last = text.find_last_of(DIGITS);
    if (last == std::string_view::npos)
        return 1;
    const std::size_t before = text.find_last_not_of(DIGITS, last);
    const std::size_t first = before == std::string_view::npos ? 0 : before + 1;
    long long number = 1;
    std::from_chars(text.data() + first, text.data() + last + 1, number);
    return number;
}

// Counts equal messages.
class IssueTally {
public:
    void add(const ImportMessage& message) {
        const auto [known, isNew] = positions.try_emplace(message.text, issues.size());
        const CategoryRule rule = ruleOf(message.text);
        if (isNew)
            issues.push_back({message.level, rule.category, message.text, 0, {}});
        Issue& issue = issues[known->second];
        issue.count += rule.hasCount ? lastNumberIn(message.text) : 1;
        if (message.line > 0 && issue.places.size() < MAX_PLACES)
            issue.places.push_back({message.fileName, message.line});
    }

    void addWarning(Category category, std::string text, long long count) {
        if (count > 0)
            issues.push_back({ObjConverter::MESSAGE_WARNING, category, std::move(text), count, {}});
    }

    std::vector<Issue> issues;

private:
    std::unordered_map<std::string, std::size_t> positions;
};

class FileCheck {
public:
    explicit FileCheck(const ImportSettings& importSettings) : settings(importSettings) {}

    CheckReport check() {
        report.fileName = settings.fileName;
        const ImportRun run =
            runImport(settings, [this](const ImportMessage& message) { receive(message); });
        report.succeeded = run.succeeded;
        if (ObjConverter* converter = ObjConverter::getInstance()) {
            const ModelAccess model(*converter);
            report.vertices = model.getNumberOfVertices();
            report.faces = model.getNumberOfFaces();
            report.facts = computeMeshFacts(model);
            addMissingTextures(model, run);
            addMeshIssues();
        }
        report.issues = std::move(tally.issues);
        return std::move(report);
    }

private:
    void receive(const ImportMessage& message) {
        if (message.level < ObjConverter::MESSAGE_INFORMATION)
            tally.add(message);
        else if (message.text == "Compacting...")
            noteTablesBeforeCompaction();
        else if (message.text == "Done compacting.")
            noteTablesAfterCompaction();
    }

    // The converter answers while it imports.
    void noteTablesBeforeCompaction() {
        const ModelAccess model(*ObjConverter::getInstance());
        before.verticesBefore = model.getNumberOfVertices();
        before.facesBefore = model.getNumberOfFaces();
        before.collapsedFaces = countCollapsedFaces(model);
    }

    void noteTablesAfterCompaction() {
        const ModelAccess model(*ObjConverter::getInstance());
        before.verticesAfter = model.getNumberOfVertices();
        before.facesAfter = model.getNumberOfFaces();
        before.collapsedFaces =
            std::min(before.collapsedFaces, before.facesBefore - before.facesAfter);
        report.compaction = before;
    }

    void addMissingTextures(const ModelAccess& model, const ImportRun& run) {
        const TextureFiles textures(settings, run);
        for (const MissingTexture& missing : findMissingTextures(model, textures))
            tally.addWarning(Category::NOT_FOUND,
                             "Could not find the image \"" + missing.fileName +
                                 "\" of material \"" + missing.firstMaterial + "\" (" +
                                 missing.keyword + ")",
                             missing.uses);
    }

    void addMeshIssues() {
        const MeshFacts& facts = report.facts;
        if (report.compaction) {
            const int gone = report.compaction->facesBefore - report.compaction->facesAfter;
            tally.addWarning(Category::REPAIRED, "Faces removed: two corners at one place",
                             report.compaction->collapsedFaces);
            tally.addWarning(Category::REPAIRED, "Faces removed: the same as another of the group",
                             gone - report.compaction->collapsedFaces);
        }
        tally.addWarning(Category::MESH, "Vertices with coordinates that are no finite numbers",
                         facts.verticesNotFinite);
        tally.addWarning(Category::MESH, "Faces with a corner that names no vertex",
                         facts.facesWithoutVertex);
        tally.addWarning(Category::MESH, "Faces with a corner at no finite place",
                         facts.facesNotFinite);
        tally.addWarning(Category::MESH, "Faces without area", facts.facesWithoutArea);
        tally.addWarning(Category::MESH, "Faces over the same three vertices as another",
                         facts.duplicateFaces);
        tally.addWarning(Category::MESH, "Edges of more than two faces", facts.nonManifoldEdges);
        tally.addWarning(Category::MESH, "Edges whose two faces disagree on the front side",
                         facts.windingConflicts);
    }

    const ImportSettings& settings;
    CheckReport report;
    CompactionEffect before;
    IssueTally tally;
};

}  // namespace

long long CheckReport::countIssues(int level) const {
    return std::count_if(issues.begin(), issues.end(),
                         [level](const Issue& issue) { return issue.level == level; });
}

CheckReport checkFile(const ImportSettings& settings) {
    return FileCheck(settings).check();
}

}  // namespace obj_adapter::tool
