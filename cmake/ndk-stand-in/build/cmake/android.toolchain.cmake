# SPDX-License-Identifier: Apache-2.0
# Replaces an NDK in a check of the preset `android`: clang for 64-bit Arm, and instead of
# the NDK's headers and libraries those of the preset `arm64`. The result runs in an emulator, not on
# a device.
include(${CMAKE_CURRENT_LIST_DIR}/../../../arm64-toolchain.cmake)
set(ANDROID TRUE)
# A device's C library has no bcmp, so clang never calls it in code for Android.
add_compile_options(-fno-builtin-bcmp)
cmake_path(SET root NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../../../..)
foreach(library IN ITEMS liblog libcutils libmediandk)
    list(APPEND CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${root}/platform/${library}/ndk_include)
endforeach()
add_link_options(-L${root}/build/arm64/lib -Wl,-rpath-link,${root}/build/arm64/lib)
# The C library of a device has the system properties, its libmediandk the extractor too.
set(CMAKE_CXX_STANDARD_LIBRARIES
    "-Wl,--as-needed -l:libcutils.so -l:libmediandk_extractor.so")
