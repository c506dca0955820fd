# Flags for our own targets only; a project that includes this one keeps its own.

# What is handed on holds no name of the folder where it was built, so that the same
# sources give the same bytes anywhere (tests/installed/reproducible.cmake). Debuggers
# of a developer's own build go on finding the sources.
set(OBJ_ADAPTER_PLACELESS_FLAGS
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)

# The same input gives the same bits everywhere: no fused multiply-add, nothing
# that reorders sums.
function(obj_adapter_set_compiler_flags target)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    obj_adapter_harden(${target})
    if(WIN32)
        obj_adapter_set_windows_flags(${target})
    endif()
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8 /fp:precise)
        if(OBJ_ADAPTER_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE /WX)
        endif()
    else()
        target_compile_options(${target} PRIVATE
            -Wall -Wextra -Wpedantic -Wshadow -Wconversion -ffp-contract=off
            ${OBJ_ADAPTER_PLACELESS_FLAGS})
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            # g++ 12 takes ("text" + aString) for an overlapping copy.
            target_compile_options(${target} PRIVATE -Wno-restrict)
        endif()
        if(OBJ_ADAPTER_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
        if(OBJ_ADAPTER_SANITIZE)
            target_compile_options(${target} PRIVATE
                -fsanitize=${OBJ_ADAPTER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
            target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
            target_link_options(${target} PUBLIC -fsanitize=${OBJ_ADAPTER_SANITIZE})
        endif()
    endif()
endfunction()
