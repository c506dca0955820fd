# Builds with the defaults: needs nothing but the compiler and makes nothing but
# the shared library.
#
#     cmake -DSOURCE=... -DWORK=... -DCOMPILER=... -DGENERATOR=... -P bareBuild.cmake
file(REMOVE_RECURSE ${WORK})
execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK} -G ${GENERATOR} -DCMAKE_BUILD_TYPE=Release
        -DCMAKE_CXX_COMPILER=${COMPILER}
        -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK} COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE files RELATIVE ${WORK} ${WORK}/*)
list(FILTER files EXCLUDE REGEX "(^|/)CMakeFiles/")
list(FILTER files EXCLUDE REGEX
    "(^|/)(build\\.ninja|Makefile|\\.ninja_(deps|log)|CMakeCache\\.txt|cmake_install\\.cmake|Doxyfile)$")
list(FILTER files EXCLUDE REGEX "^obj_adapter(Config|ConfigVersion)\\.cmake$")
list(FILTER files EXCLUDE REGEX "^obj_adapter(_c)?\\.pc$|^CPack(Source)?Config\\.cmake$")
list(FILTER files EXCLUDE REGEX "^libobj_adapter(_c)?\\.so(\\.[0-9]+)*$")
if(files)
    message(FATAL_ERROR "the build made more than the library: ${files}")
endif()
if(NOT EXISTS ${WORK}/libobj_adapter.so)
    message(FATAL_ERROR "the build made no library")
endif()
