#include "support/importText.h"

#include "support/messageRecorder.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

namespace obj_adapter::test {

namespace {

std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
        text.replace(at, from.size(), to);
        at += to.size();
    }
    return text;
}

std::string between(const std::string& text, const std::string& begin, const std::string& end) {
    const std::size_t from = text.find(begin);
    if (from == std::string::npos)
        return {};
    const std::size_t start = from + begin.size();
    return text.substr(start, text.find(end, start) - start);
}

}  // namespace

ModelState expectedState(int code, const ImportOptions& options) {
    if (code != ObjConverter::CONVERTER_OK)
        return ModelState::ENDED_EARLY;
    if (options.rounds > 0)
        return ModelState::SUBDIVIDED;
    return options.compaction ? ModelState::COMPACTED : ModelState::READ;
}

ImportResult importFile(const std::string& fileName, const ImportOptions& options) {
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setDataCompaction(options.compaction);
    converter->setUseGroupNameHierarchy(options.hierarchy);
    converter->setHierarchyReverseGroupNames(options.reverse);
    converter->setHierarchyShowLastNamesOnly(options.showLastNamesOnly);
    converter->setSkipPolygonsWithoutEar(options.skipPolygonsWithoutEar);
    converter->setSubdivisionRounds(options.limitType.c_str(), options.rounds);

    MessageRecorder recorder;
    ImportResult result;
    result.code = converter->importObjDataFromFile(fileName.c_str());
    result.model = viewOf(*converter);
    result.allMessages = recorder.getText();
    result.readingMessages =
        between(result.allMessages, "3|Reading input file...\n", "3|Done reading input.\n");
    EXPECT_EQ(findViolations(result.model, expectedState(result.code, options)), "") << fileName;
    return result;
}

ImportResult importText(const std::string& objText, const ImportOptions& options) {
    const TemporaryDirectory directory;
    for (const auto& [name, content] : options.otherFiles)
        directory.write(name, content);
    ImportResult result = importFile(directory.write(options.fileName, objText), options);
    result.allMessages = replaceAll(result.allMessages, directory.getPath(), "{dir}");
    result.readingMessages = replaceAll(result.readingMessages, directory.getPath(), "{dir}");
    return result;
}

}  // namespace obj_adapter::test
