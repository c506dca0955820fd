# The instructions of imports that grow, by callgrind: no input that is twice as long
# may cost much more than twice as much. Counts do not depend on the machine's load.
# ctest -L growth runs these alone.

find_program(VALGRIND valgrind)
find_path(VALGRIND_INCLUDE_DIR valgrind/callgrind.h)
mark_as_advanced(VALGRIND VALGRIND_INCLUDE_DIR)
if(NOT VALGRIND OR NOT VALGRIND_INCLUDE_DIR)
    if(OBJ_ADAPTER_REQUIRE_PEERS)
        message(FATAL_ERROR "growth tests need valgrind")
    endif()
    message(STATUS "growth tests left out: need valgrind")
    return()
endif()

add_executable(growth_probe growth/growthProbe.cpp)
target_link_libraries(growth_probe PRIVATE host_test_support)
target_include_directories(growth_probe SYSTEM PRIVATE ${VALGRIND_INCLUDE_DIR})
obj_adapter_set_compiler_flags(growth_probe)

# add_growth_tests(limit kinds...): the limit of a doubling in hundredths
function(add_growth_tests limit)
    foreach(kind IN LISTS ARGN)
        add_script_test(growth/${kind} growth/growth.cmake
            VALGRIND=${VALGRIND}
            PROBE=$<TARGET_FILE:growth_probe>
            KIND=${kind}
            LIMIT=${limit}
            WORK=${outsideWork}/growth/${kind})
        set_tests_properties(growth/${kind} PROPERTIES LABELS growth)
    endforeach()
endfunction()

add_growth_tests(230
    longLine longNames longNumbers continuedLines unknownKeywords badStatements missingMaterials
    materialsAndTheirUses materialsOfOneName libraryReadAgain manyMapOptions
    groupsOfOneName groupsOfTakenNames emptyGroups wideTree deepTree
    convexPolygon polygonWithEqualCorners polygonWithNans manySmallPolygons
    equalVertices verticesInDisorder verticesThatHardlyDiffer equalFaces conflictingFaces
    grid star book)
# The sum of the normals is taken anew for each ear; see processing/cornerClasses.h.
add_growth_tests(450 comb saw spiral)
