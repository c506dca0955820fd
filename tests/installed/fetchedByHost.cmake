# A host fetches the library and builds it as a part of itself, as the README shows:
# both compile, the host runs, and nothing of the host's own changes by it.
#
#     cmake -DSOURCE=... -DSCENE=... -DWORK=... -DCOMPILER=... -DC_COMPILER=...
#           -DTOOLCHAIN=file or nothing -DEMULATOR=... -DGENERATOR=... -P fetchedByHost.cmake
include(${CMAKE_CURRENT_LIST_DIR}/copiedSources.cmake)
file(REMOVE_RECURSE ${WORK})
set(host ${WORK}/host)
set(build ${WORK}/build)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# first_block(language result): the first block of the README in this language.
function(first_block language result)
    file(READ ${SOURCE}/README.md text)
    string(REGEX MATCH "```${language}\n([^`]*)```" block "${text}")
    if(block STREQUAL "")
        message(FATAL_ERROR "no ${language} in the README")
    endif()
    set(${result} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

# A repository of what the sources are now; without git, the folder in its place.
function(make_repository result)
    find_program(gitProgram git)
    copy_sources(${SOURCE} ${WORK}/repository)
    if(NOT gitProgram)
        set(${result} "-DFETCHCONTENT_SOURCE_DIR_OBJ_ADAPTER=${WORK}/repository" PARENT_SCOPE)
        return()
    endif()
    set(git ${gitProgram} -C ${WORK}/repository -c user.name=test -c user.email=test@test.invalid)
    run(${git} init -q -b main)
    run(${git} add --all --force)
    run(${git} commit -q --no-verify --no-gpg-sign -m "The sources")
endfunction()

# --- The host: the README's two blocks, and one in C ------------------------------

first_block(cpp hostSource)
first_block(cmake hostProject)
string(REGEX REPLACE "GIT_REPOSITORY [^ \n]+" "GIT_REPOSITORY \"file://${WORK}/repository\""
    hostProject "${hostProject}")
file(WRITE ${host}/host.cpp "${hostSource}")
file(WRITE ${host}/CMakeLists.txt "${hostProject}
enable_language(C)
add_executable(cHost ${SOURCE}/examples/otherLanguages/firstImport.c)
target_link_libraries(cHost PRIVATE obj_adapter::obj_adapter_c)
")
make_repository(options)
if(TOOLCHAIN)
    list(APPEND options -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_EXE_LINKER_FLAGS=-static
        -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${build}/bin)
else()
    list(APPEND options -DCMAKE_CXX_COMPILER=${COMPILER})
endif()
list(APPEND options -G ${GENERATOR} -DCMAKE_C_COMPILER=${C_COMPILER})
run(${CMAKE_COMMAND} -S ${host} -B ${build} ${options} -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_EXPORT_COMPILE_COMMANDS=ON)
run(${CMAKE_COMMAND} --build ${build} --parallel 2)

# --- It runs -----------------------------------------------------------------------

cmake_path(GET SCENE PARENT_PATH sceneFolder)
file(COPY ${sceneFolder}/scene.mtl DESTINATION ${host}/models)
configure_file(${SCENE} ${host}/models/cube.obj COPYONLY)
# run_program(name pattern argument...)
function(run_program name pattern)
    file(GLOB program ${build}/${name} ${build}/bin/${name}.exe)
    execute_process(COMMAND ${EMULATOR} ${program} ${ARGN} WORKING_DIRECTORY ${host}
        OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output MATCHES "${pattern}")
        message(FATAL_ERROR "${name} said:\n${output}")
    endif()
endfunction()
run_program(host "Obj data import complete\\.\r?\n394 faces\r?\n$")
run_program(cHost "332 vertices, 394 faces, 10 materials\r?\n" models/cube.obj)

# --- And leaves the host alone -------------------------------------------------------

file(READ ${build}/compile_commands.json commands)
string(JSON last LENGTH "${commands}")
math(EXPR last "${last} - 1")
set(librarySources 0)
foreach(index RANGE ${last})
    string(JSON file GET "${commands}" ${index} file)
    string(JSON command GET "${commands}" ${index} command)
    if(file MATCHES "/(obj_adapter-src|repository)/(tests|tools|bench|fuzz)/")
        message(FATAL_ERROR "the host had to build ${file}")
    endif()
    if(command MATCHES " -Werror")
        message(FATAL_ERROR "a warning would stop the host's build: ${command}")
    endif()
    if(file MATCHES "host\\.cpp$" AND command MATCHES " -([fW][^ ]*|D[^ ]*OBJ_ADAPTER[^ ]*)")
        message(FATAL_ERROR "the host is compiled with ${CMAKE_MATCH_0}: ${command}")
    endif()
    if(file MATCHES "/importPipeline\\.cpp$")
        set(librarySources 1)
    endif()
endforeach()
if(NOT librarySources)
    message(FATAL_ERROR "the library was not built: ${commands}")
endif()

run(${CMAKE_COMMAND} --install ${build} --prefix ${WORK}/installed)
file(GLOB_RECURSE installed ${WORK}/installed/*)
if(installed)
    message(FATAL_ERROR "the host would install ${installed}")
endif()

# No build type but the host's, which may be none.
run(${CMAKE_COMMAND} -S ${host} -B ${WORK}/noType ${options}
    -DFETCHCONTENT_SOURCE_DIR_OBJ_ADAPTER=${WORK}/repository)
file(STRINGS ${WORK}/noType/CMakeCache.txt buildType REGEX "^CMAKE_BUILD_TYPE:[A-Z]+=.")
if(buildType)
    message(FATAL_ERROR "the host got a build type: ${buildType}")
endif()
