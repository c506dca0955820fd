// A directory of a test's own.
#pragma once

#include <filesystem>
#include <string>

namespace obj_adapter::test {

// Made empty, and removed with all that is in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    // UTF-8, with forward slashes and one at the end.
    const std::string& getPath() const { return path; }

    // Writes the bytes as they are; returns the file's path.
    std::string write(const std::string& fileName, const std::string& content) const;

private:
    std::string path;
};

// A UTF-8 text as a path of the platform.
std::filesystem::path pathFromUtf8(const std::string& text);

// The bytes of a file; the test fails if it cannot be read.
std::string readFileBytes(const std::string& fileName);

}  // namespace obj_adapter::test
