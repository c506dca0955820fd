# The command-line program: what it prints and returns. Everything that it
# prints for a case stands in the file of that name here.

# --- The parts of the program ------------------------------------------------------

add_library(tool_test_support STATIC tools/importedText.cpp)
target_link_libraries(tool_test_support PUBLIC obj_adapter_tool_parts host_test_support)
obj_adapter_set_compiler_flags(tool_test_support)

add_test_program(toolTests tool_test_support
    tools/anglesTest.cpp
    tools/cameraTest.cpp
    tools/checkReportTest.cpp
    tools/cornerNormalsTest.cpp
    tools/glbWriterTest.cpp
    tools/groupTreeTest.cpp
    tools/materialLookTest.cpp
    tools/meshFactsTest.cpp
    tools/meshWritersTest.cpp
    tools/outputFileTest.cpp
    tools/pictureTest.cpp
    tools/rasteriserTest.cpp
    tools/srgbTest.cpp)

# Others' libraries read what the program writes, where they are installed.
find_path(VALIJSON_INCLUDE_DIR valijson/validator.hpp)
mark_as_advanced(VALIJSON_INCLUDE_DIR)
if(VALIJSON_INCLUDE_DIR)
    add_test_program(toolJsonTests tool_test_support tools/jsonSchemaTest.cpp)
    allow_regular_expressions(toolJsonTests)
    target_include_directories(toolJsonTests SYSTEM PRIVATE ${VALIJSON_INCLUDE_DIR})
    target_compile_definitions(toolJsonTests PRIVATE
        OBJ_ADAPTER_TOOL_SCHEMA="${PROJECT_SOURCE_DIR}/docs/toolOutput.schema.json"
        OBJ_ADAPTER_SCENE="${sampleScene}")
elseif(OBJ_ADAPTER_REQUIRE_PEERS)
    message(FATAL_ERROR "toolJsonTests needs valijson")
else()
    message(STATUS "toolJsonTests left out: needs valijson")
endif()

find_path(ASSIMP_INCLUDE_DIR assimp/Importer.hpp)
find_library(ASSIMP_LIBRARY assimp)
mark_as_advanced(ASSIMP_INCLUDE_DIR ASSIMP_LIBRARY)
if(ASSIMP_INCLUDE_DIR AND ASSIMP_LIBRARY)
    add_test_program(toolPeersTests tool_test_support tools/convertedFilesTest.cpp)
    target_include_directories(toolPeersTests SYSTEM PRIVATE ${ASSIMP_INCLUDE_DIR})
    target_link_libraries(toolPeersTests PRIVATE ${ASSIMP_LIBRARY})
    target_compile_definitions(toolPeersTests PRIVATE OBJ_ADAPTER_SCENE="${sampleScene}")
elseif(OBJ_ADAPTER_REQUIRE_PEERS)
    message(FATAL_ERROR "toolPeersTests needs assimp")
else()
    message(STATUS "toolPeersTests left out: needs assimp")
endif()

# --- The program as a whole --------------------------------------------------------

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

add_tool_test(scene info ../../examples/scene/scene.obj)
add_tool_test(nestedTree tree ../../examples/scene/scene.obj --hierarchy)
add_tool_test(nestedTreeWithFullNames tree twoArms.obj --hierarchy --full-names)
add_tool_test(reversedNames tree twoArms.obj --reverse)
add_tool_test(flatTree tree twoArms.obj --flat)
add_tool_test(longTreeIsCut tree longLists.obj)
add_tool_test(longTreeInFull tree longLists.obj --all)
add_tool_test(bareFileName info twoArms.obj)
add_tool_test(withoutCompaction info twoArms.obj --no-compaction)
add_tool_test(subdividedByRounds info twoArms.obj --subdivide ITERATIONS 2)
add_tool_test(subdividedToFaceCount info twoArms.obj --subdivide FACE_COUNT 20)
add_tool_test(badLinesAndNames info badLines.obj)
add_tool_test(longListsAreCut info longLists.obj)
add_tool_test(longListsInFull info longLists.obj --all)
add_tool_test(missingFile info noSuchFile.obj)
add_tool_test(noVertices info noVertices.obj)

