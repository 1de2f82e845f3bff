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
math(EXPR last "${count} - 1")
foreach(index RANGE ${last})
    string(JSON name GET "${results}" benchmarks ${index} name)
    string(JSON failed ERROR_VARIABLE none GET "${results}" benchmarks ${index} error_occurred)
    if(failed)
        message(FATAL_ERROR "${name} failed")
    endif()
    if(NOT table MATCHES "${name}")
        message(FATAL_ERROR "${name} is not in the table")
    endif()
    if(name MATCHES "time_order|track_|length|part/(append|dequeue|page|.*_cutter)|walk|copy")
        string(JSON items GET "${results}" benchmarks ${index} items)
        if(NOT items GREATER 100)
            message(FATAL_ERROR "${name} measured ${items} items")
        endif()
    endif()
endforeach()
