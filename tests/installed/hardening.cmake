# What was linked has the protections that cmake/hardening.cmake asks for.
#
#     cmake -DLIBRARY=... "-DPROGRAMS=..." -DREADELF=... [-DFORTIFIED=a program]
#           [-DASSERTS=ON: the standard library checks its arguments] -P hardening.cmake
set(ENV{LC_ALL} C)

# expect(file text pattern complaint)
function(expect file text pattern complaint)
    if(NOT text MATCHES "${pattern}")
        message(FATAL_ERROR "${file}: ${complaint}\n${text}")
    endif()
endfunction()

function(expect_none file text pattern complaint)
    if(text MATCHES "${pattern}")
        message(FATAL_ERROR "${file}: ${complaint} (${CMAKE_MATCH_0})\n${text}")
    endif()
endfunction()

function(check_segments file)
    execute_process(COMMAND ${READELF} -W -h -l -d ${file}
        OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    expect(${file} "${text}" "Type: +DYN " "is loaded at one address only")
    expect(${file} "${text}" "\n  GNU_RELRO " "keeps its address tables writable")
    expect(${file} "${text}" "\\(FLAGS\\) +BIND_NOW|\\(FLAGS_1\\) +Flags: NOW"
        "binds functions late, so that their table stays writable")
    expect(${file} "${text}" "\n  GNU_STACK [ x0-9a-f]+ RW  " "has an executable stack")
    expect_none(${file} "${text}" "\n  [A-Z_]+ [ x0-9a-f]+ RWE " "has a writable, executable segment")
    expect_none(${file} "${text}" "TEXTREL" "is changed while it is loaded")
endfunction()

function(check_imports file pattern complaint)
    execute_process(COMMAND ${READELF} -W --dyn-syms ${file}
        OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    expect(${file} "${text}" "${pattern}" "${complaint}")
endfunction()

foreach(file IN LISTS LIBRARY PROGRAMS)
    check_segments(${file})
endforeach()
check_imports(${LIBRARY} " UND __stack_chk_fail" "has no stack protector")
if(FORTIFIED)
    # The library itself makes no call that has a checked form; this program does.
    check_imports(${FORTIFIED} " UND __printf_chk" "prints unchecked")
endif()
if(ASSERTS)
    check_imports(${LIBRARY} " UND _ZSt21__glibcxx_assert_fail" "calls the standard library unchecked")
endif()