add_tool_test(infoAsJson info badLines.obj --json)
add_tool_test(treeAsJson tree twoArms.obj --json)
add_tool_test(checkNothingWrong check ../samples/tetrahedron.obj)
add_tool_test(checkWarnings check twoArms.obj)
add_tool_test(checkErrors check ../samples/repairs.obj badLines.obj)
add_tool_test(checkMissingFile check noSuchFile.obj ../samples/tetrahedron.obj)
add_tool_test(checkMissingImages check ../../examples/scene/scene.obj)
add_tool_test(checkAsJson check badLines.obj noSuchFile.obj --json)

add_tool_usage_test(version 0 "^obj_adapter ${PROJECT_VERSION}\n$" --version)
add_tool_usage_test(help 0 "info.*tree.*check.*Examples" --help)
add_tool_usage_test(verbHelp 0 "FILE\\.obj.*--all.*--subdivide.*--hierarchy" info --help)
add_tool_usage_test(noVerb 2 "^Looks at Wavefront.*Verbs:.*info")
add_tool_usage_test(unknownVerb 2 "no verb .show.. the verbs are info tree check convert preview\n$" show)
add_tool_usage_test(fileWithoutVerb 2 "did you mean: obj_adapter info a\\.obj" a.obj)
add_tool_usage_test(noFile 2 "^error: FILE\\.obj is required\nSee obj_adapter info --help\\.\n$" info)
add_tool_usage_test(noOutput 2 "OUT is required" convert a.obj)
add_tool_usage_test(noPicture 2 "--output is required" preview a.obj)
add_tool_usage_test(notPng 2 "a\\.jpg does not end in \\.png" preview a.obj -o a.jpg)
add_tool_usage_test(tooManySamples 2 "make 4294967296 samples. there may be 100000000" preview a.obj -o a.png --size 8192x8192 --samples 8)
add_tool_usage_test(quiet 0 "^Counts.*vertices" info ${CMAKE_CURRENT_SOURCE_DIR}/samples/tetrahedron.obj --quiet)
add_tool_usage_test(unknownFormat 2 "a\\.fbx ends in none of" convert a.obj a.fbx)
add_tool_usage_test(twoFiles 2 "b\\.obj" info a.obj b.obj)
add_tool_usage_test(unknownOption 2 "--no-such-option" info a.obj --no-such-option)
add_tool_usage_test(unknownLimit 2 "iterations" info a.obj --subdivide iterations 1)
add_tool_usage_test(negativeLimit 2 "-1 is not a whole number" info a.obj --subdivide ITERATIONS -1)
add_tool_usage_test(limitBeyondInteger 2 "3000000000 is not a whole number" info a.obj --subdivide FACE_COUNT 3000000000)
add_tool_usage_test(limitWithTextBehindIt 2 "0x10 is not a whole number" info a.obj --subdivide FACE_COUNT 0x10)
add_tool_usage_test(limitGivenTwice 2 "--subdivide" info a.obj --subdivide ITERATIONS 1 --subdivide FACE_COUNT 9)
add_tool_usage_test(limitWithoutNumber 2 "--subdivide" info a.obj --subdivide ITERATIONS)
add_tool_usage_test(reverseOfFlatTree 2 "--flat" info a.obj --reverse --flat)

add_script_test(tool/utf8Names tools/utf8Names.cmake
    PROGRAM=${emulator}$<TARGET_FILE:obj_adapter_tool>
    SAMPLE=${CMAKE_CURRENT_SOURCE_DIR}/samples/tetrahedron.obj
    WORK=${outsideWork}/tool/utf8Names)

# --- Files that it writes ----------------------------------------------------------

add_script_test(tool/convert tools/convert.cmake
    PROGRAM=${emulator}$<TARGET_FILE:obj_adapter_tool>
    SCENE=${sampleScene}
    WORK=${outsideWork}/tool/convert)

