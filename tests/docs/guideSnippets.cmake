# Compiles every piece of C++ in the host guide as the body of a function, and runs them
# one after the other on one converter.
#
#     cmake -DGUIDE=... -DSCENE=... -DWORK=... -DCOMPILER=... "-DFLAGS=..."
#           [-DEMULATOR=...] [-DLIBRARY=file to put beside the program] -P guideSnippets.cmake
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/models)
configure_file(${SCENE} ${WORK}/models/cube.obj COPYONLY)

set(program "#include <obj_adapter/obj_adapter.h>\n")
foreach(header IN ITEMS atomic cstddef cstdio cstring string)
    string(APPEND program "#include <${header}>\n")
endforeach()
string(APPEND program "using namespace obj_adapter;\n")

# By positions, as CMake's lists end at semicolons.
file(READ ${GUIDE} rest)
set(count 0)
set(calls "")
string(FIND "${rest}" "```cpp\n" begin)
while(NOT begin EQUAL -1)
    math(EXPR begin "${begin} + 7")
    string(SUBSTRING "${rest}" ${begin} -1 rest)
    string(FIND "${rest}" "```" end)
    string(SUBSTRING "${rest}" 0 ${end} snippet)
    math(EXPR end "${end} + 3")
    string(SUBSTRING "${rest}" ${end} -1 rest)
    math(EXPR count "${count} + 1")
    string(APPEND program
        "static void piece${count}([[maybe_unused]] ObjConverter* converter) {\n${snippet}}\n")
    string(APPEND calls "    piece${count}(converter);\n")
    string(FIND "${rest}" "```cpp\n" begin)
endwhile()
if(count LESS 7)
    message(FATAL_ERROR "only ${count} pieces of C++ in ${GUIDE}")
endif()
string(APPEND program "int main() {\n    auto* converter = ObjConverter::getInstance();\n${calls}"
    "    std::printf(\"%d pieces, %d faces\\n\", ${count}, converter->getNumberOfFaces());\n"
    "    ObjConverter::clearInstance();\n}\n")
file(WRITE ${WORK}/pieces.cpp "${program}")

separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
execute_process(COMMAND ${COMPILER} -std=c++17 -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Werror ${WORK}/pieces.cpp ${FLAGS} -o ${WORK}/pieces.exe
    COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
if(LIBRARY)
    file(COPY ${LIBRARY} DESTINATION ${WORK})
endif()
execute_process(COMMAND ${EMULATOR} ${WORK}/pieces.exe
    WORKING_DIRECTORY ${WORK} OUTPUT_VARIABLE output ERROR_VARIABLE messages
    COMMAND_ERROR_IS_FATAL ANY)
# The last piece but one imports from memory, which the progress callback of an earlier
# one follows; the last names a file that is not there.
if(NOT output MATCHES "red 1 0 0" OR NOT output MATCHES "${count} pieces, [1-9][0-9]+ faces" OR
        NOT messages MATCHES "stage 1: 0 %" OR
        NOT messages MATCHES "1 Stopping conversion\\.\\.\\. Unable to open file")
    message(FATAL_ERROR "the pieces said:\n${messages}${output}")
endif()
