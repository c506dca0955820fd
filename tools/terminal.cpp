// Whether output goes to a terminal: the one place of the program that asks the
// operating system. Covered by tests/tools/terminalOutput.cmake.
#include "terminal.h"

#include <cstdlib>
#include <string_view>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace obj_adapter::tool {

namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

#if defined(_WIN32)

HANDLE handleOf(Stream stream) {
    return GetStdHandle(stream == Stream::OUTPUT ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

// Consoles since Windows 10 know the sequences once they are asked to.
bool knowsColors(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0 &&
           SetConsoleMode(handleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

#else

bool knowsColors(Stream) {
    const char* terminal = std::getenv("TERM");
    return terminal != nullptr && std::string_view(terminal) != "dumb";
}

#endif

bool wantsColor(Stream stream) {
    return isTerminal(stream) && !isSet("NO_COLOR") && knowsColors(stream);
}

}  // namespace

bool isTerminal(Stream stream) {
#if defined(_WIN32)
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
#else
    return isatty(stream == Stream::OUTPUT ? STDOUT_FILENO : STDERR_FILENO) != 0;
#endif
}

std::string colored(Stream stream, Color color, const std::string& text) {
    static const bool COLORS_OF_OUTPUT = wantsColor(Stream::OUTPUT);
    static const bool COLORS_OF_ERRORS = wantsColor(Stream::ERROR_OUTPUT);
    if (!(stream == Stream::OUTPUT ? COLORS_OF_OUTPUT : COLORS_OF_ERRORS))
        return text;
    const char* sequence = color == Color::RED      ? "\x1b[1;31m"
                           : color == Color::YELLOW ? "\x1b[1;33m"
                                                    : "\x1b[1;32m";
    return sequence + text + "\x1b[0m";
}

}  // namespace obj_adapter::tool
