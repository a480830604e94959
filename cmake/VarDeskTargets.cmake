# One small helper per kind of target, so every folder's CMakeLists stays a plain source list.

function(vardesk_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra)
    # GCC 12 warns of overlapping copies inside std::string's own operator+ once it inlines it at
    # -O2 and above (a known false alarm of that release); the code it names is the library's.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    if(VARDESK_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

if(VARDESK_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=address,undefined)
endif()

# vardesk_library(NAME [STATIC|SHARED] SOURCES ... [LIBS ...])
function(vardesk_library name)
    cmake_parse_arguments(ARG "STATIC;SHARED" "" "SOURCES;LIBS" ${ARGN})
    if(ARG_SHARED)
        add_library(${name} SHARED ${ARG_SOURCES})
        set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
        install(TARGETS ${name} LIBRARY DESTINATION lib)
    else()
        add_library(${name} STATIC ${ARG_SOURCES})
    endif()
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_LIBS})
    vardesk_warnings(${name})
endfunction()

# vardesk_test(NAME SOURCES ... [LIBS ...]): one GoogleTest program, run by ctest under the
# offscreen platform with a scratch home, so no test touches the user's files.
function(vardesk_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest GTest::gtest_main GTest::gmock)
    target_compile_definitions(${name} PRIVATE
        VARDESK_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
        VARDESK_STAGE_DIR="${VARDESK_STAGE}"
        VARDESK_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests
        BUILD_RPATH "${VARDESK_STAGE}/lib" BUILD_WITH_INSTALL_RPATH OFF)
    vardesk_warnings(${name})
    include(GoogleTest)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
        PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${CMAKE_BINARY_DIR}/testhome")
endfunction()
