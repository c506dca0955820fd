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
        if (entry.is_regular_file() && entry.path().extension() == ".obj") {
            const std::u8string name = entry.path().generic_u8string();
            files.emplace_back(name.begin(), name.end());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace obj_adapter::test
