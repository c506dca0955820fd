// Text for a person at a terminal. Covered by tests/tools.
#include "terminalText.h"

#include <cstdio>

namespace obj_adapter::tool {

namespace {

// Longer names only push the rest of the list off the screen.
constexpr std::size_t MAX_NAME_BYTES = 120;

bool isControl(char byte) {
    constexpr unsigned char FIRST_PRINTABLE = 0x20;
    constexpr unsigned char DELETE = 0x7F;
    const auto code = static_cast<unsigned char>(byte);
    return code < FIRST_PRINTABLE || code == DELETE;
}

// A byte of a UTF-8 sequence other than its first.
bool isContinuation(char byte) {
    constexpr unsigned TOP_BITS = 0xC0U;
    constexpr unsigned CONTINUATION = 0x80U;
    return (static_cast<unsigned char>(byte) & TOP_BITS) == CONTINUATION;
}

}  // namespace

std::string printableText(std::string_view text) {
    std::string printable;
    printable.reserve(text.size());
    for (const char byte : text) {
        if (!isControl(byte)) {
            printable += byte;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(byte));
        printable += escape;
    }
    return printable;
}

std::string printableName(std::string_view name, bool whole) {
    if (whole || name.size() <= MAX_NAME_BYTES)
        return printableText(name);
    std::size_t end = MAX_NAME_BYTES;
    while (end > 0 && isContinuation(name[end]))
        --end;
    return printableText(name.substr(0, end)) + "...";
}

std::string numberColumn(std::size_t value, int width) {
    char text[64];
    std::snprintf(text, sizeof text, "%*zu", width, value);
    return text;
}

std::string numberColumn(double value, int width) {
    char text[64];
    std::snprintf(text, sizeof text, "%*.6g", width, value);
    return text;
}

std::string textColumn(std::string text, std::size_t width) {
    if (text.size() < width)
        text.resize(width, ' ');
    return text;
}

}  // namespace obj_adapter::tool
