# Every model as GLB passes the validator of the format, without an error. The
# validator is a package of npm, which is installed below the build folder.
#
#     cmake -DPROGRAM=... -DMODELS=... -DSOURCE=... -DWORK=... -P validateGlb.cmake
#
# MODELS  files, and folders of files
# What OBJ_ADAPTER_MODELS names is taken as well.
set(validator gltf-validator@2.0.0-dev.3.10)

find_program(npm npm)
find_program(node node)
if(NOT npm OR NOT node)
    message(STATUS "left out: npm and node are missing (Debian's packages npm and nodejs)")
    return()
endif()
file(MAKE_DIRECTORY ${WORK}/validator)
if(NOT EXISTS ${WORK}/validator/node_modules/gltf-validator)
    file(WRITE ${WORK}/validator/package.json "{ \"private\": true }\n")
    execute_process(
        COMMAND ${npm} install --no-audit --no-fund --no-package-lock --ignore-scripts ${validator}
        WORKING_DIRECTORY ${WORK}/validator
        OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE code)
    if(NOT code EQUAL 0)
        message(STATUS "left out: npm cannot install ${validator}:\n${output}")
        return()
    endif()
endif()

foreach(model IN LISTS MODELS ITEMS $ENV{OBJ_ADAPTER_MODELS})
    if(IS_DIRECTORY ${model})
        file(GLOB_RECURSE files ${model}/*.obj)
        list(APPEND inputs ${files})
    else()
        list(APPEND inputs ${model})
    endif()
endforeach()
list(SORT inputs)

file(REMOVE_RECURSE ${WORK}/glb)
file(MAKE_DIRECTORY ${WORK}/glb)
set(number 0)
set(outputs)
foreach(input IN LISTS inputs)
    cmake_path(GET input STEM name)
    foreach(options IN ITEMS "" "--crease-angle|40|--subdivide|ITERATIONS|1|--bump-is-normal")
        string(REPLACE "|" ";" options "${options}")
        math(EXPR number "${number} + 1")
        set(output ${WORK}/glb/${number}-${name}.glb)
        execute_process(COMMAND ${PROGRAM} convert ${input} ${output} ${options}
            ERROR_VARIABLE errors RESULT_VARIABLE code)
        # Some files cannot be subdivided, which is not the matter here.
        if(code EQUAL 0)
            list(APPEND outputs ${output})
        elseif(NOT options)
            message(FATAL_ERROR "${input}: ${errors}")
        endif()
    endforeach()
endforeach()
if(NOT outputs)
    message(FATAL_ERROR "no files to validate")
endif()

configure_file(${SOURCE}/tests/tools/validateGlb.cjs ${WORK}/validator/validateGlb.cjs COPYONLY)
execute_process(COMMAND ${node} ${WORK}/validator/validateGlb.cjs ${outputs}
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE code)
message(STATUS "${output}")
if(NOT code EQUAL 0)
    message(FATAL_ERROR "not valid")
endif()
