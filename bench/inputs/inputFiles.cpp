// Input files on demand. Used by generate_inputs and run_benchmarks.
#include "inputs/inputFiles.h"

#include "inputs/shapes.h"
#include "inputs/textSink.h"
#include "inputs/tiledModels.h"

#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace obj_adapter::bench {

namespace {

constexpr double BYTES_PER_MEGABYTE = 1e6;

void writeShape(const Shape& shape, const InputFolder& folder, const std::string& stem,
                std::int64_t bytes, const std::string& outputFile) {
    InputRequest request;
    request.bytes = bytes;
    request.seed = folder.seed;
    request.libraryName = stem + ".mtl";
    TextSink obj(outputFile);
    std::unique_ptr<TextSink> mtl;
    if (shape.hasLibrary)
        mtl = std::make_unique<TextSink>(folder.path + "/" + request.libraryName);
    shape.write(request, obj, mtl.get());
    obj.close();
    if (mtl)
        mtl->close();
}

}  // namespace

std::string InputFolder::provide(const std::string& shapeName, double megabytes) const {
    std::filesystem::create_directories(path);
    std::ostringstream stem;
    stem << shapeName << "_" << megabytes << "MB_" << seed;
    const std::string file = path + "/" + stem.str() + ".obj";
    if (std::filesystem::exists(file))
        return file;

    // Renamed when it is whole.
    const std::string unfinished = file + ".part";
    const auto bytes = static_cast<std::int64_t>(megabytes * BYTES_PER_MEGABYTE);
    if (shapeName == MODELS_SHAPE)
        writeTiledModels(modelFolder, unfinished, bytes);
    else if (const Shape* shape = findShape(shapeName))
        writeShape(*shape, *this, stem.str(), bytes, unfinished);
    else
        throw std::runtime_error("no such shape: " + shapeName);
    std::filesystem::rename(unfinished, file);
    return file;
}

}  // namespace obj_adapter::bench
