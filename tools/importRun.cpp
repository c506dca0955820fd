// Imports, prints messages and takes the stages' times. Covered by tests/tools.
#include "importRun.h"

#include "terminalText.h"

#include <obj_adapter/obj_adapter.h>

#include <array>
#include <cstdio>
#include <string_view>

namespace obj_adapter::tool {

namespace {

using Clock = std::chrono::steady_clock;

// A stage has no call of its own: its first and its last message bound it.
struct StageBounds {
    const char* name;
    std::string_view firstMessage;
    std::string_view lastMessage;
};

constexpr StageBounds STAGES[] = {
    {"reading", "Reading input file...", "Done reading input."},
    {"reversing", "Reversing the order of group names...", "Done reversing group names."},
    {"compacting", "Compacting...", "Done compacting."},
    {"subdividing", "Subdividing...", "Done Subdividing."},
};

// Notes when each stage began and ended.
class StageClock {
public:
    void receive(std::string_view message, Clock::time_point now) {
        for (std::size_t stage = 0; stage < records.size(); ++stage) {
            Record& record = records[stage];
            if (message == STAGES[stage].firstMessage)
                record = {true, false, now, now};
            else if (message == STAGES[stage].lastMessage)
                record.finished = true, record.end = now;
        }
    }

    // A stage that is still open gave up: it lasted until the import ended.
    std::vector<StageTime> getTimes(Clock::time_point endOfImport) const {
        std::vector<StageTime> times;
        for (std::size_t stage = 0; stage < records.size(); ++stage) {
            const Record& record = records[stage];
            if (!record.began)
                continue;
            const Clock::time_point end = record.finished ? record.end : endOfImport;
            times.push_back({STAGES[stage].name, end - record.begin, record.finished});
        }
        return times;
    }

private:
    struct Record {
        bool began = false;
        bool finished = false;
        Clock::time_point begin;
        Clock::time_point end;
    };
    std::array<Record, std::size(STAGES)> records;
};

// The callback carries no pointer of the host's, so the clock of the running
// import is known to the whole file. Null when none runs.
StageClock* runningClock = nullptr;

const char* levelWord(int level) {
    switch (level) {
        case ObjConverter::MESSAGE_ERROR:
            return "error";
        case ObjConverter::MESSAGE_WARNING:
            return "warning";
        default:
            return "info";
    }
}

// Some messages have two lines; the second is indented to show that it belongs
// to the first.
std::string formatMessage(int level, std::string_view message) {
    std::string text = std::string(levelWord(level)) + ": ";
    for (std::size_t lineEnd = message.find('\n'); lineEnd != std::string_view::npos;
         lineEnd = message.find('\n')) {
        text += printableText(message.substr(0, lineEnd)) + "\n    ";
        message.remove_prefix(lineEnd + 1);
    }
    return text + printableText(message) + "\n";
}

void receiveMessage(int level, const char* text) {
    const Clock::time_point now = Clock::now();
    if (runningClock != nullptr)
        runningClock->receive(text, now);
    std::fputs(formatMessage(level, text).c_str(), stderr);
}

// The library takes a name without a directory for a directory.
std::string withDirectory(const std::string& fileName) {
    return fileName.find_first_of("/\\") == std::string::npos ? "./" + fileName : fileName;
}

void applySettings(ObjConverter& converter, const ImportSettings& settings) {
    converter.setDataCompaction(settings.compaction);
    converter.setSubdivisionRounds(settings.subdivisionLimit.c_str(), settings.subdivisionRounds);
    converter.setUseGroupNameHierarchy(settings.hierarchy);
    converter.setHierarchyReverseGroupNames(settings.reverseNames);
    converter.setHierarchyShowLastNamesOnly(!settings.fullNames);
    // A program that is handed any file must come back from each.
    converter.setSkipPolygonsWithoutEar(true);
    converter.setMsgCallback(receiveMessage);
}

}  // namespace

ImportRun runImport(const ImportSettings& settings) {
    ImportRun run;
    ObjConverter* converter = ObjConverter::getInstance();
    if (converter == nullptr) {
        std::fputs("error: not enough memory for the converter\n", stderr);
        return run;
    }
    applySettings(*converter, settings);

    StageClock clock;
    runningClock = &clock;
    const int code = converter->importObjDataFromFile(withDirectory(settings.fileName).c_str());
    const Clock::time_point end = Clock::now();
    runningClock = nullptr;

    run.succeeded = code == ObjConverter::CONVERTER_OK;
    run.stages = clock.getTimes(end);
    return run;
}

}  // namespace obj_adapter::tool
