// Reads string literals out of sources. Covered by tests/docs/repairsPageTest.cpp.
#include "docs/sourceLiterals.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace obj_adapter::test {

namespace {

namespace fs = std::filesystem;

// Walks over one file's text.
class LiteralReader {
public:
    LiteralReader(std::string ownText, std::string ownName)
        : text(std::move(ownText)), name(std::move(ownName)) {}

    std::vector<Literal> read() {
        while (at < text.size())
            step();
        return std::move(literals);
    }

private:
    bool startsWith(const char* wanted) const { return text.compare(at, 2, wanted) == 0; }

    void step() {
        if (startsWith("//"))
            skipLine();
        else if (startsWith("/*"))
            at = std::min(text.size(), text.find("*/", at) + 2);
        else if (text[at] == '#' && isFirstOfLine())
            skipLine();
        else if (text[at] == '\'' && !isDigitSeparator())
            readQuoted();
        else if (text[at] == '"')
            addLiteral();
        else
            addCode(text[at++]);
    }

    // To the end of the line and of those joined to it.
    void skipLine() {
        while (at < text.size() && (text[at] != '\n' || text[at - 1] == '\\'))
            ++at;
    }

    bool isFirstOfLine() const {
        const std::size_t before =
            at == 0 ? std::string::npos : text.find_last_not_of(" \t", at - 1);
        return before == std::string::npos || text[before] == '\n';
    }

    bool isDigitSeparator() const {
        return at > 0 && std::isalnum(static_cast<unsigned char>(text[at - 1])) != 0;
    }

    void addCode(char character) {
        const bool endsStatement = character == ';' || character == '{' || character == '}';
        if (endsStatement)
            context.clear();
        else
            context += character;
        if (std::isspace(static_cast<unsigned char>(character)) == 0)
            isBehindLiteral = false;
    }

    void addLiteral() {
        const std::string place = name + ":" + std::to_string(lineNumber());
        const std::string value = readQuoted();
        if (isBehindLiteral)
            literals.back().value += value;
        else
            literals.push_back({place, value, context});
        isBehindLiteral = true;
    }

    // From one quotation mark to behind the next.
    std::string readQuoted() {
        const char quote = text[at++];
        std::string value;
        while (at < text.size() && text[at] != quote) {
            if (text[at] == '\\' && ++at < text.size())
                value += text[at] == 'n' ? '\n' : text[at] == 't' ? '\t' : text[at];
            else
                value += text[at];
            ++at;
        }
        ++at;
        return value;
    }

    std::ptrdiff_t lineNumber() const {
        return 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    }

    std::string text;
    std::string name;
    std::size_t at = 0;
    std::string context;
    bool isBehindLiteral = false;
    std::vector<Literal> literals;
};

}  // namespace

std::vector<Literal> readLiterals(const fs::path& file, const std::string& shownName) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot read " + file.string());
    std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    return LiteralReader(std::move(text), shownName).read();
}

std::vector<Literal> readLibraryLiterals(const fs::path& sourceRoot) {
    std::vector<fs::path> files;
    for (const char* folder :
         {"converter", "groups", "include", "material", "model", "obj", "platform", "processing"}) {
        for (const fs::directory_entry& entry :
             fs::recursive_directory_iterator(sourceRoot / folder)) {
            const std::string extension = entry.path().extension().string();
            if (extension == ".cpp" || extension == ".h")
                files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());

    std::vector<Literal> literals;
    for (const fs::path& file : files) {
        const std::string shownName = file.lexically_relative(sourceRoot).generic_string();
        for (Literal& literal : readLiterals(file, shownName))
            literals.push_back(std::move(literal));
    }
    return literals;
}

}  // namespace obj_adapter::test
