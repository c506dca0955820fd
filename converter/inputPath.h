// Internal: how the settings part a path into directory and file.
#pragma once

#include <string>
#include <string_view>

namespace obj_adapter {

struct ConverterSettings;

// A null text of the host's counts as the empty one.
inline std::string_view textOrEmpty(const char* text) noexcept {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

// The text before the last '.', or all of it.
std::string withoutExtension(std::string_view fileName);

// Each parts the path at the last '/' or '\' and stores both halves, or keeps
// both earlier values and throws std::bad_alloc. The directory gets a "/" at
// its end, whatever the separator was. Without any separator the whole text is
// the directory and the file is empty.
void setInputFromPath(ConverterSettings& settings, const char* path);

// The same, and the file loses its extension.
void setOutputFromPath(ConverterSettings& settings, const char* path);

}  // namespace obj_adapter
