#include "support/modelFiles.h"

#include "support/temporaryDirectory.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace obj_adapter::test {

std::string getModelFolder() {
    const char* folder = std::getenv("OBJ_ADAPTER_MODELS");
    return folder == nullptr ? std::string() : std::string(folder);
}

std::vector<std::string> findObjFiles(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(pathFromUtf8(folder))) {
        const std::u8string name = entry.path().generic_u8string();
        const std::u8string extension = entry.path().extension().u8string();
        if (entry.is_regular_file() && (extension == u8".obj" || extension == u8".OBJ"))
            files.emplace_back(name.begin(), name.end());
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace obj_adapter::test
