// Internal: statement keywords and option names, compared without regard to
// ASCII letter case.
#pragma once

#include "obj/lineTokens.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace obj_adapter {

constexpr char lowerCase(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

constexpr bool equalsIgnoringCase(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lowerCase(a[i]) != lowerCase(b[i]))
            return false;
    }
    return true;
}

// A keyword's first eight characters in lower case, as one number: unequal
// codes mean unequal keywords, so that a table is searched by numbers alone.
constexpr std::uint64_t keywordCode(std::string_view keyword) noexcept {
    std::uint64_t code = 0;
    for (std::size_t i = 0; i < keyword.size() && i < 8; ++i)
        code = code << 8U | static_cast<unsigned char>(lowerCase(keyword[i]));
    return code;
}

// One row of a table of statements: the keyword and what reads it.
template <typename Handler>
struct KeywordRow {
    constexpr KeywordRow(std::string_view rowKeyword, Handler rowHandler) noexcept
        : keyword(rowKeyword), code(keywordCode(rowKeyword)), handler(rowHandler) {}

    std::string_view keyword;
    std::uint64_t code;
    Handler handler;
};

// The first row whose keyword matches, or null.
template <typename Handler, std::size_t ROWS>
const KeywordRow<Handler>* findKeyword(const KeywordRow<Handler> (&table)[ROWS],
                                       std::string_view keyword) noexcept {
    const std::uint64_t code = keywordCode(keyword);
    for (const KeywordRow<Handler>& row : table) {
        if (row.code == code && equalsIgnoringCase(row.keyword, keyword))
            return &row;
    }
    return nullptr;
}

}  // namespace obj_adapter
