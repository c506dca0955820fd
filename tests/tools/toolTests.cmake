# The command-line program: what it prints and returns. Everything that it
# prints for a case stands in the file of that name here.

set(toolTestFolder ${CMAKE_CURRENT_LIST_DIR})

function(add_tool_test name)
    string(REPLACE ";" "$<SEMICOLON>" arguments "${ARGN}")
    add_script_test(tool/${name} tools/runProgram.cmake
        PROGRAM=${emulator}$<TARGET_FILE:obj_adapter_tool>
        "ARGUMENTS=${arguments}"
        WORK=${outsideWork}/tool/${name}
        EXPECTED=${toolTestFolder}/${name}.expected)
    # File names in the output are those of the command line.
    set_tests_properties(tool/${name} PROPERTIES WORKING_DIRECTORY ${toolTestFolder})
endfunction()

# For words of the library that reads the command line, which may change.
function(add_tool_usage_test name code pattern)
    string(REPLACE ";" "$<SEMICOLON>" arguments "${ARGN}")
    add_script_test(tool/${name} tools/runProgram.cmake
        PROGRAM=${emulator}$<TARGET_FILE:obj_adapter_tool>
        "ARGUMENTS=${arguments}"
        CODE=${code}
        "PATTERN=${pattern}")
endfunction()

add_tool_test(scene ../../examples/scene/scene.obj)
add_tool_test(nestedTree ../../examples/scene/scene.obj --hierarchy)
add_tool_test(nestedTreeWithFullNames twoArms.obj --hierarchy --full-names)
add_tool_test(reversedNames twoArms.obj --hierarchy --reverse)
add_tool_test(bareFileName twoArms.obj)
add_tool_test(withoutCompaction twoArms.obj --no-compaction)
add_tool_test(subdividedByRounds twoArms.obj --subdivide ITERATIONS 2)
add_tool_test(subdividedToFaceCount twoArms.obj --subdivide FACE_COUNT 20)
add_tool_test(badLinesAndNames badLines.obj)
add_tool_test(longListsAreCut longLists.obj --hierarchy)
add_tool_test(longListsInFull longLists.obj --hierarchy --all)
add_tool_test(missingFile noSuchFile.obj)
add_tool_test(noVertices noVertices.obj)

add_tool_usage_test(version 0 "^obj_adapter ${PROJECT_VERSION}\n$" --version)
add_tool_usage_test(help 0 "FILE\\.obj.*--subdivide.*--hierarchy.*--all" --help)
add_tool_usage_test(noFile 2 "file is required")
add_tool_usage_test(twoFiles 2 "b\\.obj" a.obj b.obj)
add_tool_usage_test(unknownOption 2 "--no-such-option" a.obj --no-such-option)
add_tool_usage_test(unknownLimit 2 "iterations" a.obj --subdivide iterations 1)
add_tool_usage_test(negativeLimit 2 "-1 is not a whole number" a.obj --subdivide ITERATIONS -1)
add_tool_usage_test(limitBeyondInteger 2 "3000000000 is not a whole number" a.obj --subdivide FACE_COUNT 3000000000)
add_tool_usage_test(limitWithTextBehindIt 2 "0x10 is not a whole number"
    a.obj --subdivide FACE_COUNT 0x10)
add_tool_usage_test(limitGivenTwice 2 "--subdivide"
    a.obj --subdivide ITERATIONS 1 --subdivide FACE_COUNT 9)
add_tool_usage_test(limitWithoutNumber 2 "--subdivide" a.obj --subdivide ITERATIONS)
add_tool_usage_test(reverseWithoutHierarchy 2 "--hierarchy" a.obj --reverse)

add_script_test(tool/utf8Names tools/utf8Names.cmake
    PROGRAM=${emulator}$<TARGET_FILE:obj_adapter_tool>
    SAMPLE=${CMAKE_CURRENT_SOURCE_DIR}/samples/tetrahedron.obj
    WORK=${outsideWork}/tool/utf8Names)
