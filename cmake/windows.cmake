# What the build does on Windows alone: the DLL's name, its version resource, and
# programs that take UTF-8 arguments.
enable_language(RC)

# NAME.dll and NAME.lib, whatever the compiler, with the version inside.
function(obj_adapter_set_windows_library target)
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        IMPORT_PREFIX ""
        IMPORT_SUFFIX ".lib")
    configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/version.rc.in
        ${PROJECT_BINARY_DIR}/${target}.rc @ONLY)
    target_sources(${target} PRIVATE ${PROJECT_BINARY_DIR}/${target}.rc)
    if(MINGW)
        obj_adapter_write_definition_file(${target})
        # Of the DLL alone: the internal tests are programs.
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/platform/unloadingMingw.cpp)
        target_compile_features(${target} PRIVATE cxx_std_20)
        obj_adapter_set_compiler_flags(${target})
    endif()
    obj_adapter_set_windows_link(${target})
endfunction()

# NAME.def, of which other compilers' tools make an import library of their own.
function(obj_adapter_write_definition_file target)
    set(file ${PROJECT_BINARY_DIR}/${target}.def)
    target_link_options(${target} PRIVATE "LINKER:--output-def,${file}")
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -DFILE=${file} -DLIBRARY=$<TARGET_FILE_NAME:${target}>
            -P ${PROJECT_SOURCE_DIR}/cmake/windows/definitionFile.cmake
        VERBATIM)
endfunction()

# The arguments of a program's main() are UTF-8.
function(obj_adapter_set_windows_flags target)
    get_target_property(type ${target} TYPE)
    if(NOT type STREQUAL "EXECUTABLE")
        return()
    endif()
    if(MSVC)
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/windows/program.manifest)
    else()
        configure_file(${PROJECT_SOURCE_DIR}/cmake/windows/program.rc.in
            ${PROJECT_BINARY_DIR}/program.rc @ONLY)
        target_sources(${target} PRIVATE ${PROJECT_BINARY_DIR}/program.rc)
    endif()
    obj_adapter_set_windows_link(${target})
endfunction()

# The compiler's runtime inside, so that only DLLs of the system are needed, and
# no time of linking, so that the same sources give the same bytes.
function(obj_adapter_set_windows_link target)
    if(MINGW)
        target_link_options(${target} PRIVATE -static "LINKER:--no-insert-timestamp")
    endif()
endfunction()
