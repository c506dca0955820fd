# Copies of the sources, for tests that build them in other places.

# copy_sources(source destination): what git knows or would take; elsewhere all but
# the folders of builds.
function(copy_sources source destination)
    execute_process(COMMAND git -C ${source} ls-files --cached --others --exclude-standard
        OUTPUT_VARIABLE files ERROR_QUIET RESULT_VARIABLE code)
    if(code EQUAL 0)
        string(REPLACE "\n" ";" files "${files}")
    else()
        file(GLOB files RELATIVE ${source} ${source}/*)
        list(REMOVE_ITEM files build dist)
    endif()
    foreach(file IN LISTS files)
        if(file AND EXISTS ${source}/${file})
            cmake_path(GET file PARENT_PATH folder)
            file(COPY ${source}/${file} DESTINATION ${destination}/${folder})
        endif()
    endforeach()
endfunction()
