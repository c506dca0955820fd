#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <system_error>

namespace obj_adapter::test {

namespace {

std::string utf8FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

}  // namespace

std::filesystem::path pathFromUtf8(const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

TemporaryDirectory::TemporaryDirectory() {
    static std::atomic<int> counter = 0;
    const auto base = std::filesystem::temp_directory_path();
    // Tests run side by side: the clock and the counter part them, and a name
    // that is taken is not used.
    std::filesystem::path directory;
    do {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        directory =
            base / ("obj_adapter_test_" + std::to_string(now) + "_" + std::to_string(counter++));
    } while (!std::filesystem::create_directory(directory));
    path = utf8FromPath(directory) + "/";
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(pathFromUtf8(path), ignored);
}

std::string TemporaryDirectory::write(const std::string& fileName,
                                      const std::string& content) const {
    std::ofstream stream(pathFromUtf8(path + fileName), std::ios::binary);
    stream << content;
    stream.close();
    EXPECT_TRUE(stream) << "cannot write " << path << fileName;
    return path + fileName;
}

std::string readFileBytes(const std::string& fileName) {
    std::ifstream stream(pathFromUtf8(fileName), std::ios::binary);
    EXPECT_TRUE(stream) << "cannot read " << fileName;
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace obj_adapter::test
