// Kinds and names of image files. Covered by tests/tools/glbWriterTest.cpp.
#include "imageFiles.h"

#include "textureFiles.h"

#include <array>
#include <fstream>
#include <string_view>
#include <system_error>

namespace obj_adapter::tool {

namespace {

constexpr std::string_view PNG_BEGINNING = "\x89PNG\r\n\x1a\n";
constexpr std::string_view JPEG_BEGINNING = "\xff\xd8\xff";

bool isUnreserved(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

// RFC 3986, with the slash left between the parts of a path.
std::string percentEncoded(std::string_view path) {
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    constexpr unsigned BASE = 16;
    std::string encoded;
    for (const char byte : path) {
        if (isUnreserved(byte) || byte == '/') {
            encoded += byte;
            continue;
        }
        const auto code = static_cast<unsigned char>(byte);
        encoded += '%';
        encoded += DIGITS[code / BASE];
        encoded += DIGITS[code % BASE];
    }
    return encoded;
}

}  // namespace

bool isPngOrJpeg(const std::filesystem::path& image) {
    std::array<char, PNG_BEGINNING.size()> bytes{};
    std::ifstream file(image, std::ios::binary);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const std::string_view beginning(bytes.data(), static_cast<std::size_t>(file.gcount()));
    return beginning.starts_with(PNG_BEGINNING) || beginning.starts_with(JPEG_BEGINNING);
}

std::optional<std::string> makeUri(const std::filesystem::path& image,
                                   const std::filesystem::path& folder) {
    std::error_code failure;
    const std::filesystem::path base = folder.empty() ? std::filesystem::path(".") : folder;
    const std::filesystem::path relative = std::filesystem::proximate(image, base, failure);
    if (failure || relative.empty() || relative.is_absolute())
        return std::nullopt;
    return percentEncoded(nameOf(relative));
}

}  // namespace obj_adapter::tool
