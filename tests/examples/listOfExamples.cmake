# No example is missing in the pages on them, in their project or in their tests.
#
#     cmake -DFOLDER=... -DEXAMPLES=... -DTESTS=... -P listOfExamples.cmake
file(READ ${FOLDER}/README.md page)
file(READ ${FOLDER}/../docs/doxygen/examples.dox pages)
file(READ ${FOLDER}/CMakeLists.txt project)
file(READ ${TESTS} tests)
if(NOT EXAMPLES)
    message(FATAL_ERROR "no examples in ${FOLDER}")
endif()
foreach(example IN LISTS EXAMPLES)
    cmake_path(GET example STEM name)
    # The first one is tested beside the library.
    if(NOT page MATCHES "\\(${name}\\.cpp\\)" OR NOT project MATCHES "[ \n]${name}[ \n)]" OR
            NOT pages MATCHES "@example ${name}\\.cpp\n" OR
            NOT (name STREQUAL "firstImport" OR tests MATCHES "add_example\\(${name}[ )]"))
        message(FATAL_ERROR "${example} is not in the pages, the project or the tests")
    endif()
endforeach()
