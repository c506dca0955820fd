// Image files that a GLB file refers to.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace obj_adapter::tool {

// By the first bytes, whatever the name.
bool isPngOrJpeg(const std::filesystem::path& image);

// Where the image is from the folder's point of view, percent-encoded; nothing if
// no relative path leads there.
std::optional<std::string> makeUri(const std::filesystem::path& image,
                                   const std::filesystem::path& folder);

}  // namespace obj_adapter::tool
