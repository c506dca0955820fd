# The exported interfaces in full, for tests that compare them with the dumps that are
# kept. The release build has no debug information, so the few sources that export
# something are compiled once more.
#
#     cmake --build --preset linux-gcc-release --target renewInterfaceDumps

# add_interface_dump_test(library exportMap dump source...)
function(add_interface_dump_test library exportMap dump)
    set(target ${library}_with_debug_information)
    add_library(${target} SHARED ${ARGN})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${target} PRIVATE OBJ_ADAPTER_BUILDING OBJ_ADAPTER_C_BUILDING)
    target_compile_features(${target} PRIVATE cxx_std_20)
    obj_adapter_set_compiler_flags(${target})
    # Paths are those of the checkout, whatever its place. What other sources have
    # is left undefined: nobody loads this library.
    target_compile_options(${target} PRIVATE
        -g -O0 -U_FORTIFY_SOURCE -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exportMap}")

    set(arguments
        LIBRARY=$<TARGET_FILE:${library}>
        WITH_DEBUG_INFORMATION=$<TARGET_FILE:${target}>
        EXPECTED=${dump}
        HEADERS=${PROJECT_SOURCE_DIR}/include
        ABIDW=${ABIDW}
        ABIDIFF=${ABIDIFF}
        NM=${CMAKE_NM}
        WORK=${outsideWork}/interfaceDump/${library})
    add_script_test(interfaceDump/${library} exportedInterface/interfaceDump.cmake ${arguments})

    list(TRANSFORM arguments PREPEND -D)
    add_custom_target(renewInterfaceDump_${library}
        COMMAND ${CMAKE_COMMAND} ${arguments} -DRENEW=ON
            -P ${PROJECT_SOURCE_DIR}/tests/exportedInterface/interfaceDump.cmake
        DEPENDS ${library} ${target}
        VERBATIM)
    add_dependencies(renewInterfaceDumps renewInterfaceDump_${library})
endfunction()

add_custom_target(renewInterfaceDumps)
add_interface_dump_test(obj_adapter
    ${PROJECT_SOURCE_DIR}/cmake/exportedSymbols.map
    ${PROJECT_SOURCE_DIR}/docs/exportedInterface.abi
    ${PROJECT_SOURCE_DIR}/converter/objConverter.cpp
    ${PROJECT_SOURCE_DIR}/groups/group.cpp
    ${PROJECT_SOURCE_DIR}/groups/objHierarchyNode.cpp
    ${PROJECT_SOURCE_DIR}/material/material.cpp
    ${PROJECT_SOURCE_DIR}/material/materialText.cpp)
add_interface_dump_test(obj_adapter_c
    ${PROJECT_SOURCE_DIR}/cInterface/exportedSymbols.map
    ${PROJECT_SOURCE_DIR}/docs/exportedCInterface.abi
    ${PROJECT_SOURCE_DIR}/cInterface/obj_adapter_c.cpp)
