// The end of a verb that prints to the standard output.
#pragma once

namespace obj_adapter::tool {

// Writes what is left; the exit code is that of success only if all was written.
int finishOutput(bool succeeded);

}  // namespace obj_adapter::tool
