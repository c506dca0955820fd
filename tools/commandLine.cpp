// The command line of the program. Covered by tests/tools.
#include "commandLine.h"

#include "checkVerb.h"
#include "convertVerb.h"
#include "exitCodes.h"
#include "helpText.h"
#include "importRun.h"
#include "infoVerb.h"
#include "manPage.h"
#include "previewVerb.h"
#include "programVersion.h"
#include "terminalText.h"
#include "treeVerb.h"
#include "verb.h"

#include <obj_adapter/obj_adapter.h>

#include <CLI/CLI.hpp>

#include <iostream>

namespace obj_adapter::tool {

namespace {

class HelpFormatter : public CLI::FormatterBase {
public:
    std::string make_help(const CLI::App* command, std::string, CLI::AppFormatMode) const override {
        return makeHelp(*command);
    }
};

// What is wrong, and where help is.
std::string describeMistake(const CLI::App* program, const CLI::Error& mistake) {
    std::string helped = "obj_adapter";
    for (const CLI::App* verb : program->get_subcommands())
        helped += " " + verb->get_name();
    return std::string("error: ") + mistake.what() + "\nSee " + helped + " --help.\n";
}

bool isVerb(const CLI::App& program, const std::string& word) {
    for (const CLI::App* verb : program.get_subcommands({})) {
        if (verb->get_name() == word)
            return true;
    }
    return false;
}

// Something stands where the verb should: a file more often than not.
std::string describeUnknownVerb(const CLI::App& program, const std::string& word) {
    std::string text = "there is no verb \"" + printableName(word, false) + "\"; ";
    if (word.ends_with(".obj"))
        return text + "did you mean: obj_adapter info " + printableText(word);
    text += "the verbs are";
    for (const CLI::App* verb : program.get_subcommands({}))
        text += " " + verb->get_name();
    return text;
}

// For the build alone: prints what is installed beside the program.
void addGenerator(CLI::App& app) {
    app.add_option_function<std::string>(
           "--generate",
           [&app](const std::string& what) {
               std::cout << (what == "man" ? makeManPage(app) : makeBashCompletion(app));
               throw CLI::Success();
           })
        ->check(CLI::IsMember({"man", "bash-completion"}))
        ->group("");
}

}  // namespace

CommandLine::CommandLine() : app(std::make_unique<CLI::App>(PROGRAM_DESCRIPTION, "obj_adapter")) {
    // "/data/a.obj" is a path on every system.
    app->allow_windows_style_options(false);
    app->formatter(std::make_shared<HelpFormatter>());
    app->failure_message(describeMistake);
    app->set_help_flag("-h,--help", "Print this help and exit");
    app->set_version_flag("--version", getProgramVersion(), "Print the version and exit");
    app->require_subcommand(1);
    addGenerator(*app);
    verbs.push_back(std::make_unique<InfoVerb>());
    verbs.push_back(std::make_unique<TreeVerb>());
    verbs.push_back(std::make_unique<CheckVerb>());
    verbs.push_back(std::make_unique<ConvertVerb>());
    verbs.push_back(std::make_unique<PreviewVerb>());
    for (const auto& verb : verbs)
        verb->addTo(*app);
}

CommandLine::~CommandLine() {
    ObjConverter::clearInstance();
}

int CommandLine::run(int argc, const char* const* argv) {
    if (argc < 2) {
        std::cerr << app->help();
        return EXIT_CODE_USAGE;
    }
    const std::string first = argv[1];
    if (!first.starts_with('-') && !isVerb(*app, first)) {
        printError(describeUnknownVerb(*app, first));
        return EXIT_CODE_USAGE;
    }
    try {
        app->parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        // Help and version end the parse as well, with the code of success.
        return app->exit(end) == 0 ? EXIT_CODE_SUCCESS : EXIT_CODE_USAGE;
    }
    // The subcommands stand in the order of the verbs, and one was given.
    std::size_t verb = 0;
    for (const CLI::App* command : app->get_subcommands({})) {
        if (command->parsed())
            return verbs[verb]->run();
        ++verb;
    }
    return EXIT_CODE_USAGE;
}

}  // namespace obj_adapter::tool
