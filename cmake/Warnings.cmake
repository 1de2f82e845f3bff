# SPDX-License-Identifier: Apache-2.0
# Warnings are errors everywhere. Everything is built the way the device builds media modules:
# NDEBUG is always defined there, and fortified C library calls are on.
add_compile_options(-Wall -Wextra -Werror)
add_compile_definitions($<$<NOT:$<CONFIG:Debug>>:NDEBUG>)
