# Two builds of the same sources in two places give the same libraries, byte by byte:
# no name of a folder, no time, nothing that changes with the person's settings.
#
#     cmake -DSOURCE=... -DWORK=... -DCOMPILER=... -DTOOLCHAIN=file or nothing
#           -DGENERATOR=... -P reproducible.cmake
include(${CMAKE_CURRENT_LIST_DIR}/copiedSources.cmake)
file(REMOVE_RECURSE ${WORK})

# A compiler cache would compare its own answer with itself.
set(ENV{CCACHE_DISABLE} 1)
set(ENV{CMAKE_CXX_COMPILER_LAUNCHER})
set(ENV{SOURCE_DATE_EPOCH})

function(run)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output
        RESULT_VARIABLE code)
    if(NOT code EQUAL 0)
        message(FATAL_ERROR "${ARGN}:\n${output}")
    endif()
endfunction()

# With line numbers, which name the sources.
function(build_libraries place)
    copy_sources(${SOURCE} ${place}/sources)
    if(TOOLCHAIN)
        set(compiler -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
    else()
        set(compiler -DCMAKE_CXX_COMPILER=${COMPILER})
    endif()
    run(${CMAKE_COMMAND} -S ${place}/sources -B ${place}/build -G ${GENERATOR} ${compiler}
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS=-g1)
    run(${CMAKE_COMMAND} --build ${place}/build --parallel 2 --target obj_adapter obj_adapter_c)
endfunction()

set(first ${WORK}/first)
set(second "${WORK}/the second place/a folder deeper")
build_libraries(${first})
set(ENV{TZ} Asia/Kathmandu)
set(ENV{LC_ALL} C)
set(ENV{HOME} ${second})
build_libraries(${second})

set(made ${first}/build)
file(GLOB libraries RELATIVE ${made} ${made}/*.so.*.*.* ${made}/bin/*.dll ${made}/*.lib
    ${made}/*.def)
list(LENGTH libraries count)
if(count LESS 2)
    message(FATAL_ERROR "made: ${libraries}")
endif()
foreach(library IN LISTS libraries)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E compare_files ${made}/${library} ${second}/build/${library}
        RESULT_VARIABLE difference)
    if(NOT difference EQUAL 0)
        message(FATAL_ERROR "${library} is another one in ${first} than in ${second}")
    endif()
    message("${library}: the same bytes")
endforeach()
