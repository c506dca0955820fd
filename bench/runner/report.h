// Tables and goals, for the terminal and as Markdown.
#pragma once

#include <string>
#include <vector>

namespace obj_adapter::bench {

struct Table {
    std::string title;
    std::string note;  // what the figures mean
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows;  // the first cell names the row
};

struct Goal {
    std::string text;
    double wanted = 0;
    bool isAtMost = false;  // the figure should be no more than wanted; else no less
    double reached = 0;

    bool isMet() const { return isAtMost ? reached <= wanted : reached >= wanted; }
};

// "12.3": so many significant digits as matter in a table.
std::string show(double value);

class Report {
public:
    void add(Table table) { tables.push_back(std::move(table)); }
    void add(Goal goal) { goals.push_back(std::move(goal)); }

    // Machine, compiler, date, then tables, then goals.
    std::string asText() const;
    std::string asMarkdown() const;

private:
    std::vector<Table> tables;
    std::vector<Goal> goals;
};

// What stands in a file before and behind the place for what is measured, with the lines
// "<!-- MARK: begin -->" and "<!-- MARK: end -->" around it.
struct MarkedText {
    std::string before;
    std::string behind;
};

// Throws std::runtime_error where these lines are missing.
MarkedText readMarkedText(const std::string& fileName, const std::string& mark);

// Replaces what stands between the lines.
void replaceMeasured(const std::string& fileName, const std::string& mark,
                     const std::string& markdown);

}  // namespace obj_adapter::bench
