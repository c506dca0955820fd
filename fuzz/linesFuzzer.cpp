// Logical lines and tokens against std::getline and strtok. The first bytes choose
// how much of the text each read gives.
#include "fuzzing.h"
#include "obj/lineTokens.h"
#include "obj/textSource.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

class PieceSource : public obj_adapter::TextSource {
public:
    PieceSource(std::string_view wholeText, const std::vector<std::size_t>& pieceSizes)
        : rest(wholeText), sizes(pieceSizes) {}

    std::size_t read(char* to, std::size_t room) override {
        const std::size_t size = std::min({sizes[reads++ % sizes.size()], room, rest.size()});
        rest.copy(to, size);
        rest.remove_prefix(size);
        return size;
    }

private:
    std::string_view rest;
    std::vector<std::size_t> sizes;
    std::size_t reads = 0;
};

Lines expectedLines(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    std::string line;
    while (std::getline(stream, line)) {
        if (!line.empty() && line.back() == '\\') {
            line.pop_back();
            std::string next;
            std::getline(stream, next);
            line += next;
        }
        lines.push_back(line);
    }
    return lines;
}

Lines expectedTokens(std::string line) {
    Lines tokens;
    const char delimiters[] = " \t\n\r\\";
    for (char* token = std::strtok(line.data(), delimiters); token != nullptr;
         token = std::strtok(nullptr, delimiters))
        tokens.push_back(token);
    return tokens;
}

Lines tokensOf(std::string_view line) {
    Lines tokens;
    obj_adapter::LineTokens source(line);
    for (auto token = source.next(); !token.isMissing(); token = source.next())
        tokens.push_back(token.text());
    return tokens;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace obj_adapter;
    fuzz::Bytes bytes(data, size);
    std::vector<std::size_t> pieceSizes;
    constexpr int LARGEST_PIECE = 64;
    for (int piece = 0; piece < 3; ++piece)
        pieceSizes.push_back(static_cast<std::size_t>(1 + bytes.below(LARGEST_PIECE)));
    const std::string text(bytes.rest());

    PieceSource source(text, pieceSizes);
    LogicalLineReader reader(source);
    const Lines expected = expectedLines(text);
    std::size_t count = 0;
    for (std::string_view line; reader.next(line); ++count) {
        fuzz::require(count < expected.size(), "too many lines");
        fuzz::requireEqual(std::string(line), expected[count], "line");
        fuzz::require(tokensOf(line) == expectedTokens(std::string(line)), "tokens");
    }
    fuzz::require(count == expected.size(), "lines are missing");
    return 0;
}
