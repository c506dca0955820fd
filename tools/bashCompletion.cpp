// Writes the completion for bash. Covered by tests/tools/generatedTexts.cmake.
#include "commandTexts.h"
#include "manPage.h"

namespace obj_adapter::tool {

namespace {

std::string longNamesOf(const CommandTexts& command) {
    std::string names;
    for (const OptionGroup& group : command.groups) {
        for (const OptionText& option : group.options)
            names += (names.empty() ? "" : " ") + option.names.back();
    }
    return names;
}

}  // namespace

// Options behind a hyphen, OBJ files and folders otherwise. What matches nothing is left
// to bash, which then offers any file: that is how a name for output is completed.
std::string makeBashCompletion(const CLI::App& program) {
    std::string verbs;
    std::string cases;
    for (const CommandTexts& verb : describeVerbs(program)) {
        verbs += (verbs.empty() ? "" : " ") + verb.name;
        cases += "        " + verb.name + ") options=\"" + longNamesOf(verb) + "\" ;;\n";
    }
    return "# Completion of obj_adapter for bash. Made by the program itself.\n"
           "_obj_adapter() {\n"
           "    local word=\"${COMP_WORDS[COMP_CWORD]}\" options=\"\"\n"
           "    COMPREPLY=()\n"
           "    if ((COMP_CWORD == 1)); then\n"
           "        mapfile -t COMPREPLY < <(compgen -W \"" +
           verbs +
           " --help --version\" -- \"$word\")\n"
           "        return\n"
           "    fi\n"
           "    case \"${COMP_WORDS[1]}\" in\n" +
           cases +
           "    esac\n"
           "    case \"${COMP_WORDS[COMP_CWORD-1]}\" in\n"
           "        --subdivide) options=\"ITERATIONS FACE_COUNT VERTEX_COUNT\" ;;\n"
           "        --up) options=\"y z\" ;;\n"
           "        -o | --output) return ;;\n"
           "        *)\n"
           "            if [[ \"$word\" != -* ]]; then\n"
           "                compopt -o filenames 2> /dev/null\n"
           "                mapfile -t COMPREPLY < <(\n"
           "                    compgen -f -X '!*.[oO][bB][jJ]' -- \"$word\"\n"
           "                    compgen -d -- \"$word\")\n"
           "                return\n"
           "            fi\n"
           "            ;;\n"
           "    esac\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$word\")\n"
           "}\n"
           "complete -o default -F _obj_adapter obj_adapter\n";
}

}  // namespace obj_adapter::tool
