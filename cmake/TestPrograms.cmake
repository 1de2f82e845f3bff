# SPDX-License-Identifier: Apache-2.0
# A test program is run once after each compilation, so what counts is how long that takes: little is
# optimised, under sanitizers nothing, and the headers that nearly every source includes are parsed
# once a program. Further arguments are more such headers.
function(ogm_compile_quickly target)
    target_compile_options(${target} PRIVATE $<IF:$<CONFIG:Release>,-O1,-O0>)
    target_precompile_headers(${target} PRIVATE
        <gmock/gmock.h> <gtest/gtest.h> <string> <vector> ${ARGN})
endfunction()

# Makes a test of each of the program's, or one of the whole program where it is emulated: an emulator
# takes long to start.
function(ogm_discover_tests target)
    if(CMAKE_CROSSCOMPILING)
        add_test(NAME ${target} COMMAND ${target})
    else()
        gtest_discover_tests(${target})
    endif()
endfunction()
