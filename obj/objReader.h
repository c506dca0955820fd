// Internal: reads OBJ files into a model. Hosts call
// ObjConverter::importObjDataFromFile.
#pragma once

#include <string>

namespace obj_adapter {

struct ConverterSettings;
struct ObjModel;

// Reads inputPath + inputFile and the material libraries that it names, and
// appends to the model's tables. Bad lines are repaired or skipped and reported.
//
// Throws the failures of opening as they are, and std::runtime_error "Unable to
// read obj file." after a failure that ended the reading, which has been
// reported by then; what was read so far stays in the model.
void readObjFile(const std::string& inputPath, const std::string& inputFile,
                 const ConverterSettings& settings, ObjModel& model);

}  // namespace obj_adapter
