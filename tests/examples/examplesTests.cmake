# Each example is built in every run and has to print what stands in its file here.
function(add_example name)
    add_executable(${name} ${PROJECT_SOURCE_DIR}/examples/${name}.cpp)
    target_link_libraries(${name} PRIVATE obj_adapter)
    obj_adapter_set_compiler_flags(${name})
    string(REPLACE ";" "$<SEMICOLON>" arguments "${ARGN}")
    add_script_test(examples/${name} tools/runProgram.cmake
        PROGRAM=${emulator}$<TARGET_FILE:${name}>
        "ARGUMENTS=${arguments}"
        WORK=${outsideWork}/examples/${name}
        EXPECTED=${CMAKE_CURRENT_SOURCE_DIR}/examples/${name}.expected)
endfunction()

add_example(groupTree ${sampleScene})
add_example(importFromMemory)
add_example(materialsAndMaps ${sampleScene})
add_example(progressAndCancel ${sampleScene})
add_example(subdividedTriangles ${CMAKE_CURRENT_SOURCE_DIR}/samples/tetrahedron.obj)

# The page and the project name every program there is.
file(GLOB examples CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/examples
    ${PROJECT_SOURCE_DIR}/examples/*.cpp)
string(REPLACE ";" "$<SEMICOLON>" exampleList "${examples}")
add_script_test(examples/list examples/listOfExamples.cmake
    FOLDER=${PROJECT_SOURCE_DIR}/examples
    "EXAMPLES=${exampleList}"
    TESTS=${CMAKE_CURRENT_LIST_FILE})
