// Whether a person looks at what is printed.
#pragma once

#include <string>

namespace obj_adapter::tool {

enum class Stream { OUTPUT, ERROR_OUTPUT };

bool isTerminal(Stream stream);

enum class Color { RED, YELLOW, GREEN };

// The text in the colour on a terminal that knows colours; the text itself
// elsewhere, and always with NO_COLOR in the environment, whatever its value but
// the empty one.
std::string colored(Stream stream, Color color, const std::string& text);

}  // namespace obj_adapter::tool
