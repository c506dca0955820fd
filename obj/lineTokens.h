// Internal: cutting a line into tokens.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace obj_adapter {

// A run of characters of a line, or nothing at all where the line had no
// further token. Valid as long as the line's text.
struct Token {
    const char* begin = nullptr;
    const char* end = nullptr;

    bool isMissing() const noexcept { return begin == nullptr; }
    std::string_view view() const noexcept {
        return {begin, static_cast<std::size_t>(end - begin)};
    }
    std::string text() const { return std::string(view()); }
};

// A position in a line, moved on by every token that is taken.
//
// Blank, tab, line feed, carriage return and backslash part the tokens, runs of
// them counting as one. The line ends at its first NUL byte, if it has one.
class LineTokens {
public:
    explicit LineTokens(std::string_view line) noexcept
        : position(line.data()), lineEnd(line.data() + line.size()) {}

    // The next token, moving behind it; a missing one when the line is
    // exhausted.
    Token next() noexcept {
        const char* begin = position;
        while (begin != lineEnd && kindOf(*begin) == DELIMITER)
            ++begin;
        if (begin == lineEnd || kindOf(*begin) == LINE_END) {
            position = begin;
            return {};
        }
        const char* end = begin + 1;
        while (end != lineEnd && kindOf(*end) == TEXT)
            ++end;
        position = end;
        return {begin, end};
    }

private:
    enum Kind : unsigned char { TEXT, DELIMITER, LINE_END };

    static constexpr std::array<Kind, 256> makeKinds() noexcept {
        std::array<Kind, 256> kinds{};
        for (const char delimiter : {' ', '\t', '\n', '\r', '\\'})
            kinds[static_cast<unsigned char>(delimiter)] = DELIMITER;
        kinds[0] = LINE_END;
        return kinds;
    }

    static Kind kindOf(char character) noexcept {
        static constexpr std::array<Kind, 256> KINDS = makeKinds();
        return KINDS[static_cast<unsigned char>(character)];
    }

    const char* position;
    const char* lineEnd;
};

}  // namespace obj_adapter
