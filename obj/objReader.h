// Internal: reads OBJ files into a model. Hosts call
// ObjConverter::importObjDataFromFile.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace obj_adapter {

struct ConverterSettings;
struct ObjModel;

// How a host without files hands over the material libraries of an OBJ text.
struct HostLibraries {
    // Gives the library's text, which holds until the import returns; false if there
    // is no such library. Null: there is none at all.
    bool (*open)(void* userData, const char* libraryName, const char** text,
                 std::size_t* size) = nullptr;
    void* userData = nullptr;
};

// Reads inputPath + inputFile and the material libraries that it names, and
// appends to the model's tables. Bad lines are repaired or skipped and reported.
//
// Throws the failures of opening as they are, and std::runtime_error "Unable to
// read obj file." after a failure that ended the reading, which has been
// reported by then; what was read so far stays in the model.
void readObjFile(const std::string& inputPath, const std::string& inputFile,
                 const ConverterSettings& settings, ObjModel& model);

// The same for a text in memory and libraries of the host's; name is what the file
// would be called.
void readObjText(const std::string& name, std::string_view text, const HostLibraries& libraries,
                 const ConverterSettings& settings, ObjModel& model);

}  // namespace obj_adapter
