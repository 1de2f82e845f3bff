# SPDX-License-Identifier: Apache-2.0
# The sources of a test program are compiled together, except those after ALONE, which define macros or
# names that others define too.
function(ogm_compile_quickly target)
    cmake_parse_arguments(option "" "" "ALONE" ${ARGN})
    ogm_compile_together(${target})
    set_source_files_properties(${option_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# The kinds of test programs that share GoogleTest's headers: as C++ 17, without run-time type information
# as in the plug-in, and for the tool.
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
    ogm_add_test_headers(plain)
    ogm_add_test_headers(plugin)
    target_compile_options(ogm_test_headers_plugin PRIVATE -fno-rtti)
    ogm_add_test_headers(tool <nlohmann/json.hpp>)
    target_compile_features(ogm_test_headers_tool PRIVATE cxx_std_20)
endif()

# OGM_TEST_HEADERS names the kind if it does not follow from the program's own options.
function(ogm_compile_as_test target)
    set(kind plain)
    get_target_property(options ${target} COMPILE_OPTIONS)
    if(DEFINED OGM_TEST_HEADERS)
        set(kind ${OGM_TEST_HEADERS})
    elseif("-fno-rtti" IN_LIST options)
        set(kind plugin)
    endif()
    ogm_do_not_optimise(${target})
    ogm_share_headers(ogm_test_headers_${kind} ${target})
endfunction()

# CTest measures how long tests take and starts with the longest ones, so that no long test is left at the
# end on one core. This is for its first run.
function(ogm_start_early test)
    set_tests_properties(${test} PROPERTIES COST 10)
endfunction()

# Runs the program's tests in one process, or in this number of parallel processes, because starting a
# process for each test takes longer than most of the tests. scripts/count_tests.py still counts each of
# them. Under an emulator, which takes long to start, there are half as many processes.
function(ogm_discover_tests target)
    ogm_compile_as_test(${target})
    set(shards ${ARGN} 1)
    list(GET shards 0 count)
    if(CMAKE_CROSSCOMPILING)
        math(EXPR count "(${count} + 1) / 2")
    endif()
    if(count EQUAL 1)
        add_test(NAME ${target} COMMAND ${target})
        return()
    endif()
    math(EXPR last "${count} - 1")
    foreach(shard RANGE ${last})
        add_test(NAME ${target}.${shard} COMMAND ${target})
        set_tests_properties(${target}.${shard} PROPERTIES
            ENVIRONMENT "GTEST_TOTAL_SHARDS=${count};GTEST_SHARD_INDEX=${shard}")
        ogm_start_early(${target}.${shard})
    endforeach()
endfunction()
