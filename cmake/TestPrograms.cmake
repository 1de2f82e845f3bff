# SPDX-License-Identifier: Apache-2.0
# The sources of a test program are compiled together, but for those after ALONE, which define macros or
# names that others define too.
function(ogm_compile_quickly target)
    cmake_parse_arguments(option "" "" "ALONE" ${ARGN})
    ogm_compile_together(${target})
    set_source_files_properties(${option_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# CTest learns what takes long by running it, and then begins with that: at the end nothing long is left
# to one core. This is for its first run.
function(ogm_start_early test)
    set_tests_properties(${test} PROPERTIES COST 10)
endfunction()

# Runs the program's tests in one process, or shared among so many that run side by side: starting a
# process for each test takes longer than most of the tests. scripts/count_tests.py counts them one by
# one all the same. An emulator takes so long to start that there it is one process.
# A test program is run about once after each compilation, which takes far longer: so nothing is optimised
# but what an emulator runs.
function(ogm_discover_tests target)
    target_compile_options(${target} PRIVATE $<IF:$<BOOL:${CMAKE_CROSSCOMPILING}>,-O1,-O0> -U_FORTIFY_SOURCE)
    set(shards ${ARGN} 1)
    list(GET shards 0 count)
    if(CMAKE_CROSSCOMPILING OR count EQUAL 1)
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
