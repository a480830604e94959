# Fails when a folder of the module includes a header of a folder above it.
# Run as: cmake -DSOURCE_DIR=<root> -P CheckLayers.cmake
#
# The layers from the bottom up; a folder may include its own headers and those of lower layers.
# The window-system stand-ins (platform) lie below all of them.
set(layers settings vars dialogs dialogs/main frame)

set(faults "")
list(LENGTH layers layerCount)
math(EXPR last "${layerCount} - 1")
foreach(rank RANGE ${last})
    list(GET layers ${rank} folder)
    file(GLOB sources ${SOURCE_DIR}/src/${folder}/*.h ${SOURCE_DIR}/src/${folder}/*.cpp)
    foreach(source ${sources})
        file(STRINGS ${source} includes REGEX "^[ \t]*#[ \t]*include[ \t]*[\"<][a-z/]+/[^\"<>]*[\">]")
        foreach(line ${includes})
            string(REGEX REPLACE "^[^\"<]*[\"<]([^\">]*)[\">].*$" "\\1" header "${line}")
            get_filename_component(target ${header} DIRECTORY)
            list(FIND layers ${target} targetRank)
            if(targetRank GREATER rank)
                file(RELATIVE_PATH shown ${SOURCE_DIR} ${source})
                string(APPEND faults "  ${shown} (${folder}) includes ${header} (${target})\n")
            endif()
        endforeach()
    endforeach()
endforeach()

if(faults)
    message(FATAL_ERROR "A folder includes one above it:\n${faults}")
endif()
