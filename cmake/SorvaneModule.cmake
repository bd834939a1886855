# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
include(GoogleTest)

function(sorvane_check_edges module)
    foreach(dependency IN LISTS ARGN)
        if(NOT dependency IN_LIST SORVANE_EDGES_${module})
            message(FATAL_ERROR "${module} may not see ${dependency}: that edge is not in cmake/ModuleGraph.cmake")
        endif()
    endforeach()
endfunction()

function(sorvane_check_libraries module)
    foreach(library IN LISTS ARGN)
        if(NOT library IN_LIST SORVANE_LIBRARIES_${module})
            message(FATAL_ERROR "${module} does not own ${library}: see cmake/ModuleGraph.cmake")
        endif()
    endforeach()
endfunction()

# sorvane_module(Name
#     SOURCES   src/A.cpp ...
#     PUBLIC    modules that its public headers show
#     PRIVATE   modules that only its sources use
#     LIBRARIES third-party libraries, PUBLIC_LIBRARIES those that its public headers show)
function(sorvane_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PUBLIC;PRIVATE;LIBRARIES;PUBLIC_LIBRARIES")
    if(NOT DEFINED SORVANE_EDGES_${name})
        message(FATAL_ERROR "${name} is not a module of cmake/ModuleGraph.cmake")
    endif()
    sorvane_check_edges(${name} ${arg_PUBLIC} ${arg_PRIVATE})
    sorvane_check_libraries(${name} ${arg_LIBRARIES} ${arg_PUBLIC_LIBRARIES})
    list(TRANSFORM arg_LIBRARIES PREPEND ThirdParty::)
    list(TRANSFORM arg_PUBLIC_LIBRARIES PREPEND ThirdParty::)

    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC include PRIVATE src)
    target_link_libraries(${name} PUBLIC ${arg_PUBLIC} ${arg_PUBLIC_LIBRARIES} PRIVATE ${arg_PRIVATE} ${arg_LIBRARIES})
endfunction()

# sorvane_tests(Name tests/ATest.cpp ... [LIBRARIES ...]): one GoogleTest program for a module, which
# may also reach the module's own src/ and what all tests share in tests/support.
function(sorvane_tests module)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
    set(target ${module}Tests)
    add_executable(${target} ${arg_UNPARSED_ARGUMENTS})
    target_include_directories(${target} PRIVATE src tests ${CMAKE_SOURCE_DIR}/tests/support)
    list(TRANSFORM arg_LIBRARIES PREPEND ThirdParty::)
    target_link_libraries(${target} PRIVATE ${module} ${arg_LIBRARIES} GTest::gmock_main)
    gtest_discover_tests(${target} TEST_PREFIX ${module}. DISCOVERY_TIMEOUT 60
        PROPERTIES WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
endfunction()

# sorvane_desktop_tests(Target tests/ATest.cpp ... [MODULE Name] [SESSION options of tests/desktop/desktop-session]
# [PROGRAMS what the tests start]): one GoogleTest program that runs as a whole inside a private desktop session.
function(sorvane_desktop_tests target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "MODULE" "SESSION;PROGRAMS;LIBRARIES")
    add_executable(${target} ${arg_UNPARSED_ARGUMENTS} ${CMAKE_SOURCE_DIR}/tests/desktop/DesktopMain.cpp)
    target_include_directories(${target} PRIVATE src tests ${CMAKE_SOURCE_DIR}/tests/support ${CMAKE_SOURCE_DIR}/tests/desktop)
    list(TRANSFORM arg_LIBRARIES PREPEND ThirdParty::)
    target_link_libraries(${target} PRIVATE ${arg_MODULE} ${arg_LIBRARIES} GTest::gmock)
    foreach(program IN LISTS arg_PROGRAMS)
        target_compile_definitions(${target} PRIVATE ${program}_PROGRAM="$<TARGET_FILE:${program}>")
        add_dependencies(${target} ${program})
    endforeach()
    add_test(NAME Desktop.${target}
        COMMAND ${CMAKE_SOURCE_DIR}/tests/desktop/desktop-session ${arg_SESSION} -- $<TARGET_FILE:${target}>
        WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    set_tests_properties(Desktop.${target} PROPERTIES TIMEOUT 180)
endfunction()