function(add_preview_test name model hash)
    string(REPLACE ";" "$<SEMICOLON>" options "${ARGN}")
    add_script_test(tool/preview/${name} tools/preview.cmake
        PROGRAM=${emulator}$<TARGET_FILE:obj_adapter_tool>
        MODEL=${model}
        "OPTIONS=${options}"
        WORK=${outsideWork}/tool/preview/${name}
        HASH=${hash})
endfunction()

# The picture of the README, by the command that stands there.
add_script_test(tool/preview/scene tools/preview.cmake
    PROGRAM=${emulator}$<TARGET_FILE:obj_adapter_tool>
    MODEL=${sampleScene}
    WORK=${outsideWork}/tool/preview/scene
    PICTURE=${PROJECT_SOURCE_DIR}/docs/pictures/scene.png)
add_preview_test(transparent ${CMAKE_CURRENT_SOURCE_DIR}/samples/tetrahedron.obj 
    68fb5a3033efdb229a0af709c4cf79a851bde9c5ae9b5e4fafa9f7119fe3c396
    --size 320x240 --background transparent --up z --azimuth 200 --elevation -15 --samples 4
    --subdivide ITERATIONS 3)
add_preview_test(odd ${toolTestFolder}/glb/odd.obj 
    9d553e76dfc0ccf7198c583cfc8cbb91902e2ebb25efaa5db22f4be334507e06 --size 320x240)

add_script_test(tool/validateGlb tools/validateGlb.cmake
    PROGRAM=${emulator}$<TARGET_FILE:obj_adapter_tool>
    "MODELS=${sampleScene}$<SEMICOLON>${CMAKE_CURRENT_SOURCE_DIR}/samples$<SEMICOLON>${toolTestFolder}"
    SOURCE=${PROJECT_SOURCE_DIR}
    WORK=${outsideWork}/tool/validateGlb)
set_tests_properties(tool/validateGlb PROPERTIES SKIP_REGULAR_EXPRESSION "left out: ")

# --- On a terminal, and what is installed beside the program -----------------------

if(UNIX AND NOT CMAKE_CROSSCOMPILING)
    add_script_test(tool/generatedTexts tools/generatedTexts.cmake
        PROGRAM=$<TARGET_FILE:obj_adapter_tool>
        WORK=${outsideWork}/tool/generatedTexts)

    find_program(SCRIPT_PROGRAM script)
    mark_as_advanced(SCRIPT_PROGRAM)
    if(SCRIPT_PROGRAM)
        add_script_test(tool/terminalOutput tools/terminalOutput.cmake
            PROGRAM=$<TARGET_FILE:obj_adapter_tool>
            SCRIPT=${SCRIPT_PROGRAM}
            MODEL=${toolTestFolder}/badLines.obj
            WORK=${outsideWork}/tool/terminalOutput)
    endif()

    find_program(PYTHON_PROGRAM python3)
    mark_as_advanced(PYTHON_PROGRAM)
    if(PYTHON_PROGRAM)
        add_test(NAME tool/interrupt
            COMMAND ${PYTHON_PROGRAM} ${toolTestFolder}/interrupt.py
                $<TARGET_FILE:obj_adapter_tool> ${outsideWork}/tool/interrupt)
        set_tests_properties(tool/interrupt PROPERTIES TIMEOUT 180)

        add_test(NAME tool/everyModel
            COMMAND ${PYTHON_PROGRAM} ${toolTestFolder}/everyModel.py
                $<TARGET_FILE:obj_adapter_tool> ${outsideWork}/tool/everyModel
                ${CMAKE_CURRENT_SOURCE_DIR}/samples ${PROJECT_SOURCE_DIR}/examples/scene
                ${toolTestFolder})
        set_tests_properties(tool/everyModel PROPERTIES TIMEOUT 600)
    endif()

    # A device that takes nothing.
    if(EXISTS /dev/full)
        add_test(NAME tool/fullDevice
            COMMAND sh -c "$<TARGET_FILE:obj_adapter_tool> info ${sampleScene} 2>&1 >/dev/full")
        set_tests_properties(tool/fullDevice PROPERTIES
            PASS_REGULAR_EXPRESSION "error: cannot write to the standard output")
    endif()
endif()
