// Lines, tokens and numbers with the C library: what the slow twins of the readers
// share. For tests; never for the library.
//
// Shares no code with the library's reading, but for hexadecimal numbers: C libraries
// have been seen to round the smallest of them the wrong way.
#pragma once

#include "obj/numberParsing.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <limits>
#include <stdexcept>
#include <string>

namespace obj_adapter::test {

inline constexpr char SLOW_DELIMITERS[] = " \t\n\r\\";

// Letters of ASCII alone; the keyword may be written in any case.
inline bool equalsSlowly(const std::string& token, const std::string& keyword) {
    const auto lower = [](std::string text) {
        for (char& character : text) {
            if (character >= 'A' && character <= 'Z')
                character = static_cast<char>(character - 'A' + 'a');
        }
        return text;
    };
    return lower(token) == lower(keyword);
}

// The next token of the line that strtok has begun, or null.
inline char* nextSlowToken() {
    return std::strtok(nullptr, SLOW_DELIMITERS);
}

inline double parseDoubleSlowly(const char* token) {
    if (token == nullptr)
        throw std::runtime_error("No float value found");
    if (std::strpbrk(token, "xX") != nullptr)
        return parseDouble(Token{token, token + std::strlen(token)});
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(token, &end);
    if (end == token)
        throw std::invalid_argument("invalid stod argument");
    if (errno == ERANGE && (std::isinf(value) || value == 0.0))
        throw std::out_of_range("stod argument out of range");
    return value;
}

inline int parseIntSlowly(const std::string& text) {
    if (text.empty())
        throw std::runtime_error("No integer found");
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (end == text.c_str())
        throw std::invalid_argument("invalid stoi argument");
    if (errno == ERANGE || value < std::numeric_limits<int>::min() ||
        value > std::numeric_limits<int>::max())
        throw std::out_of_range("stoi argument out of range");
    return static_cast<int>(value);
}

inline bool isAtSlowEnd(std::istream& stream) {
    return stream.peek() == std::istream::traits_type::eof();
}

// The next line, joined with the one behind it where it ends in a backslash.
inline std::string nextSlowLine(std::istream& stream) {
    std::string line;
    std::getline(stream, line);
    if (line.empty() || line.back() != '\\')
        return line;
    line.pop_back();
    std::string continuation;
    std::getline(stream, continuation);
    return line + continuation;
}

}  // namespace obj_adapter::test
