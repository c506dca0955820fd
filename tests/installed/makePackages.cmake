# Makes the packages of a build that stands ready, twice, and unpacks each kind into
# a folder of its own. With one time given, the two have the same bytes.
#
#     cmake -DBUILD=... -DWORK=... -DARCHIVE=name of the .tar.gz or .zip, no ending
#           -DDEBS=number of Debian packages -P makePackages.cmake
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
find_program(cpackProgram cpack REQUIRED)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(ENV{SOURCE_DATE_EPOCH} 1700000000)
run(${cpackProgram} --config ${BUILD}/CPackConfig.cmake -B ${WORK}/made)
execute_process(COMMAND ${CMAKE_COMMAND} -E sleep 1.1)
run(${cpackProgram} --config ${BUILD}/CPackConfig.cmake -B ${WORK}/again)
file(GLOB packages RELATIVE ${WORK}/made ${WORK}/made/*.tar.gz ${WORK}/made/*.zip
    ${WORK}/made/*.deb)
foreach(package IN LISTS packages)
    run(${CMAKE_COMMAND} -E compare_files ${WORK}/made/${package} ${WORK}/again/${package})
endforeach()

file(GLOB debs ${WORK}/made/*.deb)
list(LENGTH debs debCount)
list(LENGTH packages packageCount)
math(EXPR expectedCount "${DEBS} + 1")
if(NOT debCount EQUAL DEBS OR NOT packageCount EQUAL expectedCount)
    message(FATAL_ERROR "made: ${packages}")
endif()

file(MAKE_DIRECTORY ${WORK}/archive)
if(EXISTS ${WORK}/made/${ARCHIVE}.zip)
    execute_process(COMMAND ${CMAKE_COMMAND} -E tar xf ${WORK}/made/${ARCHIVE}.zip
        WORKING_DIRECTORY ${WORK}/archive COMMAND_ERROR_IS_FATAL ANY)
else()
    run(tar -xzf ${WORK}/made/${ARCHIVE}.tar.gz -C ${WORK}/archive)
endif()
# All in one folder, as where they are installed.
foreach(deb IN LISTS debs)
    run(dpkg-deb -x ${deb} ${WORK}/debian)
endforeach()
