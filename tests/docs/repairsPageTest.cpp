// docs/repairs.md and the messages in the sources are the same.
#include "docs/sourceLiterals.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

// One row of the page's tables: a message with its level, or a reason.
struct PageEntry {
    int lineNumber = 0;
    int level = 0;                    // 0 for a reason
    std::vector<std::string> pieces;  // what stands between placeholders
};

// "Error: <reason>\nEnd" gives "Error: " and "\nEnd".
std::vector<std::string> splitAtPlaceholders(const std::string& shown) {
    const std::string text = std::regex_replace(shown, std::regex(R"(\\n)"), "\n");
    const std::regex placeholder("<(reason|name|count|path)>");
    std::vector<std::string> pieces;
    for (std::sregex_token_iterator piece(text.begin(), text.end(), placeholder, -1), end;
         piece != end; ++piece)
        if (piece->length() > 0)
            pieces.push_back(*piece);
    return pieces;
}

std::vector<PageEntry> readPage() {
    std::ifstream page(std::filesystem::path(OBJ_ADAPTER_SOURCE_ROOT) / "docs/repairs.md");
    const std::regex messageRow(R"(^\| ([123]) \| `([^`]+)` \|.*)");
    const std::regex reasonRow(R"(^\| `([^`]+)` \|.*)");
    std::vector<PageEntry> entries;
    std::string line;
    for (int lineNumber = 1; std::getline(page, line); ++lineNumber) {
        std::smatch match;
        if (std::regex_match(line, match, messageRow))
            entries.push_back({lineNumber, std::stoi(match[1]), splitAtPlaceholders(match[2])});
        else if (std::regex_match(line, match, reasonRow))
            entries.push_back({lineNumber, 0, splitAtPlaceholders(match[1])});
    }
    return entries;
}

const std::vector<Literal>& librarysLiterals() {
    static const std::vector<Literal> literals = readLibraryLiterals(OBJ_ADAPTER_SOURCE_ROOT);
    return literals;
}

bool isSaid(const Literal& literal) {
    static const std::regex said(R"((report[A-Z]\w*|tryStatement)\(|\bthrow std::|_MESSAGE\[\])");
    return std::regex_search(literal.context, said);
}

// Texts of two words and more are for people: messages, but for these.
bool isOtherText(const Literal& literal) {
    static const std::set<std::string> OTHER_TEXTS = {
        "Obj File",    // the name of a model that no file has named
        "GROUP NODE",  // a node's label
    };
    // Writes MTL text.
    return literal.place.rfind("material/materialText.cpp:", 0) == 0 ||
           OTHER_TEXTS.count(literal.value) > 0 ||
           literal.context.find("static_assert") != std::string::npos;
}

bool isForPeople(const Literal& literal) {
    static const std::regex twoWords(R"([A-Za-z]\w*[.,:]? +.*[A-Za-z])");
    return std::regex_search(literal.value, twoWords) && !isOtherText(literal);
}

// The level at which a statement sends what it holds; 0 if the code in front of the
// text does not tell.
int levelOf(const std::string& context) {
    static const std::map<std::string, int> LEVELS = {{"reportError", 1},
                                                      {"reportFailure", 1},
                                                      {"tryStatement", 1},
                                                      {"reportWarning", 2},
                                                      {"reportInformation", 3}};
    for (const auto& [function, level] : LEVELS)
        if (context.find(function + "(") != std::string::npos)
            return level;
    return 0;
}

std::string readSource(const std::string& place) {
    const std::filesystem::path root = OBJ_ADAPTER_SOURCE_ROOT;
    std::ifstream stream(root / place.substr(0, place.find(':')));
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// Of a text that stands apart with a name, where the name is used.
int levelOfConstant(const Literal& literal) {
    std::smatch name;
    if (!std::regex_search(literal.context, name, std::regex(R"((\w+_MESSAGE)\[\])")))
        return 0;
    const std::string source = readSource(literal.place);
    std::smatch use;
    const std::regex call(R"((report[A-Z]\w*\()\s*)" + name[1].str());
    return std::regex_search(source, use, call) ? levelOf(use[1]) : 0;
}

TEST(RepairsPage, everyTextOfTheSourcesStandsOnIt) {
    std::set<std::string> onPage;
    for (const PageEntry& entry : readPage())
        onPage.insert(entry.pieces.begin(), entry.pieces.end());

    int found = 0;
    for (const Literal& literal : librarysLiterals()) {
        if (!isSaid(literal) && !isForPeople(literal))
            continue;
        ++found;
        EXPECT_TRUE(onPage.count(literal.value) > 0)
            << literal.place << ": not in docs/repairs.md: \"" << literal.value << '"';
    }
    EXPECT_GT(found, 70);
}

TEST(RepairsPage, everyTextOnItStandsInTheSources) {
    std::set<std::string> inSources;
    for (const Literal& literal : librarysLiterals())
        inSources.insert(literal.value);

    const std::vector<PageEntry> entries = readPage();
    EXPECT_GT(entries.size(), 70U);
    for (const PageEntry& entry : entries)
        for (const std::string& piece : entry.pieces)
            EXPECT_TRUE(inSources.count(piece) > 0)
                << "docs/repairs.md:" << entry.lineNumber << ": nowhere in the sources: \"" << piece
                << '"';
}

TEST(RepairsPage, levelsAreThoseOfTheCalls) {
    for (const PageEntry& entry : readPage()) {
        if (entry.level == 0)
            continue;
        SCOPED_TRACE("docs/repairs.md:" + std::to_string(entry.lineNumber));
        std::set<int> levels;
        for (const Literal& literal : librarysLiterals())
            if (literal.value == entry.pieces.front())
                levels.insert(levelOf(literal.context) + levelOfConstant(literal));
        EXPECT_EQ(levels, std::set<int>{entry.level}) << entry.pieces.front();
    }
}

TEST(RepairsPage, noMessageStandsTwice) {
    std::set<std::vector<std::string>> seen;
    for (const PageEntry& entry : readPage())
        EXPECT_TRUE(seen.insert(entry.pieces).second)
            << "docs/repairs.md:" << entry.lineNumber << ": again: " << entry.pieces.front();
}

}  // namespace

}  // namespace obj_adapter::test
