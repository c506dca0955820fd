# Compares the exported interface, as a library with debug information shows it,
# with the dump that is kept of it: functions with their types, records with the
# place of every field, enumerators with their values.
#
#     cmake -DLIBRARY=... -DWITH_DEBUG_INFORMATION=... -DEXPECTED=... -DHEADERS=...
#           -DABIDW=... -DABIDIFF=... -DNM=... -DWORK=... [-DRENEW=ON] -P interfaceDump.cmake
#
# LIBRARY is what hosts get. The other one is made of the same sources as far as they
# export something, which is checked. RENEW replaces the dump by what is.
file(MAKE_DIRECTORY ${WORK})
set(suppressions ${CMAKE_CURRENT_LIST_DIR}/standardLibrary.abignore)
set(ENV{LC_ALL} C)

function(get_exports library variable)
    execute_process(COMMAND ${NM} -D --defined-only --format=just-symbols ${library}
        COMMAND sort OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} "${symbols}" PARENT_SCOPE)
endfunction()

get_exports(${LIBRARY} exported)
get_exports(${WITH_DEBUG_INFORMATION} seen)
if(NOT exported STREQUAL seen OR exported STREQUAL "")
    message(FATAL_ERROR "interfaceDumpTest.cmake names other sources of ${LIBRARY} than those that export:"
        "\n${exported}\nare exported, seen are\n${seen}")
endif()

execute_process(
    COMMAND ${ABIDW} --headers-dir ${HEADERS} --drop-private-types --exported-interfaces-only
        --suppressions ${suppressions} --no-comp-dir-path --no-corpus-path --no-show-locs
        --no-architecture --no-elf-needed --no-write-default-sizes
        --out-file ${WORK}/interface.abi ${WITH_DEBUG_INFORMATION}
    COMMAND_ERROR_IS_FATAL ANY)
if(RENEW)
    file(COPY_FILE ${WORK}/interface.abi ${EXPECTED} ONLY_IF_DIFFERENT)
    return()
endif()

# Two dumps, so that both show the same share. Nothing counts as harmless.
execute_process(
    COMMAND ${ABIDIFF} --harmless --no-architecture --suppressions ${suppressions}
        ${EXPECTED} ${WORK}/interface.abi
    RESULT_VARIABLE difference)
if(NOT difference EQUAL 0)
    message(FATAL_ERROR "the exported interface is not that of ${EXPECTED}. If hosts may see the "
        "change, say so in CHANGELOG.md and renew the dump: "
        "cmake --build --preset linux-gcc-release --target renewInterfaceDumps")
endif()
