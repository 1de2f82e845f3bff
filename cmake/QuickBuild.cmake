# SPDX-License-Identifier: Apache-2.0
# Most of the compile time of a source is spent on headers and templates that other sources use too.
# With this option they are read once for several sources. That hides missing includes; static
# analysis compiles each source separately and finds them.
option(OGM_QUICK_BUILD "Compile sources of the tool together, and parse the plug-in's headers once" OFF)
# A larger number builds a whole program faster; a smaller one compiles less again after a change.
set(OGM_QUICK_BATCH 16 CACHE STRING "How many sources are compiled together")

# GCC spends a sixth of its time on combined sources on collecting garbage; without it they need 1 GB.
if(OGM_QUICK_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options("SHELL:--param ggc-min-expand=500" "SHELL:--param ggc-min-heapsize=1000000")
endif()

# For code like that of test programs: it runs about once after each compilation, which takes far longer, also
# under an emulator.
function(ogm_do_not_optimise target)
    target_compile_options(${target} PRIVATE -O0 -U_FORTIFY_SOURCE)
endfunction()

# Compiles several sources together; no two may define the same name.
function(ogm_compile_together target)
    set_target_properties(${target} PROPERTIES
        UNITY_BUILD ${OGM_QUICK_BUILD} UNITY_BUILD_BATCH_SIZE ${OGM_QUICK_BATCH}
        UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
endfunction()

# Compiles those of the plug-in's sources together that have the same log tag. After a change of one of them
# all are compiled again, so this is for builds that are built once.
option(OGM_QUICK_PLUGIN "Compile the plug-in's sources together" OFF)
function(ogm_compile_plugin_together target)
    if(NOT OGM_QUICK_PLUGIN)
        return()
    endif()
    get_target_property(sources ${target} SOURCES)
    # A source that loses its tag would have that of the others.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
    foreach(source IN LISTS sources)
        file(STRINGS ${source} tag REGEX "^#define LOG_TAG \"OgmExtractor\"$")
        if(NOT tag)
            set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
        endif()
    endforeach()
    ogm_compile_together(${target})
endfunction()

set(OGM_EMPTY_SOURCE ${PROJECT_BINARY_DIR}/Empty.cpp)
file(CONFIGURE OUTPUT ${OGM_EMPTY_SOURCE} CONTENT "")

# Does not compile the sources of these libraries again, but links the archives that another preset's build
# has made of them. Libraries of objects are parts of such archives.
function(ogm_link_from_build preset)
    foreach(library IN LISTS ARGN)
        set_target_properties(${library} PROPERTIES SOURCES ${OGM_EMPTY_SOURCE})
        get_target_property(type ${library} TYPE)
        if(type STREQUAL "OBJECT_LIBRARY")
            continue()
        endif()
        set(archive ${PROJECT_SOURCE_DIR}/build/${preset}/lib/static/lib${library}.a)
        if(NOT EXISTS ${archive})
            message(FATAL_ERROR "The preset ${preset} must be built first: it has no ${archive}")
        endif()
        target_link_libraries(${library} INTERFACE ${archive})
    endforeach()
endfunction()

# Headers and template instances that are compiled once for several targets. GCC would need the same
# macros in all of them.
set(OGM_SHARES_HEADERS OFF)
if(OGM_QUICK_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(OGM_SHARES_HEADERS ON)
endif()

function(ogm_add_shared_headers name)
    add_library(${name} OBJECT ${OGM_EMPTY_SOURCE})
    target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

function(ogm_share_headers name)
    if(TARGET ${name})
        foreach(target IN LISTS ARGN)
            target_precompile_headers(${target} REUSE_FROM ${name})
        endforeach()
    endif()
endfunction()

# Parses the C++ library's headers once. Other headers depend on macros that a source defines first.
function(ogm_parse_once target)
    if(OGM_QUICK_BUILD)
        target_precompile_headers(${target} PRIVATE
            <algorithm> <deque> <functional> <map> <memory> <optional> <string> <utility> <vector>)
    endif()
endfunction()
