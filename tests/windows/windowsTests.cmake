# What only the Windows library has: its export and import tables, its version
# resource.
if(MINGW)
    foreach(table IN ITEMS exports imports)
        add_script_test(dll/${table} windows/${table}.cmake
            LIBRARY=$<TARGET_FILE:obj_adapter>
            EXPECTED=${PROJECT_SOURCE_DIR}/docs/exportedSymbols.txt
            WORK=${outsideWork}/dll
            OBJDUMP=${CMAKE_OBJDUMP})
    endforeach()
    add_script_test(hardening windows/hardening.cmake
        LIBRARY=$<TARGET_FILE:obj_adapter>
        PROGRAMS=${programsToCheck}
        OBJDUMP=${CMAKE_OBJDUMP})

    add_executable(spoiltStack windows/spoiltStack.cpp)
    target_compile_features(spoiltStack PRIVATE cxx_std_20)
    obj_adapter_set_compiler_flags(spoiltStack)
    obj_adapter_add_stack_guard(spoiltStack)
    add_script_test(stackGuard windows/stackGuard.cmake
        PROGRAM=${emulator}$<TARGET_FILE:spoiltStack>)
endif()

# The exported headers as other compilers of Windows take them. MSVC itself is not
# to be had everywhere: clang reads them by its rules, without its library, which
# stand-ins of a few lines replace. That shows syntax and layout, no more.
find_program(CLANG_COMPILER clang++)
if(CMAKE_CROSSCOMPILING AND CLANG_COMPILER)
    set(headerWarnings -std=c++17 -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
    set(likeMsvc --target=x86_64-pc-windows-msvc -fms-compatibility-version=19.30
        -fsyntax-only -ffreestanding -nostdinc++
        -isystem ${CMAKE_CURRENT_SOURCE_DIR}/windows/standIns)
    # The library of the cross compiler: clang by itself would look in /usr/include.
    set(likeMingw --target=x86_64-w64-mingw32 -nostdlibinc)
    foreach(folder IN LISTS CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES)
        # The compiler's own headers are clang's here.
        if(folder MATCHES "/c\\+\\+" OR NOT folder MATCHES "/lib/gcc/")
            list(APPEND likeMingw -isystem ${folder})
        endif()
    endforeach()
    foreach(header IN LISTS exportedHeaders)
        cmake_path(GET header STEM headerName)
        set(unit ${outsideWork}/exportedHeaders/${headerName}.cpp)
        add_test(NAME exportedHeaders/${headerName}/mingw-gcc
            COMMAND ${CMAKE_CXX_COMPILER} ${headerWarnings} -O1
                -I${PROJECT_SOURCE_DIR}/include -c ${unit} -o ${unit}.gcc.o)
        add_test(NAME exportedHeaders/${headerName}/mingw-clang
            COMMAND ${CLANG_COMPILER} ${likeMingw} ${headerWarnings} -O1
                -I${PROJECT_SOURCE_DIR}/include -c ${unit} -o ${unit}.clang.o)
        add_test(NAME exportedHeaders/${headerName}/msvc-rules
            COMMAND ${CLANG_COMPILER} ${likeMsvc} -D_MT -D_DLL ${headerWarnings}
                -I${PROJECT_SOURCE_DIR}/include ${unit})
    endforeach()
    # A host with the runtime inside is refused while it is compiled.
    add_test(NAME exportedHeaders/staticRuntimeIsRefused
        COMMAND ${CLANG_COMPILER} ${likeMsvc} -D_MT ${headerWarnings}
            -I${PROJECT_SOURCE_DIR}/include ${outsideWork}/exportedHeaders/obj_adapter.cpp)
    set_tests_properties(exportedHeaders/staticRuntimeIsRefused PROPERTIES
        PASS_REGULAR_EXPRESSION "obj_adapter needs the runtime's DLL: compile with /MD")
endif()

if(MINGW AND CMAKE_CROSSCOMPILING)
    add_script_test(hostGuide docs/guideSnippets.cmake
        GUIDE=${PROJECT_SOURCE_DIR}/docs/hostGuide.md
        SCENE=${sampleScene}
        WORK=${outsideWork}/hostGuide
        COMPILER=${CMAKE_CXX_COMPILER}
        "FLAGS=-static -I${PROJECT_SOURCE_DIR}/include $<TARGET_LINKER_FILE:obj_adapter>"
        EMULATOR=${emulatorWithoutProgram}
        LIBRARY=$<TARGET_FILE:obj_adapter>)
endif()
