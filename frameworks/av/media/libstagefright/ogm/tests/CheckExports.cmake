# SPDX-License-Identifier: Apache-2.0
# Fails unless LIBRARY exports the plug-in's entry point and nothing else. NM is the tool to ask.
execute_process(
    COMMAND ${NM} -D --defined-only ${LIBRARY}
    OUTPUT_VARIABLE symbols
    OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
if(NOT symbols MATCHES "^[0-9a-f]+ T GETEXTRACTORDEF$")
    message(FATAL_ERROR "exported symbols:\n${symbols}")
endif()
