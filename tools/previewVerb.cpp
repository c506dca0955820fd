// Draws a picture of a model. Covered by tests/tools.
#include "previewVerb.h"

#include "exitCodes.h"
#include "importOptions.h"
#include "materialLook.h"
#include "modelAccess.h"
#include "outputFile.h"
#include "picture.h"
#include "textureFiles.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <map>
#include <optional>
#include <string_view>

namespace obj_adapter::tool {

namespace {

constexpr int MAX_PIXELS = 8192;  // in each direction
constexpr int MAX_SAMPLES = 8;    // in each direction of a pixel

// In a whole picture: 20 bytes each.
constexpr long long MAX_ALL_SAMPLES = 100'000'000;

// A whole number from 1 to the limit.
std::optional<int> parseSize(std::string_view text, int limit) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, number);
    if (failure != std::errc() || stop != end || number < 1 || number > limit)
        return std::nullopt;
    return number;
}

// "960x720".
std::optional<std::pair<int, int>> parseDimensions(const std::string& text) {
    const std::size_t cross = text.find('x');
    if (cross == std::string::npos)
        return std::nullopt;
    const std::optional<int> width = parseSize(std::string_view(text).substr(0, cross), MAX_PIXELS);
    const std::optional<int> height =
        parseSize(std::string_view(text).substr(cross + 1), MAX_PIXELS);
    if (!width || !height)
        return std::nullopt;
    return std::pair(*width, *height);
}

// "rrggbb" with or without "#", "white", "black" or "transparent".
std::optional<PixelColor> parseColor(const std::string& text) {
    static const std::map<std::string, PixelColor> NAMES = {
        {"white", {255, 255, 255, 255}}, {"black", {0, 0, 0, 255}}, {"transparent", {0, 0, 0, 0}}};
    const auto name = NAMES.find(text);
    if (name != NAMES.end())
        return name->second;
    const std::string_view digits = std::string_view(text).substr(text.starts_with('#') ? 1 : 0);
    constexpr std::size_t DIGIT_COUNT = 6;
    constexpr int BASE = 16;
    unsigned value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, failure] = std::from_chars(digits.data(), end, value, BASE);
    if (digits.size() != DIGIT_COUNT || failure != std::errc() || stop != end)
        return std::nullopt;
    return PixelColor{static_cast<std::uint8_t>(value >> 16U),
                      static_cast<std::uint8_t>((value >> 8U) & 0xFFU),
                      static_cast<std::uint8_t>(value & 0xFFU), 255};
}

// As the command line wants to hear of faults: an empty text is none.
std::string checkDimensions(const std::string& text) {
    return parseDimensions(text)
               ? std::string()
               : text + " is not WIDTHxHEIGHT, each from 1 to " + std::to_string(MAX_PIXELS);
}

std::string checkColor(const std::string& text) {
    return parseColor(text) ? std::string()
                            : text + " is neither RRGGBB nor one of white, black, transparent";
}

// A name without an ending is left to whoever gave it: "/dev/stdout".
std::string checkPictureName(const std::string& text) {
    const std::string ending = nameOf(pathOf(text).extension());
    return ending.empty() || ending == ".png" || ending == ".PNG"
               ? std::string()
               : text + " does not end in .png, which is what is written";
}

void addCameraOptions(CLI::App& command, PictureOptions& options) {
    constexpr const char* GROUP = "Camera";
    static const std::map<std::string, UpAxis> AXES = {{"y", UpAxis::Y}, {"z", UpAxis::Z}};
    command
        .add_option_function<std::string>(
            "--up", [&options](const std::string& axis) { options.up = AXES.at(axis); },
            "The axis that points up: y (the default) or z")
        ->type_name("AXIS")
        ->check(CLI::IsMember(AXES).description(""))
        ->group(GROUP);
    command
        .add_option("--azimuth", options.azimuth,
                    "Degrees around the up axis, from the front to the right (35)")
        ->type_name("DEGREES")
        ->check(CLI::Range(-360.0, 360.0).description(""))
        ->group(GROUP);
    command.add_option("--elevation", options.elevation, "Degrees above the horizon (22)")
        ->type_name("DEGREES")
        ->check(CLI::Range(-90.0, 90.0).description(""))
        ->group(GROUP);
}

void addPictureOptions(CLI::App& command, PictureOptions& options) {
    constexpr const char* GROUP = "Picture";
    command
        .add_option_function<std::string>(
            "--size",
            [&options](const std::string& size) {
                std::tie(options.width, options.height) = parseDimensions(size).value();
            },
            "Pixels (960x720)")
        ->type_name("WIDTHxHEIGHT")
        ->check(CLI::Validator(checkDimensions, ""))
        ->group(GROUP);
    command
        .add_option("--samples", options.samples,
                    "Samples of a pixel in each direction, 1 to 8 (3)")
        ->type_name("N")
        ->check(CLI::Range(1, MAX_SAMPLES).description(""))
        ->group(GROUP);
    command
        .add_option_function<std::string>(
            "--background",
            [&options](const std::string& color) {
                options.background = parseColor(color).value();
            },
            "RRGGBB in hexadecimal digits, white, black or transparent (dee3ea)")
        ->type_name("COLOR")
        ->check(CLI::Validator(checkColor, ""))
        ->group(GROUP);
    command
        .add_option("--crease-angle", options.creaseAngle,
                    "Where the file has no normals, smooth over edges of at most so many degrees "
                    "(40)")
        ->type_name("DEGREES")
        ->check(CLI::Range(0.0, 180.0).description(""))
        ->group(GROUP);
}

}  // namespace

void PreviewVerb::addTo(CLI::App& program) {
    CLI::App& command = *program.add_subcommand(
        "preview",
        "A picture of a model in its materials' colours, as a PNG file; images of "
        "textures are not drawn");
    addInputFile(command, settings);
    command.add_option("-o,--output", outputName, "The PNG file to write")
        ->type_name("OUT.png")
        ->check(CLI::Validator(checkPictureName, ""))
        ->required();
    addCameraOptions(command, options);
    addPictureOptions(command, options);
    addImportOptions(command, settings);
}

int PreviewVerb::run() {
    const long long samples =
        1LL * options.width * options.height * options.samples * options.samples;
    if (samples > MAX_ALL_SAMPLES) {
        printError("--size and --samples make " + std::to_string(samples) +
                   " samples; there may be " + std::to_string(MAX_ALL_SAMPLES));
        return EXIT_CODE_USAGE;
    }
    const ImportRun importRun = runImport(settings);
    ObjConverter* converter = ObjConverter::getInstance();
    if (converter == nullptr || !importRun.succeeded) {
        printError("nothing is drawn, as the import gave up");
        return EXIT_CODE_FAILURE;
    }
    const ModelAccess model(*converter);
    if (model.getNumberOfFaces() == 0)
        printWarning("there are no faces to draw");
    noteTakenForOpaque(model);
    OutputFile file(pathOf(outputName));
    file.write(encodePng(drawPicture(model, options)));
    file.commit();
    printMessage({ObjConverter::MESSAGE_INFORMATION, "Wrote " + outputName + ".", {}, 0});
    return EXIT_CODE_SUCCESS;
}

}  // namespace obj_adapter::tool
