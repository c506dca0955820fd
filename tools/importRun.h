// One import for a verb of the tool: settings in, messages handed on as they
// come, the result and the time of each stage out.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace obj_adapter::tool {

// The defaults are the library's own, but for the tree of groups, which is of
// use only when it is nested.
struct ImportSettings {
    std::string fileName;
    std::string subdivisionLimit;
    int subdivisionRounds = 0;
    bool compaction = true;
    bool hierarchy = true;
    bool reverseNames = false;
    bool fullNames = false;
};

// What the converter said, and the place in a file that it was reading then.
struct ImportMessage {
    int level;
    std::string text;
    std::string fileName;  // empty if the place is not known
    int line = 0;          // from 1; 0 if not known
};

// A stage that ran.
struct StageTime {
    std::string name;
    std::chrono::duration<double, std::milli> time;
    bool finished;  // false: the stage gave up
};

// A material library that was opened: its materials begin at this index.
struct LoadedLibrary {
    std::string fileName;
    int firstMaterial;
};

struct ImportRun {
    bool succeeded = false;
    std::vector<StageTime> stages;
    std::vector<LoadedLibrary> libraries;
};

using MessageReceiver = std::function<void(const ImportMessage&)>;

// From here on nothing is printed of the level of information.
void silenceInformation();

// Prints to the standard error output, with the word for the level in front.
void printMessage(const ImportMessage& message);

// A line of the program's own, in the same form.
void printError(const std::string& text);
void printWarning(const std::string& text);

// Imports into the process's converter, which keeps the model. Throws Interrupted
// when the user presses Ctrl-C meanwhile; the import is over then, and has said so.
ImportRun runImport(const ImportSettings& settings, const MessageReceiver& receiver = printMessage);

}  // namespace obj_adapter::tool
