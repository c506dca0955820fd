// Paths into directory and file. Covered by tests/converter/converterTest.cpp.
#include "converter/inputPath.h"

#include "converter/converterState.h"

#include <utility>

namespace obj_adapter {

namespace {

struct SplitPath {
    std::string directory;  // with "/" at its end
    std::string_view file;
};

SplitPath splitPath(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\");
    SplitPath parts;
    parts.directory = path.substr(0, separator);
    parts.directory += '/';
    if (separator != std::string_view::npos)
        parts.file = path.substr(separator + 1);
    return parts;
}

}  // namespace

std::string withoutExtension(std::string_view fileName) {
    return std::string(fileName.substr(0, fileName.rfind('.')));
}

void setInputFromPath(ConverterSettings& settings, const char* path) {
    SplitPath parts = splitPath(textOrEmpty(path));
    settings.inputFile = std::string(parts.file);
    settings.inputPath = std::move(parts.directory);
}

void setOutputFromPath(ConverterSettings& settings, const char* path) {
    SplitPath parts = splitPath(textOrEmpty(path));
    settings.outputFile = withoutExtension(parts.file);
    settings.outputPath = std::move(parts.directory);
}

}  // namespace obj_adapter
