# Checks that the folders depend one way: platform/ on nothing of the project, host/ on platform/
# only, and neither on the module in src/. Run as a test: cmake -DROOT=<source dir> -P CheckLayers.cmake
#
# An include line breaks the order when what it names is a file of a higher layer and not one of
# the folder's own or of a layer below: by path ("src/..." or "../"), or by a header name that only
# a higher layer has. The CMake files of the lower layers must not name src/ or a module library.

cmake_minimum_required(VERSION 3.22)

if(NOT ROOT)
    message(FATAL_ERROR "CheckLayers: give -DROOT=<source dir>")
endif()

set(module_libraries vardesk_vars vardesk_settings vardesk_frame vardesk_dialogs vardesk_main VarDesk)

# The file names (and paths relative to the folder) of every header under the given folders.
function(headers_of out)
    set(names)
    foreach(dir ${ARGN})
        file(GLOB_RECURSE files RELATIVE ${ROOT}/${dir} ${ROOT}/${dir}/*.h ${ROOT}/${dir}/*.hpp)
        foreach(f ${files})
            get_filename_component(name ${f} NAME)
            list(APPEND names ${name} ${f})
        endforeach()
    endforeach()
    list(REMOVE_DUPLICATES names)
    set(${out} ${names} PARENT_SCOPE)
endfunction()

set(failures)

# check_layer(<folder> <folders it may use> ...): every include of <folder> names its own headers,
# those of the given lower folders, or no header of the project at all.
function(check_layer folder)
    headers_of(allowed ${folder} ${ARGN})
    headers_of(higher src host)
    file(GLOB_RECURSE sources ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp ${ROOT}/${folder}/*.cpp.in)
    foreach(source ${sources})
        file(STRINGS ${source} lines REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]")
        foreach(line ${lines})
            string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*[<\"]([^>\"]*)[>\"].*$" "\\1" named "${line}")
            get_filename_component(name "${named}" NAME)
            set(bad FALSE)
            if(named MATCHES "^src/" OR named MATCHES "(^|/)\\.\\./")
                set(bad TRUE)
            elseif(NOT named IN_LIST allowed AND NOT name IN_LIST allowed
                   AND (named IN_LIST higher OR name IN_LIST higher))
                set(bad TRUE)
            endif()
            if(bad)
                file(RELATIVE_PATH where ${ROOT} ${source})
                list(APPEND failures "${where}: ${line}")
            endif()
        endforeach()
    endforeach()
    file(GLOB_RECURSE cmake_files ${ROOT}/${folder}/CMakeLists.txt ${ROOT}/${folder}/*.cmake)
    foreach(cmake_file ${cmake_files})
        file(READ ${cmake_file} text)
        file(RELATIVE_PATH where ${ROOT} ${cmake_file})
        if(text MATCHES "CMAKE_SOURCE_DIR}/src")
            list(APPEND failures "${where}: names the module's folder src/")
        endif()
        foreach(library ${module_libraries})
            if(text MATCHES "[ \t\n(]${library}[ \t\n)]")
                list(APPEND failures "${where}: links the module's library ${library}")
            endif()
        endforeach()
    endforeach()
    set(failures ${failures} PARENT_SCOPE)
endfunction()

check_layer(platform)
check_layer(host platform)

if(failures)
    list(JOIN failures "\n  " text)
    message(FATAL_ERROR "A lower layer reaches up:\n  ${text}")
endif()
message(STATUS "Layers: platform/ and host/ include nothing from the layers above them")
