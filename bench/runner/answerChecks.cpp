// Answers before times.
#include "inputs/shapes.h"
#include "runner/suites.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <stdexcept>

namespace obj_adapter::bench {

namespace {

// Of the files whose printed models are hashed.
constexpr double MEGABYTES = 0.2;

const std::vector<std::vector<std::string>> SETTINGS = {
    {}, {"compacted"}, {"compacted", "rounds=1"}};

std::string settingName(const std::vector<std::string>& setting) {
    return setting.empty() ? "read" : setting.back();
}

// "grid read" to the hash of its printed model.
std::map<std::string, std::string> findAnswers(const Session& session) {
    std::map<std::string, std::string> answers;
    for (const Shape& shape : getShapes()) {
        const std::string file = session.inputs.provide(shape.name, MEGABYTES);
        for (const std::vector<std::string>& setting : SETTINGS) {
            std::vector<std::string> arguments = {"printed", file};
            arguments.insert(arguments.end(), setting.begin(), setting.end());
            const std::string name = std::string(shape.name) + " " + settingName(setting);
            answers[name] = runContenderProcess(session.ours(name, arguments)).answer;
        }
    }
    return answers;
}

std::map<std::string, std::string> readAnswers(const std::string& fileName) {
    std::map<std::string, std::string> answers;
    std::ifstream file(fileName);
    for (std::string shape, setting, answer; file >> shape >> setting >> answer;)
        answers[shape + " " + setting] = answer;
    return answers;
}

}  // namespace

void checkAnswers(const Session& session) {
    std::fprintf(stderr, "checking answers\n");
    runContenderProcess(session.stage("slow twins", {"check"}));
    const std::map<std::string, std::string> stored = readAnswers(session.answerFile);
    for (const auto& [name, answer] : findAnswers(session)) {
        const auto found = stored.find(name);
        if (found == stored.end() || found->second != answer)
            throw std::runtime_error("the model of " + name + " is not the stored one");
    }
}

void storeAnswers(const Session& session) {
    std::ofstream file(session.answerFile);
    for (const auto& [name, answer] : findAnswers(session))
        file << name << " " << answer << "\n";
}

}  // namespace obj_adapter::bench
