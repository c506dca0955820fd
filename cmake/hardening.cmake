# What makes a slip in our own code harder to exploit. tests/installed/hardening.cmake
# and tests/windows/hardening.cmake look for it in what was linked.
#
# Cost, by instructions of reading, compacting and subdividing a 6 MB grid once:
# stack protector 1.0 to 1.1 %, the rest nothing; no difference in time.
#
# Left out: -fcf-protection would cost 0.6 %, and its mark on the library is lost
# while linking, as the startup files of many systems do not have it.

function(obj_adapter_harden target)
    if(MSVC)
        # The compiler and linker do the like of all this unasked.
        return()
    endif()
    target_compile_options(${target} PRIVATE -fstack-protector-strong)
    if(WIN32)
        obj_adapter_harden_windows(${target})
    else()
        obj_adapter_harden_elf(${target})
    endif()
endfunction()

include(CheckPIESupported)
check_pie_supported()

function(obj_adapter_harden_elf target)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    endif()
    target_compile_options(${target} PRIVATE -fstack-clash-protection)
    # Checked copies work in optimized code alone, and the sanitizers check more.
    # A level that the builder has chosen stays.
    if(NOT OBJ_ADAPTER_SANITIZE AND NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
        target_compile_options(${target} PRIVATE
            $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>
            $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
    endif()
    target_link_options(${target} PRIVATE
        "LINKER:-z,relro" "LINKER:-z,now" "LINKER:-z,noexecstack")
endfunction()

# The headers of the C runtime have checked copies too, but those are in the
# compiler's libssp, which loads further DLLs when it starts: a DLL must not do that
# while it is loaded itself. The stack protector alone needs two names, which
# platform/stackGuardMingw.cpp gives to the library; programs take libssp's.
function(obj_adapter_harden_windows target)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE" OR type STREQUAL "SHARED_LIBRARY")
        target_link_options(${target} PRIVATE
            "LINKER:--dynamicbase" "LINKER:--high-entropy-va" "LINKER:--nxcompat")
    endif()
    if(type STREQUAL "EXECUTABLE")
        target_link_options(${target} PRIVATE -fstack-protector-strong)
    endif()
endfunction()

function(obj_adapter_add_stack_guard target)
    set(source ${PROJECT_SOURCE_DIR}/platform/stackGuardMingw.cpp)
    target_sources(${target} PRIVATE ${source})
    # The guard is made in a function that must not look at it.
    set_source_files_properties(${source} TARGET_DIRECTORY ${target}
        PROPERTIES COMPILE_OPTIONS -fno-stack-protector)
endfunction()
