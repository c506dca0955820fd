#include "tools/importedText.h"

#include <gtest/gtest.h>

namespace obj_adapter::test {

namespace {

tool::ImportSettings writeFiles(const TemporaryDirectory& directory, const std::string& objText,
                                const std::map<std::string, std::string>& otherFiles,
                                tool::ImportSettings settings) {
    for (const auto& [name, content] : otherFiles)
        directory.write(name, content);
    settings.fileName = directory.write("test.obj", objText);
    return settings;
}

}  // namespace

tool::ImportRun importQuietly(const tool::ImportSettings& settings) {
    ObjConverter::clearInstance();
    return tool::runImport(settings, [](const tool::ImportMessage&) {});
}

ImportedText::ImportedText(const std::string& objText,
                           const std::map<std::string, std::string>& otherFiles,
                           tool::ImportSettings importSettings)
    : settings(writeFiles(directory, objText, otherFiles, std::move(importSettings))),
      run(importQuietly(settings)),
      model(*ObjConverter::getInstance()) {
    EXPECT_TRUE(run.succeeded);
}

}  // namespace obj_adapter::test
