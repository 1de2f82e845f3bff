# SPDX-License-Identifier: Apache-2.0
# The sources of a test program are compiled together, except those after ALONE, which define macros or
# names that others define too.
function(ogm_compile_quickly target)
    cmake_parse_arguments(option "" "" "ALONE" ${ARGN})
    ogm_compile_together(${target})
    set_source_files_properties(${option_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# For test programs of the tool: how JSON is used there, and an index outside of a container ends them.
# scripts/test never builds some of them with sanitizers, which would notice it too.
set(OGM_TOOL_TEST_DEFINITIONS _GLIBCXX_ASSERTIONS ${OGM_JSON_DEFINITIONS})

# The kinds of test programs that share GoogleTest's headers: for the device's code and for the tool.
function(ogm_add_test_headers kind)
    set(headers ogm_test_headers_${kind})
    ogm_add_shared_headers(${headers} <gmock/gmock.h> <gtest/gtest.h> ${ARGN})
    target_link_libraries(${headers} PRIVATE GTest::gmock)
    # As for programs.
    set_target_properties(${headers} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${headers} PRIVATE -fPIE)
    ogm_do_not_optimise(${headers})
endfunction()

if(OGM_SHARES_HEADERS)
    ogm_add_test_headers(device)
    target_compile_options(ogm_test_headers_device PRIVATE -fno-rtti)
    ogm_add_test_headers(tool <nlohmann/json.hpp>)
    target_compile_features(ogm_test_headers_tool PRIVATE cxx_std_20)
    target_compile_definitions(ogm_test_headers_tool PRIVATE ${OGM_TOOL_TEST_DEFINITIONS})
endif()

# For the tool if its folder says so with OGM_TEST_KIND. Tests of the device's code have no run-time type
# information, like the device: classes derived from those of its libraries would need theirs.
function(ogm_compile_as_test target)
    ogm_do_not_optimise(${target})
    if(OGM_TEST_KIND STREQUAL "tool")
        target_compile_definitions(${target} PRIVATE ${OGM_TOOL_TEST_DEFINITIONS})
        ogm_share_headers(ogm_test_headers_tool ${target})
    else()
        target_compile_options(${target} PRIVATE -fno-rtti)
        ogm_share_headers(ogm_test_headers_device ${target})
    endif()
endfunction()

# CTest measures how long tests take and starts with the longest ones, so that no long test is left at the
# end on one core. This is for its first run.
function(ogm_start_early test)
    set_tests_properties(${test} PROPERTIES COST 10)
endfunction()

# Runs a command with the environment in one process, or in this number of parallel processes that share its
# tests, because starting a process for each test takes longer than most of the tests.
# scripts/count_tests.py still counts each of them.
function(ogm_add_shards name command environment count)
    if(count EQUAL 1)
        add_test(NAME ${name} COMMAND ${command})
        set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}")
        return()
    endif()
    math(EXPR last "${count} - 1")
    foreach(shard RANGE ${last})
        add_test(NAME ${name}.${shard} COMMAND ${command})
        set(shares ${environment} GTEST_TOTAL_SHARDS=${count} GTEST_SHARD_INDEX=${shard})
        set_tests_properties(${name}.${shard} PROPERTIES ENVIRONMENT "${shares}")
        ogm_start_early(${name}.${shard})
    endforeach()
endfunction()

# Runs the tests of a program, in this number of processes (default: one). Under an emulator, which takes
# long to start, there are half as many.
function(ogm_discover_tests target)
    ogm_compile_as_test(${target})
    set(shards ${ARGN} 1)
    list(GET shards 0 count)
    if(CMAKE_CROSSCOMPILING)
        math(EXPR count "(${count} + 1) / 2")
    endif()
    ogm_add_shards(${target} ${target} "" ${count})
endfunction()

# The same for a program that only starts ogmprobe, in this number of processes. With OGM_DRIVER_BUILD that
# build's program does it, on this machine, and the environment tells it what to start and which tests to
# leave out.
function(ogm_discover_driver_tests target count)
    if(NOT OGM_DRIVER_BUILD)
        ogm_discover_tests(${target} ${count})
        return()
    endif()
    ogm_compile_as_test(${target})
    set_target_properties(${target} PROPERTIES EXCLUDE_FROM_ALL ON)
    set(environment
        TESTED_PROGRAM=$<TARGET_FILE:ogmprobe>
        TESTED_FAKE_PLUGIN=$<TARGET_FILE:fakeextractor>
        TESTED_OWN_PLUGIN=$<TARGET_FILE:ogmextractor>
        TESTED_OTHER_LIBRARY=$<TARGET_FILE:platform::log>
        TESTED_EMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}
        TESTED_SANITIZER=${OGM_SANITIZE})
    if(CMAKE_CROSSCOMPILING)
        # The program of this build would not contain them; see the list of its sources.
        list(APPEND environment GTEST_FILTER=-*Answer*)
    endif()
    ogm_add_shards(${target} ${PROJECT_SOURCE_DIR}/build/${OGM_DRIVER_BUILD}/bin/${target}
        "${environment}" ${count})
endfunction()
