// A file that is there as a whole or not at all.
#pragma once

#include "interrupt.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace obj_adapter::tool {

// Writes beside the file that is meant and takes its place in the end. A device
// or a pipe is written to at once.
//
// An interrupt is only noted while it lives, whatever else is done meanwhile; the next
// write() or commit() throws Interrupted, so that nothing half written is left behind.
class OutputFile {
public:
    // Throws std::runtime_error if the file cannot be opened.
    explicit OutputFile(const std::filesystem::path& target);

    // Removes what was not committed.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(const std::string& bytes);

    // Throws std::runtime_error if not all could be written.
    void commit();

private:
    InterruptWatch watch;
    std::filesystem::path finalPath;
    std::filesystem::path writtenPath;
    std::ofstream stream;
    bool committed = false;
};

}  // namespace obj_adapter::tool
