// What a host's plugin would hold that is loaded when the first file is imported.
#pragma once

namespace obj_adapter::bench {

// The name under which the function below is found.
inline const char IMPORT_ONCE[] = "importOnce";

// Makes the converter, imports the file, destroys the converter; the number of
// faces, or less than zero.
using ImportOnce = int (*)(const char* fileName);

}  // namespace obj_adapter::bench
