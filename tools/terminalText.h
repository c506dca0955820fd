// Text for a person at a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace obj_adapter::tool {

// Names and messages hold bytes of the file. Control characters become "\x1b",
// so that a file cannot steer the terminal; all else stays as it is.
std::string printableText(std::string_view text);

// The same for a name, cut to a readable length unless it is wanted whole.
std::string printableName(std::string_view name, bool whole);

// Right-aligned columns.
std::string numberColumn(std::size_t value, int width);
std::string numberColumn(double value, int width);

// Left-aligned column; a longer text is not cut.
std::string textColumn(std::string text, std::size_t width);

}  // namespace obj_adapter::tool
