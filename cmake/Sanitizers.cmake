# SPDX-License-Identifier: Apache-2.0
# A sanitizer report ends the program: a test that provokes one fails.
if(OGM_SANITIZE STREQUAL "address-undefined")
    set(ogm_sanitizer_flags
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(OGM_SANITIZE STREQUAL "thread")
    set(ogm_sanitizer_flags -fsanitize=thread -fno-omit-frame-pointer)
elseif(NOT OGM_SANITIZE STREQUAL "")
    message(FATAL_ERROR "OGM_SANITIZE must be empty, address-undefined or thread")
endif()

# They take a fifth of the time of a build. Without them a report of the address or thread sanitizer names
# functions only.
option(OGM_LINE_NUMBERS "Name lines in the reports of sanitizers" ON)

if(ogm_sanitizer_flags)
    add_compile_options(${ogm_sanitizer_flags} $<$<BOOL:${OGM_LINE_NUMBERS}>:-gline-tables-only>)
    add_link_options(${ogm_sanitizer_flags})
    # The descriptions of the checks are megabytes of addresses. A program at a fixed address does not have
    # to adjust them each time it starts.
    add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>)
endif()
