# Imports files, and generated ones, twice with one build of the library, and once with another build
# if there is one, and compares what came out bit by bit.
#
#     cmake -DPROGRAM=... -DINPUTS=... -DWORK=... -P printedModels.cmake
#
# Environment, both optional:
#     OBJ_ADAPTER_COMPARE_WITH  the print_model program of the other build, which
#                               may be that of another system
#     OBJ_ADAPTER_MODELS        a folder of more files to import
file(MAKE_DIRECTORY ${WORK})
foreach(folder IN LISTS INPUTS)
    if(EXISTS ${folder})
        list(APPEND inputs ${folder})
    endif()
endforeach()
if(DEFINED ENV{OBJ_ADAPTER_MODELS})
    list(APPEND inputs $ENV{OBJ_ADAPTER_MODELS})
endif()

function(print_models program output)
    execute_process(COMMAND ${program} --generated=200 ${inputs} OUTPUT_FILE ${output} RESULT_VARIABLE code)
    if(NOT code EQUAL 0)
        message(FATAL_ERROR "${program} returned ${code}; its output is in ${output}")
    endif()
endfunction()

function(compare_with_first output)
    execute_process(COMMAND cmp ${WORK}/first.txt ${output} RESULT_VARIABLE difference)
    if(NOT difference EQUAL 0)
        execute_process(COMMAND diff -U 0 ${WORK}/first.txt ${output} COMMAND head -n 40)
        message(FATAL_ERROR "the models differ")
    endif()
endfunction()

print_models("${PROGRAM}" ${WORK}/first.txt)
print_models("${PROGRAM}" ${WORK}/second.txt)
compare_with_first(${WORK}/second.txt)
message("two runs of this build give the same models")

if(DEFINED ENV{OBJ_ADAPTER_COMPARE_WITH})
    print_models("$ENV{OBJ_ADAPTER_COMPARE_WITH}" ${WORK}/other.txt)
    compare_with_first(${WORK}/other.txt)
    message("the other build gives the same models")
endif()
file(STRINGS ${WORK}/first.txt imports REGEX "^import ")
list(LENGTH imports count)
message("${count} imports compared")
