// Printing of tables and goals.
#include "runner/report.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <sys/utsname.h>

namespace obj_adapter::bench {

namespace {

std::string firstMatch(const std::string& file, const std::string& start) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(start))
            return line.substr(std::min(line.find(':') + 2, line.size()));
    }
    return "unknown";
}

std::string firstLine(const std::string& file) {
    std::string line;
    std::getline(std::ifstream(file), line);
    return line;
}

// What the figures hold for.
std::vector<std::string> describeMachine() {
    utsname system{};
    uname(&system);
    char date[32];
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::strftime(date, sizeof date, "%Y-%m-%d", &local);
    return {
        "Date: " + std::string(date),
        "Processor: " + firstMatch("/proc/cpuinfo", "model name") + " (one thread)",
        "System: " + std::string(system.sysname) + " " + system.release +
            ", transparent huge pages: " + firstLine("/sys/kernel/mm/transparent_hugepage/enabled"),
        "Compiler: " + firstLine(BENCH_COMPILER_FILE)};
}

using Rows = std::vector<std::vector<std::string>>;

Table goalTable(const std::vector<Goal>& goals) {
    Table table;
    table.title = "Goals";
    table.columns = {"goal", "wanted", "reached", ""};
    for (const Goal& goal : goals)
        table.rows.push_back({goal.text,
                              (goal.isAtMost ? "at most " : "at least ") + show(goal.wanted),
                              show(goal.reached), goal.isMet() ? "met" : "**not met**"});
    return table;
}

std::string padded(const std::string& text, std::size_t width, bool isLeft) {
    const std::string blanks(width - std::min(width, text.size()), ' ');
    return isLeft ? text + blanks : blanks + text;
}

std::string tableAsText(const Table& table) {
    Rows rows = {table.columns};
    rows.insert(rows.end(), table.rows.begin(), table.rows.end());
    std::vector<std::size_t> widths(table.columns.size());
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    }
    std::string text = "\n" + table.title + "\n";
    if (!table.note.empty())
        text += table.note + "\n";
    text += "\n";
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            text += (column == 0 ? "  " : "   ") + padded(row[column], widths[column], column == 0);
        text += "\n";
    }
    return text;
}

std::string markdownRow(const std::vector<std::string>& cells) {
    std::string text = "|";
    for (const std::string& cell : cells)
        text += " " + cell + " |";
    return text + "\n";
}

std::string tableAsMarkdown(const Table& table) {
    std::string text = "\n### " + table.title + "\n\n";
    if (!table.note.empty())
        text += table.note + "\n\n";
    text += markdownRow(table.columns);
    text += "|---|";
    for (std::size_t column = 1; column < table.columns.size(); ++column)
        text += "---:|";
    text += "\n";
    for (const auto& row : table.rows)
        text += markdownRow(row);
    return text;
}

}  // namespace

std::string show(double value) {
    if (std::isnan(value))
        return "-";
    const double size = std::abs(value);
    char digits[64];
    std::snprintf(digits, sizeof digits,
                  size >= 100  ? "%.0f"
                  : size >= 10 ? "%.1f"
                               : "%.2f",
                  value);
    return digits;
}

std::string Report::asText() const {
    std::string text;
    for (const std::string& line : describeMachine())
        text += line + "\n";
    for (const Table& table : tables)
        text += tableAsText(table);
    if (!goals.empty())
        text += tableAsText(goalTable(goals));
    return text;
}

std::string Report::asMarkdown() const {
    std::string text;
    for (const std::string& line : describeMachine())
        text += "- " + line + "\n";
    if (!goals.empty())
        text += tableAsMarkdown(goalTable(goals));
    for (const Table& table : tables)
        text += tableAsMarkdown(table);
    return text;
}

MarkedText readMarkedText(const std::string& fileName, const std::string& mark) {
    const std::string BEGIN = "<!-- " + mark + ": begin -->\n";
    const std::string END = "<!-- " + mark + ": end -->";
    std::ifstream input(fileName);
    const std::string text{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
    const std::size_t begin = text.find(BEGIN);
    const std::size_t end = text.find(END);
    if (begin == std::string::npos || end == std::string::npos || end < begin)
        throw std::runtime_error(fileName + " has no marks of the name " + mark);
    return {text.substr(0, begin + BEGIN.size()), text.substr(end)};
}

void replaceMeasured(const std::string& fileName, const std::string& mark,
                     const std::string& markdown) {
    const MarkedText text = readMarkedText(fileName, mark);
    std::ofstream(fileName) << text.before << "\n" << markdown << "\n" << text.behind;
}

}  // namespace obj_adapter::bench
