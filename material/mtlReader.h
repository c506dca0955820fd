// Internal: reads MTL libraries into the material table.
#pragma once

#include <string>
#include <string_view>

namespace obj_adapter {

class MaterialTable;

// Reads the library by its own name (from the current directory) or, where that
// cannot be opened, from inputPath + libraryName, and reports which of them.
//
// Lines that cannot be used are reported and skipped; a newmtl that fails ends
// the library. Throws when neither file can be opened; what a message's callback
// throws passes on where nothing above handles it.
void readMtlFile(const std::string& inputPath, const std::string& libraryName,
                 MaterialTable& table);

// The same for a text in memory, under the name that the OBJ gives it.
void readMtlText(const std::string& libraryName, std::string_view text, MaterialTable& table);

}  // namespace obj_adapter
