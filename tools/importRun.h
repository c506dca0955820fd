// One import for a verb of the tool: settings in, messages printed as they
// come, the result and the time of each stage out.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace obj_adapter::tool {

// The defaults are the library's own.
struct ImportSettings {
    std::string fileName;
    std::string subdivisionLimit;
    int subdivisionRounds = 0;
    bool compaction = true;
    bool hierarchy = false;
    bool reverseNames = false;
    bool fullNames = false;
};

// A stage that ran.
struct StageTime {
    std::string name;
    std::chrono::duration<double, std::milli> time;
    bool finished;  // false: the stage gave up
};

struct ImportRun {
    bool succeeded = false;
    std::vector<StageTime> stages;
};

// Imports into the process's converter, which keeps the model. Messages go to
// the standard error output, each with the word for its level in front.
ImportRun runImport(const ImportSettings& settings);

}  // namespace obj_adapter::tool
