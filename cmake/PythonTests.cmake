# SPDX-License-Identifier: Apache-2.0
# Debian's own interpreter is the one that sees Debian's modules.
set(Python3_ROOT_DIR /usr)
set(Python3_FIND_STRATEGY LOCATION)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

# One test for each function of the class `name` in `script`; `argument` is what is tested.
# The functions whose names match EXCEPT are left out.
function(ogm_add_python_tests name script argument)
    cmake_parse_arguments(option "" "EXCEPT" "" ${ARGN})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${script})
    file(STRINGS ${script} lines REGEX "^    def test_")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "^    def test_([A-Za-z0-9]+).*" "\\1" test ${line})
        if(option_EXCEPT AND test MATCHES "${option_EXCEPT}")
            continue()
        endif()
        add_test(NAME ${name}.${test}
            COMMAND ${Python3_EXECUTABLE} ${script} ${argument} ${name}.test_${test})
    endforeach()
endfunction()
