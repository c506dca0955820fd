// Writes files as a whole. Covered by tests/tools/outputFileTest.cpp.
#include "outputFile.h"

#include "textureFiles.h"

#include <stdexcept>
#include <system_error>

namespace obj_adapter::tool {

namespace {

bool isDevice(const std::filesystem::path& path) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(path, failure);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
           !std::filesystem::is_directory(status);
}

std::filesystem::path withPartSuffix(std::filesystem::path path) {
    path += ".part";
    return path;
}

void stopIfInterrupted() {
    if (InterruptWatch::wasInterrupted())
        throw Interrupted();
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& target)
    : finalPath(target),
      writtenPath(isDevice(target) ? target : withPartSuffix(target)),
      stream(writtenPath, std::ios::binary | std::ios::trunc) {
    if (!stream)
        throw std::runtime_error("cannot write " + nameOf(finalPath));
}

OutputFile::~OutputFile() {
    if (committed || writtenPath == finalPath)
        return;
    stream.close();
    std::error_code ignored;
    std::filesystem::remove(writtenPath, ignored);
}

void OutputFile::write(const std::string& bytes) {
    stopIfInterrupted();
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void OutputFile::commit() {
    stopIfInterrupted();
    stream.close();
    std::error_code failure;
    if (stream && writtenPath != finalPath)
        std::filesystem::rename(writtenPath, finalPath, failure);
    if (!stream || failure)
        throw std::runtime_error("cannot write " + nameOf(finalPath));
    committed = true;
}

}  // namespace obj_adapter::tool
