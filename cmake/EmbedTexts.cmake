# SPDX-License-Identifier: Apache-2.0
set(OGM_WRITE_TEXTS ${CMAKE_CURRENT_LIST_DIR}/WriteTexts.cmake)

# Adds to the target the source of the constants that HEADER declares in NAMESPACE. TEXTS are constants and
# the files of this folder whose texts they are, as kPage:page.html; several files, as
# kScript:one.js+two.js, are put together.
function(ogm_embed_texts target)
    cmake_parse_arguments(embed "" "HEADER;NAMESPACE" "TEXTS" ${ARGN})
    get_filename_component(name ${embed_HEADER} NAME_WE)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    string(REGEX REPLACE "[^;]*:" "" files "${embed_TEXTS}")
    string(REPLACE "+" ";" files "${files}")
    list(TRANSFORM files PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    list(JOIN embed_TEXTS "," texts)
    add_custom_command(
        OUTPUT ${source}
        COMMAND ${CMAKE_COMMAND} -D FOLDER=${CMAKE_CURRENT_SOURCE_DIR} -D OUTPUT=${source}
            -D HEADER=${embed_HEADER} -D NAMESPACE=${embed_NAMESPACE} -D TEXTS=${texts}
            -P ${OGM_WRITE_TEXTS}
        DEPENDS ${files} ${OGM_WRITE_TEXTS}
        VERBATIM)
    # A separate library. If the command were in the target itself, the target's sources would wait for all
    # libraries that it links.
    add_library(${target}_texts OBJECT ${source})
    target_include_directories(${target}_texts PRIVATE
        ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/..)
    target_link_libraries(${target} PRIVATE ${target}_texts)
endfunction()
