# The C interface from outside: its header as C, its exported names, and the same
# small host in three languages, which has to print the same in each.
set(cHeader ${outsideWork}/cInterface/header.c)
file(CONFIGURE OUTPUT ${cHeader}
    CONTENT "#include <obj_adapter/obj_adapter_c.h>\n#include <obj_adapter/obj_adapter_c.h>\n")
set(cWarnings -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wstrict-prototypes -Werror)

if(MINGW)
    set(cCompilerNames x86_64-w64-mingw32-gcc)
else()
    set(cCompilerNames gcc clang)
endif()
foreach(compilerName IN LISTS cCompilerNames)
    find_program(C_COMPILER_${compilerName} ${compilerName})
    mark_as_advanced(C_COMPILER_${compilerName})
    set(cCompiler ${C_COMPILER_${compilerName}})
    if(cCompiler)
        set(firstCCompiler ${firstCCompiler} ${cCompiler})
        foreach(standard IN ITEMS c99 c17)
            add_test(NAME cInterface/header/${compilerName}/${standard}
                COMMAND ${cCompiler} -std=${standard} ${cWarnings}
                    -I${PROJECT_SOURCE_DIR}/include -c ${cHeader}
                    -o ${cHeader}.${compilerName}.${standard}.o)
        endforeach()
    endif()
endforeach()
list(GET firstCCompiler 0 firstCCompiler)

set(cExamples ${PROJECT_SOURCE_DIR}/examples/otherLanguages)
set(cExpected ${CMAKE_CURRENT_SOURCE_DIR}/cInterface/firstImport.expected)

# Compiled into the folder of the libraries, where Windows looks for them.
set(cProgram $<TARGET_FILE_DIR:obj_adapter_c>/firstImportInC${CMAKE_EXECUTABLE_SUFFIX})
if(NOT WIN32)
    set(cLinkFlags -Wl,-rpath,$<TARGET_FILE_DIR:obj_adapter_c>)
endif()
add_test(NAME cInterface/c/compile
    COMMAND ${firstCCompiler} -std=c99 ${cWarnings} ${hostFlags} -I${PROJECT_SOURCE_DIR}/include
        ${cExamples}/firstImport.c $<TARGET_LINKER_FILE:obj_adapter_c> -o ${cProgram}
        ${cLinkFlags})
set_tests_properties(cInterface/c/compile PROPERTIES FIXTURES_SETUP cExample)
add_script_test(cInterface/c/run tools/runProgram.cmake
    PROGRAM=${emulator}${cProgram}
    ARGUMENTS=${sampleScene}
    WORK=${outsideWork}/cInterface/c
    EXPECTED=${cExpected})
set_tests_properties(cInterface/c/run PROPERTIES FIXTURES_REQUIRED cExample)

if(UNIX AND NOT APPLE)
    add_script_test(cInterface/exportedSymbols installed/exportedSymbols.cmake
        LIBRARY=$<TARGET_FILE:obj_adapter_c>
        EXPECTED=${PROJECT_SOURCE_DIR}/docs/exportedSymbolsOfC.txt
        WORK=${outsideWork}/cInterface
        NM=${CMAKE_NM})
endif()

# Their own programs bring no sanitizer.
if(UNIX AND NOT APPLE AND NOT OBJ_ADAPTER_SANITIZE)
    find_program(PYTHON_PROGRAM python3)
    find_program(CSHARP_COMPILER mcs)
    find_program(CSHARP_PROGRAM mono)
    mark_as_advanced(PYTHON_PROGRAM CSHARP_COMPILER CSHARP_PROGRAM)
    if(PYTHON_PROGRAM)
        add_script_test(cInterface/python tools/runProgram.cmake
            PROGRAM=${PYTHON_PROGRAM}$<SEMICOLON>${cExamples}/first_import.py
            ARGUMENTS=$<TARGET_FILE:obj_adapter_c>$<SEMICOLON>${sampleScene}
            WORK=${outsideWork}/cInterface/python
            EXPECTED=${cExpected})
    endif()
    if(CSHARP_COMPILER AND CSHARP_PROGRAM)
        set(csharpHost ${outsideWork}/cInterface/FirstImport.exe)
        add_test(NAME cInterface/csharp/compile
            COMMAND ${CSHARP_COMPILER} -warnaserror -out:${csharpHost} ${cExamples}/FirstImport.cs)
        set_tests_properties(cInterface/csharp/compile PROPERTIES FIXTURES_SETUP csharpExample)
        add_script_test(cInterface/csharp/run tools/runProgram.cmake
            PROGRAM=${CSHARP_PROGRAM}$<SEMICOLON>${csharpHost}
            ARGUMENTS=${sampleScene}
            WORK=${outsideWork}/cInterface/csharp
            EXPECTED=${cExpected})
        set_tests_properties(cInterface/csharp/run PROPERTIES
            FIXTURES_REQUIRED csharpExample
            ENVIRONMENT LD_LIBRARY_PATH=$<TARGET_FILE_DIR:obj_adapter_c>)
    endif()
    if(OBJ_ADAPTER_REQUIRE_PEERS AND
            NOT (PYTHON_PROGRAM AND CSHARP_COMPILER AND CSHARP_PROGRAM))
        message(FATAL_ERROR "the examples in other languages need python3, mcs and mono")
    endif()
endif()
