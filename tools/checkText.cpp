// Prints a report on a file. Covered by tests/tools.
#include "checkText.h"

#include "terminal.h"
#include "terminalText.h"

#include <obj_adapter/objConverter.h>

#include <ostream>

namespace obj_adapter::tool {

namespace {

// How many issues of a category are shown unless all are wanted.
constexpr std::size_t MAX_LISTED_ISSUES = 20;

constexpr std::size_t NAME_WIDTH = 32;
constexpr int COUNT_WIDTH = 9;

const char* titleOf(Category category) {
    switch (category) {
        case Category::FAILED:
            return "Failed";
        case Category::NOT_FOUND:
            return "Not found";
        case Category::REFUSED:
            return "Refused";
        case Category::REPAIRED:
            return "Repaired";
        case Category::IGNORED:
            return "Ignored";
        case Category::MESH:
            return "Faults of the mesh";
        default:
            return "Other";
    }
}

const char* keyOf(Category category) {
    switch (category) {
        case Category::FAILED:
            return "failed";
        case Category::NOT_FOUND:
            return "notFound";
        case Category::REFUSED:
            return "refused";
        case Category::REPAIRED:
            return "repaired";
        case Category::IGNORED:
            return "ignored";
        case Category::MESH:
            return "mesh";
        default:
            return "other";
    }
}

const char* wordOf(int level) {
    return level == ObjConverter::MESSAGE_ERROR ? "error" : "warning";
}

Color colorOf(int level) {
    return level == ObjConverter::MESSAGE_ERROR ? Color::RED : Color::YELLOW;
}

std::string countOf(long long count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

class ReportPrinter {
public:
    ReportPrinter(std::ostream& output, const CheckReport& checkReport, bool showAll)
        : out(output), report(checkReport), all(showAll) {}

    void print() {
        printVerdict();
        for (const Category category : CATEGORIES)
            printCategory(category);
        if (report.succeeded || report.vertices > 0)
            printFacts();
    }

private:
    void printVerdict() {
        const long long errors = report.countIssues(ObjConverter::MESSAGE_ERROR);
        const long long warnings = report.countIssues(ObjConverter::MESSAGE_WARNING);
        out << printableText(report.fileName) << ": ";
        if (errors == 0 && warnings == 0)
            out << colored(Stream::OUTPUT, Color::GREEN, "nothing wrong") << "\n";
        else if (errors == 0)
            out << colored(Stream::OUTPUT, Color::YELLOW, countOf(warnings, "warning")) << "\n";
        else
            out << colored(Stream::OUTPUT, Color::RED, countOf(errors, "error")) << ", "
                << countOf(warnings, "warning") << "\n";
    }

    void printCategory(Category category) {
        std::size_t count = 0;
        for (const Issue& issue : report.issues) {
            if (issue.category != category)
                continue;
            if (count == 0)
                out << "\n" << titleOf(category) << "\n";
            if (all || count < MAX_LISTED_ISSUES)
                printIssue(issue);
            ++count;
        }
        if (!all && count > MAX_LISTED_ISSUES)
            out << "  ... and " << count - MAX_LISTED_ISSUES << " more (--all shows them)\n";
    }

    // "  error          3  Error processing vertex: No float value found". A second
    // line of the message goes below the first.
    void printIssue(const Issue& issue) {
        constexpr std::size_t LEVEL_WIDTH = 7;
        const std::string word = wordOf(issue.level);
        const std::string indent(2 + LEVEL_WIDTH + COUNT_WIDTH + 2, ' ');
        out << "  " << colored(Stream::OUTPUT, colorOf(issue.level), word)
            << std::string(LEVEL_WIDTH - word.size(), ' ')
            << numberColumn(static_cast<std::size_t>(issue.count), COUNT_WIDTH) << "  ";
        std::string_view rest = issue.text;
        for (std::size_t end = rest.find('\n'); end != std::string_view::npos;
             end = rest.find('\n')) {
            out << printableName(rest.substr(0, end), all) << "\n" << indent;
            rest.remove_prefix(end + 1);
        }
        constexpr std::size_t MAX_MESSAGE = 240;
        out << (rest.size() > MAX_MESSAGE ? printableName(rest, all) : printableText(rest)) << "\n";
        printPlaces(issue, indent);
    }

    // "at a.obj:4, 9, 12, ..."; places in another file begin with its name.
    void printPlaces(const Issue& issue, const std::string& indent) {
        if (issue.places.empty())
            return;
        out << indent << "at ";
        const std::string* fileName = nullptr;
        for (const Place& place : issue.places) {
            out << (fileName == nullptr ? "" : ", ");
            if (fileName == nullptr || *fileName != place.fileName)
                out << printableText(place.fileName) << ":";
            out << place.line;
            fileName = &place.fileName;
        }
        const bool isCut = static_cast<std::size_t>(issue.count) > issue.places.size();
        out << (isCut ? ", ...\n" : "\n");
    }

    void line(const char* what, const std::string& value) {
        out << "  " << textColumn(what, NAME_WIDTH) << value << "\n";
    }

    void line(const char* what, long long count) {
        line(what, numberColumn(static_cast<std::size_t>(count), COUNT_WIDTH));
    }

    void printFacts() {
        const MeshFacts& facts = report.facts;
        out << "\nMesh\n";
        line("vertices", report.vertices);
        if (report.compaction)
            line("  merged with an equal one",
                 report.compaction->verticesBefore - report.compaction->verticesAfter);
        line("  unused", facts.unusedVertices);
        line("faces", report.faces);
        line("  with normals", facts.facesWithNormals);
        line("  with texture coordinates", facts.facesWithTextures);
        line("edges", facts.edges);
        line("  on a boundary", facts.boundaryEdges);
        line("  of more than two faces", facts.nonManifoldEdges);
        line("pieces", facts.pieces);
        line("closed", std::string(COUNT_WIDTH - (facts.isClosed() ? 3 : 2), ' ') +
                           (facts.isClosed() ? "yes" : "no"));
    }

    std::ostream& out;
    const CheckReport& report;
    bool all;
};

Json issueToJson(const Issue& issue) {
    Json json;
    json["level"] = wordOf(issue.level);
    json["category"] = keyOf(issue.category);
    json["text"] = issue.text;
    json["count"] = issue.count;
    json["places"] = Json::array();
    for (const Place& place : issue.places) {
        Json entry;
        entry["file"] = place.fileName;
        entry["line"] = place.line;
        json["places"].push_back(std::move(entry));
    }
    return json;
}

Json factsToJson(const CheckReport& report) {
    const MeshFacts& facts = report.facts;
    Json json;
    json["vertices"] = report.vertices;
    json["unusedVertices"] = facts.unusedVertices;
    json["verticesNotFinite"] = facts.verticesNotFinite;
    json["faces"] = report.faces;
    json["facesWithNormals"] = facts.facesWithNormals;
    json["facesWithTextureCoordinates"] = facts.facesWithTextures;
    json["facesWithoutVertex"] = facts.facesWithoutVertex;
    json["facesNotFinite"] = facts.facesNotFinite;
    json["facesWithoutArea"] = facts.facesWithoutArea;
    json["duplicateFaces"] = facts.duplicateFaces;
    json["edges"] = facts.edges;
    json["boundaryEdges"] = facts.boundaryEdges;
    json["nonManifoldEdges"] = facts.nonManifoldEdges;
    json["windingConflicts"] = facts.windingConflicts;
    json["pieces"] = facts.pieces;
    json["closed"] = facts.isClosed();
    return json;
}

Json compactionToJson(const std::optional<CompactionEffect>& compaction) {
    if (!compaction)
        return nullptr;
    const int gone = compaction->facesBefore - compaction->facesAfter;
    Json json;
    json["mergedVertices"] = compaction->verticesBefore - compaction->verticesAfter;
    json["collapsedFaces"] = compaction->collapsedFaces;
    json["duplicateFaces"] = gone - compaction->collapsedFaces;
    return json;
}

Json reportToJson(const CheckReport& report) {
    Json json;
    json["file"] = report.fileName;
    json["succeeded"] = report.succeeded;
    json["errors"] = report.countIssues(ObjConverter::MESSAGE_ERROR);
    json["warnings"] = report.countIssues(ObjConverter::MESSAGE_WARNING);
    json["issues"] = Json::array();
    for (const Issue& issue : report.issues)
        json["issues"].push_back(issueToJson(issue));
    json["compaction"] = compactionToJson(report.compaction);
    json["mesh"] = factsToJson(report);
    return json;
}

}  // namespace

void printReport(std::ostream& out, const CheckReport& report, bool all) {
    ReportPrinter(out, report, all).print();
}

Json reportsToJson(const std::vector<CheckReport>& reports) {
    Json json = makeJson("check");
    json["files"] = Json::array();
    for (const CheckReport& report : reports)
        json["files"].push_back(reportToJson(report));
    return json;
}

}  // namespace obj_adapter::tool
