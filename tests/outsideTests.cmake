# Tests from outside of the library: what it exports, what is installed, and the
# programs that stand on it. They run other programs and compare what those do.

set(outsideWork ${CMAKE_CURRENT_BINARY_DIR}/outside)
set(sampleScene ${PROJECT_SOURCE_DIR}/examples/scene/scene.obj)
if(OBJ_ADAPTER_SANITIZE)
    # A host of a sanitized library has to bring the sanitizers' runtime.
    set(hostFlags -fsanitize=${OBJ_ADAPTER_SANITIZE})
endif()

# A test that is a CMake script: add_script_test(name script NAME=value...)
function(add_script_test name script)
    set(definitions)
    foreach(definition IN LISTS ARGN)
        list(APPEND definitions -D${definition})
    endforeach()
    add_test(NAME ${name}
        COMMAND ${CMAKE_COMMAND} ${definitions} -P ${CMAKE_CURRENT_SOURCE_DIR}/${script})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600 ${emulatorProperties})
endfunction()

# --- Each exported header compiles alone, and twice in a row, as C++17 ----------

# All there are, so that a new one cannot be forgotten.
file(GLOB exportedHeaders CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/include
    ${PROJECT_SOURCE_DIR}/include/obj_adapter/*.h)
set(hostCompilers)
if(UNIX)
    find_program(GNU_COMPILER g++)
    find_program(CLANG_COMPILER clang++)
    foreach(compiler IN ITEMS ${GNU_COMPILER} ${CLANG_COMPILER})
        if(compiler)
            list(APPEND hostCompilers ${compiler})
        endif()
    endforeach()
endif()
foreach(header IN LISTS exportedHeaders)
    cmake_path(GET header STEM headerName)
    set(unit ${outsideWork}/exportedHeaders/${headerName}.cpp)
    file(CONFIGURE OUTPUT ${unit}
        CONTENT "#include <@header@>\n#include <@header@>  // NOLINT: again, on purpose\n" @ONLY)
    foreach(compiler IN LISTS hostCompilers)
        cmake_path(GET compiler FILENAME compilerName)
        add_test(NAME exportedHeaders/${headerName}/${compilerName}
            COMMAND ${compiler} -std=c++17 -O1
                -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
                -I${PROJECT_SOURCE_DIR}/include -c ${unit} -o ${unit}.${compilerName}.o)
    endforeach()
endforeach()

# --- Protections of what is linked -----------------------------------------------

# A list in an argument of a script.
set(programsToCheck "$<TARGET_FILE:firstImport>$<SEMICOLON>$<TARGET_FILE:obj_adapter_c>")
if(TARGET obj_adapter_tool)
    string(APPEND programsToCheck "$<SEMICOLON>$<TARGET_FILE:obj_adapter_tool>")
endif()
if(UNIX AND NOT APPLE)
    if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT OBJ_ADAPTER_SANITIZE)
        set(fortifiedProgram $<TARGET_FILE:firstImport>)
    endif()
    if(OBJ_ADAPTER_SANITIZE)
        set(hasAssertions ON)
    endif()
    add_script_test(hardening installed/hardening.cmake
        LIBRARY=$<TARGET_FILE:obj_adapter>
        PROGRAMS=${programsToCheck}
        FORTIFIED=${fortifiedProgram}
        ASSERTS=${hasAssertions}
        READELF=${CMAKE_READELF})
endif()

if(WIN32)
    include(windows/windowsTests.cmake)
endif()

# --- The library's exported names ------------------------------------------------

if(UNIX AND NOT APPLE)
    add_script_test(exportedSymbols installed/exportedSymbols.cmake
        LIBRARY=$<TARGET_FILE:obj_adapter>
        EXPECTED=${PROJECT_SOURCE_DIR}/docs/exportedSymbols.txt
        WORK=${outsideWork}/exportedSymbols
        NM=${CMAKE_NM})
endif()

# Once is enough, as the interface is the same in every build of this system.
if(UNIX AND NOT APPLE AND CMAKE_BUILD_TYPE STREQUAL "Release")
    find_program(ABIDW abidw)
    find_program(ABIDIFF abidiff)
    if(ABIDW AND ABIDIFF)
        include(exportedInterface/interfaceDumpTest.cmake)
    elseif(OBJ_ADAPTER_REQUIRE_PEERS)
        message(FATAL_ERROR "the test interfaceDump needs abidw and abidiff (abigail-tools)")
    else()
        message(STATUS "the test interfaceDump left out: needs abidw and abidiff")
    endif()
endif()

add_test_program(exportedInterfaceTests host_test_support
    exportedInterface/borderTest.cpp
    exportedInterface/exportedInterfaceTest.cpp
    exportedInterface/recordLayoutTest.cpp)

# --- Hosts with a decimal comma -----------------------------------------------------

if(UNIX AND NOT APPLE)
    find_program(LOCALEDEF localedef)
    mark_as_advanced(LOCALEDEF)
    if(LOCALEDEF AND EXISTS /usr/share/i18n/locales/de_DE)
        add_script_test(decimalComma installed/decimalComma.cmake
            LOCALEDEF=${LOCALEDEF}
            "PROGRAMS=$<TARGET_FILE:objTests>$<SEMICOLON>$<TARGET_FILE:robustnessTests>"
            WORK=${outsideWork}/decimalComma)
    elseif(OBJ_ADAPTER_REQUIRE_PEERS)
        message(FATAL_ERROR "the test decimalComma needs localedef and its sources (locales)")
    else()
        message(STATUS "the test decimalComma left out: needs localedef and its sources")
    endif()
endif()

# --- Loading and unloading --------------------------------------------------------

if(MINGW OR (UNIX AND NOT APPLE AND NOT OBJ_ADAPTER_SANITIZE))
    add_executable(loadingTests installed/loadingTest.cpp support/temporaryDirectory.cpp)
    target_include_directories(loadingTests PRIVATE
        ${PROJECT_SOURCE_DIR}/include ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(loadingTests PRIVATE GTest::gtest GTest::gtest_main ${CMAKE_DL_LIBS})
    target_compile_features(loadingTests PRIVATE cxx_std_20)
    obj_adapter_set_compiler_flags(loadingTests)
    if(WIN32)
        set(libraryToLoad $<TARGET_FILE_NAME:obj_adapter>)
    else()
        set(libraryToLoad $<TARGET_FILE:obj_adapter>)
    endif()
    target_compile_definitions(loadingTests PRIVATE OBJ_ADAPTER_LIBRARY="${libraryToLoad}")
    add_dependencies(loadingTests obj_adapter)
    gtest_discover_tests(loadingTests
        TEST_PREFIX "loadingTests/" DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 600 RUN_SERIAL ON ${emulatorProperties})
endif()

# --- The installed package and the build without packages ------------------------

# What the scripts that build hosts ask for.
if(MINGW)
    find_program(HOST_C_COMPILER x86_64-w64-mingw32-gcc-posix)
else()
    find_program(HOST_C_COMPILER NAMES gcc cc)
endif()
mark_as_advanced(HOST_C_COMPILER)
set(hostBuilding
    SOURCE=${PROJECT_SOURCE_DIR}
    LIBDIR=${CMAKE_INSTALL_LIBDIR}
    VERSION=${PROJECT_VERSION}
    CONFIGURATION=${CMAKE_BUILD_TYPE}
    COMPILER=${CMAKE_CXX_COMPILER}
    C_COMPILER=${HOST_C_COMPILER}
    GENERATOR=${CMAKE_GENERATOR})

if(UNIX AND NOT APPLE)
    add_script_test(installedPackage installed/installedPackage.cmake
        BUILD=${PROJECT_BINARY_DIR}
        WORK=${outsideWork}/installedPackage
        FLAGS=${hostFlags}
        TOOL=$<TARGET_EXISTS:obj_adapter_tool>
        ${hostBuilding})

    add_script_test(readmeHost installed/readmeHost.cmake
        README=${PROJECT_SOURCE_DIR}/README.md
        SCENE=${sampleScene}
        WORK=${outsideWork}/readmeHost
        COMPILER=${CMAKE_CXX_COMPILER}
        "FLAGS=${hostFlags} -I${PROJECT_SOURCE_DIR}/include $<TARGET_FILE:obj_adapter> -Wl,-rpath,$<TARGET_FILE_DIR:obj_adapter>")

    add_script_test(hostGuide docs/guideSnippets.cmake
        GUIDE=${PROJECT_SOURCE_DIR}/docs/hostGuide.md
        SCENE=${sampleScene}
        WORK=${outsideWork}/hostGuide
        COMPILER=${CMAKE_CXX_COMPILER}
        "FLAGS=${hostFlags} -I${PROJECT_SOURCE_DIR}/include $<TARGET_FILE:obj_adapter> -Wl,-rpath,$<TARGET_FILE_DIR:obj_adapter>")

    # The same whatever this build is, so once is enough.
    if(CMAKE_BUILD_TYPE STREQUAL "Release")
        add_script_test(bareBuild installed/bareBuild.cmake
            SOURCE=${PROJECT_SOURCE_DIR}
            WORK=${outsideWork}/bareBuild
            COMPILER=${CMAKE_CXX_COMPILER}
            GENERATOR=${CMAKE_GENERATOR})
    endif()
endif()

if((UNIX AND NOT APPLE OR MINGW AND CMAKE_CROSSCOMPILING)
        AND CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT OBJ_ADAPTER_SANITIZE)
    include(installed/packageTests.cmake)
endif()

# --- Two runs, and two builds, give the same bits --------------------------------

add_executable(print_model support/printModelMain.cpp support/generatedFile.cpp)
target_link_libraries(print_model PRIVATE host_test_support)
obj_adapter_set_compiler_flags(print_model)
if(UNIX OR CMAKE_CROSSCOMPILING)
    add_script_test(printedModels installed/printedModels.cmake
        PROGRAM=${emulator}$<TARGET_FILE:print_model>
        "INPUTS=${sampleScene}$<SEMICOLON>${CMAKE_CURRENT_SOURCE_DIR}/samples"
        WORK=${outsideWork}/printedModels)
endif()

# --- The pages for hosts: built without a warning --------------------------------

if(CMAKE_BUILD_TYPE STREQUAL "Release" AND TARGET documentation AND NOT CMAKE_CROSSCOMPILING)
    add_test(NAME documentation
        COMMAND ${CMAKE_COMMAND} --build ${PROJECT_BINARY_DIR} --target documentation)
    # Another build of the same folder may not run meanwhile.
    set_tests_properties(documentation PROPERTIES RUN_SERIAL ON TIMEOUT 600)
endif()

# --- The C interface ---------------------------------------------------------------

include(cInterface/cInterfaceTests.cmake)

# --- The examples and the command-line program -----------------------------------

# The example builds in every run, by way of the build tree too.
add_executable(firstImport ${PROJECT_SOURCE_DIR}/examples/firstImport.cpp)
target_link_libraries(firstImport PRIVATE obj_adapter)
obj_adapter_set_compiler_flags(firstImport)
add_script_test(firstImport tools/runProgram.cmake
    PROGRAM=${emulator}$<TARGET_FILE:firstImport>
    ARGUMENTS=${sampleScene}
    WORK=${outsideWork}/firstImport
    EXPECTED=${CMAKE_CURRENT_SOURCE_DIR}/tools/firstImport.expected)

include(examples/examplesTests.cmake)

if(TARGET obj_adapter_tool)
    include(tools/toolTests.cmake)
endif()
