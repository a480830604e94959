# Runs one batch-console scenario and compares what cadhost printed and left with what is expected.
#
# cmake -DCADHOST=<cadhost> -DSCENARIO_DIR=<dir> -DNAME=<name> -DSAMPLES=<dir> -DWORK=<dir>
#       [-DUPDATE=ON] -P RunScenario.cmake
#
# A scenario NAME in SCENARIO_DIR is made of:
#   NAME.scr     the script, run as  cadhost --batch NAME.scr --profile profile [NAME.args]
#                in WORK, a fresh folder holding a copy of the sample drawings (SAMPLES/*) and of
#                NAME.in/ when present; the profile folder is WORK/profile, made fresh.
#   NAME.2.scr   optional: a second run in the same folder and profile (what survived the first).
#   NAME.args    optional: further arguments, one a line (a later --profile or --batch wins).
#   NAME.out     the expected transcript: stdout of each run followed by "EXIT <code>"; a second
#                run starts with the line "--- second run".
#   NAME.files/  optional: files expected in WORK after the runs, compared after the same masking.
# Masking: WORK's path is shown as <TMP>, the folder of cadhost's share/ tree as <STAGE>, and the
# values of CDATE and DATE as <CDATE> and <DATE>. With -DUPDATE=ON the transcript is written to
# NAME.out instead of compared.

foreach(var CADHOST SCENARIO_DIR NAME SAMPLES WORK)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "RunScenario: ${var} is not set")
    endif()
endforeach()

get_filename_component(stage "${CADHOST}" DIRECTORY)
get_filename_component(stage "${stage}" DIRECTORY)

function(mask_text in out)
    set(t "${in}")
    string(REPLACE "${WORK}" "<TMP>" t "${t}")
    string(REPLACE "${stage}" "<STAGE>" t "${t}")
    string(REGEX REPLACE "CDATE = [-0-9.eE+]+" "CDATE = <CDATE>" t "${t}")
    string(REGEX REPLACE "DATE = [-0-9.eE+]+" "DATE = <DATE>" t "${t}")
    # The same clock variables as rows of a dialog's list.
    string(REGEX REPLACE "\"( *)(C?DATE)\" \"[-0-9.eE+]+\"" "\"\\1\\2\" \"<\\2>\"" t "${t}")
    set(${out} "${t}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
file(GLOB samples "${SAMPLES}/*")
if(samples)
    file(COPY ${samples} DESTINATION "${WORK}")
endif()
if(IS_DIRECTORY "${SCENARIO_DIR}/${NAME}.in")
    file(COPY "${SCENARIO_DIR}/${NAME}.in/" DESTINATION "${WORK}")
endif()

set(extra_args)
if(EXISTS "${SCENARIO_DIR}/${NAME}.args")
    file(STRINGS "${SCENARIO_DIR}/${NAME}.args" extra_args)
endif()

set(scripts "${NAME}.scr")
if(EXISTS "${SCENARIO_DIR}/${NAME}.2.scr")
    list(APPEND scripts "${NAME}.2.scr")
endif()

set(transcript "")
set(run 0)
foreach(script ${scripts})
    file(COPY "${SCENARIO_DIR}/${script}" DESTINATION "${WORK}")
    math(EXPR run "${run} + 1")
    if(run GREATER 1)
        string(APPEND transcript "--- second run\n")
    endif()
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen HOME=${WORK}/home
                --unset=XDG_CONFIG_HOME
                "${CADHOST}" --batch ${script} --profile profile ${extra_args}
        WORKING_DIRECTORY "${WORK}"
        OUTPUT_VARIABLE out
        ERROR_VARIABLE err
        RESULT_VARIABLE rc
        TIMEOUT 60)
    string(APPEND transcript "${out}EXIT ${rc}\n")
    file(WRITE "${WORK}/run${run}.stderr" "${err}")
endforeach()
mask_text("${transcript}" transcript)

set(expected_file "${SCENARIO_DIR}/${NAME}.out")
if(UPDATE)
    file(WRITE "${expected_file}" "${transcript}")
    message(STATUS "Wrote ${expected_file}")
    return()
endif()

set(failures "")
file(WRITE "${WORK}/transcript.out" "${transcript}")
if(NOT EXISTS "${expected_file}")
    string(APPEND failures "No ${NAME}.out; the transcript is in ${WORK}/transcript.out\n")
else()
    file(READ "${expected_file}" expected)
    if(NOT expected STREQUAL transcript)
        execute_process(COMMAND diff -u "${expected_file}" "${WORK}/transcript.out" OUTPUT_VARIABLE diff)
        string(APPEND failures "The transcript differs from ${NAME}.out:\n${diff}\n")
    endif()
endif()

set(files_dir "${SCENARIO_DIR}/${NAME}.files")
if(IS_DIRECTORY "${files_dir}")
    file(GLOB_RECURSE wanted RELATIVE "${files_dir}" "${files_dir}/*")
    foreach(rel ${wanted})
        if(NOT EXISTS "${WORK}/${rel}")
            string(APPEND failures "Missing file ${rel}\n")
            continue()
        endif()
        file(READ "${files_dir}/${rel}" want)
        file(READ "${WORK}/${rel}" have)
        mask_text("${have}" have)
        if(NOT want STREQUAL have)
            file(WRITE "${WORK}/${rel}.masked" "${have}")
            execute_process(COMMAND diff -u "${files_dir}/${rel}" "${WORK}/${rel}.masked" OUTPUT_VARIABLE diff)
            string(APPEND failures "File ${rel} differs:\n${diff}\n")
        endif()
    endforeach()
endif()

if(failures)
    message(FATAL_ERROR "Scenario ${NAME} failed (work folder ${WORK}):\n${failures}")
endif()
