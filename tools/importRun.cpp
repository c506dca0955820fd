// Imports, prints messages and takes the stages' times. Covered by tests/tools.
#include "importRun.h"

#include "interrupt.h"
#include "progressLine.h"
#include "terminal.h"
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

// The converter takes a name without a directory for a directory.
constexpr std::string_view CURRENT_DIRECTORY = "./";

bool hasDirectory(const std::string& fileName) {
    return fileName.find_first_of("/\\") != std::string::npos;
}

// What an import tells while it runs.
class RunningImport {
public:
    RunningImport(ObjConverter& runningConverter, const ImportSettings& importSettings,
                  const MessageReceiver& messageReceiver)
        : converter(runningConverter),
          inputName(importSettings.fileName),
          hasOwnDirectory(hasDirectory(importSettings.fileName)),
          receiver(messageReceiver) {}

    void receive(int level, const char* text) {
        stages.receive(text, Clock::now());
        noteLibrary(text);
        progress.erase();
        const ImportMessage message = locate({level, text, {}, 0});
        // That the import was cancelled is for the one who did it, whatever the verb.
        if (InterruptWatch::wasInterrupted() && level == ObjConverter::MESSAGE_ERROR)
            printMessage(message);
        else
            receiver(message);
    }

    void showProgress(int stage, double fraction) {
        switch (stage) {
            case ObjConverter::STAGE_READING:
                progress.show("reading", fraction);
                break;
            case ObjConverter::STAGE_COMPACTION:
                progress.show("compacting", fraction);
                break;
            default:
                progress.show("subdividing", fraction);
        }
    }

    StageClock stages;
    std::vector<LoadedLibrary> libraries;

private:
    // The library is announced after it is opened and before it is read.
    void noteLibrary(std::string_view text) {
        constexpr std::string_view ANNOUNCEMENT = "Using Mtllib file: ";
        if (text.starts_with(ANNOUNCEMENT))
            libraries.push_back(
                {std::string(text.substr(ANNOUNCEMENT.size())), converter.getNumberOfMaterials()});
    }

    // Messages behind the last line, on what was tallied, have no line, and those of
    // an import that gave up no file either. Names are those of the command line.
    ImportMessage locate(ImportMessage message) const {
        if (const char* fileName = converter.getCurrentFileName())
            message.fileName = fileName;
        else if (message.level == ObjConverter::MESSAGE_ERROR)
            message.fileName = inputName;
        if (!hasOwnDirectory && message.fileName.starts_with(CURRENT_DIRECTORY))
            message.fileName.erase(0, CURRENT_DIRECTORY.size());
        message.line = converter.getCurrentLineNumber();
        return message;
    }

    ObjConverter& converter;
    const std::string& inputName;
    bool hasOwnDirectory;
    const MessageReceiver& receiver;
    ProgressLine progress;
};

// The callback carries no pointer of the host's, so the running import is known
// to the whole file. Null when none runs.
RunningImport* runningImport = nullptr;

void receiveMessage(int level, const char* text) {
    if (runningImport != nullptr)
        runningImport->receive(level, text);
}

bool receiveProgress(void* import, int stage, double fraction) {
    static_cast<RunningImport*>(import)->showProgress(stage, fraction);
    return !InterruptWatch::wasInterrupted();
}

std::string levelPrefix(int level) {
    switch (level) {
        case ObjConverter::MESSAGE_ERROR:
            return colored(Stream::ERROR_OUTPUT, Color::RED, "error:") + " ";
        case ObjConverter::MESSAGE_WARNING:
            return colored(Stream::ERROR_OUTPUT, Color::YELLOW, "warning:") + " ";
        default:
            return "info: ";
    }
}

std::string placeOf(const ImportMessage& message) {
    if (message.fileName.empty() || message.level >= ObjConverter::MESSAGE_INFORMATION)
        return {};
    if (message.line <= 0)
        return printableText(message.fileName) + ": ";
    return printableText(message.fileName) + ":" + std::to_string(message.line) + ": ";
}

bool isInformationSilent = false;

// Some messages have two lines; the second is indented to show that it belongs
// to the first.
std::string formatMessage(const ImportMessage& message) {
    std::string text = placeOf(message) + levelPrefix(message.level);
    std::string_view rest = message.text;
    for (std::size_t lineEnd = rest.find('\n'); lineEnd != std::string_view::npos;
         lineEnd = rest.find('\n')) {
        text += printableText(rest.substr(0, lineEnd)) + "\n    ";
        rest.remove_prefix(lineEnd + 1);
    }
    return text + printableText(rest) + "\n";
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

void silenceInformation() {
    isInformationSilent = true;
}

void printMessage(const ImportMessage& message) {
    if (isInformationSilent && message.level >= ObjConverter::MESSAGE_INFORMATION)
        return;
    std::fputs(formatMessage(message).c_str(), stderr);
}

void printError(const std::string& text) {
    printMessage({ObjConverter::MESSAGE_ERROR, text, {}, 0});
}

void printWarning(const std::string& text) {
    printMessage({ObjConverter::MESSAGE_WARNING, text, {}, 0});
}

ImportRun runImport(const ImportSettings& settings, const MessageReceiver& receiver) {
    ImportRun run;
    ObjConverter* converter = ObjConverter::getInstance();
    if (converter == nullptr) {
        printError("not enough memory for the converter");
        return run;
    }
    applySettings(*converter, settings);

    const InterruptWatch watch;
    RunningImport running(*converter, settings, receiver);
    runningImport = &running;
    converter->setProgressCallback(receiveProgress, &running);
    const std::string directory(hasDirectory(settings.fileName) ? "" : CURRENT_DIRECTORY);
    const int code = converter->importObjDataFromFile((directory + settings.fileName).c_str());
    const Clock::time_point end = Clock::now();
    converter->setProgressCallback(nullptr, nullptr);
    runningImport = nullptr;
    if (InterruptWatch::wasInterrupted())
        throw Interrupted();

    run.succeeded = code == ObjConverter::CONVERTER_OK;
    run.stages = running.stages.getTimes(end);
    run.libraries = std::move(running.libraries);
    return run;
}

}  // namespace obj_adapter::tool
