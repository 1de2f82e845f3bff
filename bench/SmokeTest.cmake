# SPDX-License-Identifier: Apache-2.0
# Runs the program BENCH on small files and looks into the results, which it writes to JSON.
execute_process(
    COMMAND ${BENCH} --size 2000000 --short-file 1000000 --long-file 3000000 --min-time 0.001
            --json ${JSON}
    OUTPUT_VARIABLE table
    COMMAND_ERROR_IS_FATAL ANY)
file(READ ${JSON} results)
string(JSON count LENGTH "${results}" benchmarks)
# Ten for each of three files, two lengths, ten for the parts.
if(NOT count EQUAL 42)
    message(FATAL_ERROR "${count} results, not 42")
endif()

# Fails unless the named value of the result in `index` is a number above `limit`.
function(expect_above index limit counter)
    string(JSON value ERROR_VARIABLE missing GET "${results}" benchmarks ${index} ${counter})
    if(missing OR NOT value GREATER limit)
        message(FATAL_ERROR "${name}: ${counter} is ${value}")
    endif()
endfunction()

math(EXPR last "${count} - 1")
foreach(index RANGE ${last})
    string(JSON name GET "${results}" benchmarks ${index} name)
    string(REGEX REPLACE "/iterations:.*" "" name "${name}")
    string(JSON failed ERROR_VARIABLE none GET "${results}" benchmarks ${index} error_occurred)
    if(failed)
        message(FATAL_ERROR "${name} failed")
    endif()
    if(NOT table MATCHES "\n${name} ")
        message(FATAL_ERROR "${name} is not in the table")
    endif()
    if(name MATCHES "/(opening|seek)")
        expect_above(${index} 0 median_us)
        expect_above(${index} 0 95th_percentile_us)
    elseif(name MATCHES "/peak_memory")
        expect_above(${index} 0 peak_kib)
    else()
        expect_above(${index} 20 items)
        expect_above(${index} 0 best_ns_per_item)
    endif()
    if(name MATCHES "/(time_order|track_)")
        expect_above(${index} 1 reads_per_page)
        expect_above(${index} 0 best_bytes_per_second)
    endif()
endforeach()

if(NOT table MATCHES "h264_pcm, read in time order, is\n *[0-9.]+ times as fast as a sequential read\n")
    message(FATAL_ERROR "No comparison at the end of the table")
endif()
